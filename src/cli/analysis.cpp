#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "analysis/counts.hpp"
#include "analysis/distribution.hpp"
#include "analysis/omission.hpp"
#include "analysis/omission_text.hpp"
#include "base/text.hpp"
#include "cli/command.hpp"
#include "game/game.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

// The word for reds or blues, first of the arguments.
void addBalls(CLI::App& app, std::string& balls) {
  app.add_option("BALLS", balls, "red 红球，blue 蓝球")->required()->check(CLI::IsMember({"red", "blue"}));
}

class OmissionCommand final : public Command {
 public:
  OmissionCommand()
      : Command("", "omission",
                "号码遗漏统计，一个号码一行：号码、开出期数、最大、平均、最近一次、当前遗漏值") {}

  void addOptions(CLI::App& app) override {
    addBalls(app, balls_);
    app.add_option("PERIOD", period_, "截止期号，不写为最新一期");
  }

  Outcome run(Session& session) override {
    const auto period = period_ ? readPeriod(session.desk, *period_) : latestPeriod(session.store);
    if (!period) return Outcome::refused;
    const auto analyse = balls_ == "red" ? analyseRedOmission : analyseBlueOmission;
    const auto omission = analyse(session.store, session.desk, *period);
    if (!omission) return Outcome::refused;
    int number = 0;
    for (const OmissionFigures& figures : omission->numbers)
      session.out << fmt::format("{}\t{}\t{}\t{}\t{}\t{}\n", formatBall(++number), figures.hits,
                                 gapText(figures, &ClosedGaps::largest),
                                 gapText(figures, &ClosedGaps::average), gapText(figures, &ClosedGaps::last),
                                 figures.running);
    return Outcome::done;
  }

 private:
  std::string balls_;
  std::optional<std::string> period_;
};

class CountsCommand final : public Command {
 public:
  CountsCommand() : Command("", "counts", "统计一段期号里各号码的开出次数，一个号码一行") {}

  void addOptions(CLI::App& app) override {
    addBalls(app, balls_);
    app.add_option("FROM", from_, "起始期号")->required();
    app.add_option("TO", to_, "结束期号")->required();
  }

  Outcome run(Session& session) override {
    // A range turned round holds no draw, so every number stands at 0.
    const auto from = readPeriod(session.desk, from_);
    const auto to = from ? readPeriod(session.desk, to_) : std::nullopt;
    if (!to) return Outcome::refused;
    const auto count = balls_ == "red" ? countRedDraws : countBlueDraws;
    for (const CountRow& row : count(session.store, session.desk, *from, *to))
      session.out << fmt::format("{}\t{}\n", formatBall(row.number), row.count);
    return Outcome::done;
  }

 private:
  std::string balls_;
  std::string from_;
  std::string to_;
};

class DistributionCommand final : public Command {
 public:
  DistributionCommand()
      : Command("draws", "distribution",
                "号码分布，最近100期一期一行：期号、33个红球、16个蓝球，未开出的为 ..") {}

  void addOptions(CLI::App& app) override { app.add_flag("--all", all_, "列出全部期号"); }

  Outcome run(Session& session) override {
    buildHaoMaFenBu(session.store, session.desk, latestPeriod(session.store),
                    all_ ? DistributionSpan::all : DistributionSpan::recent);
    for (const DistributionRow& row : loadDistribution(session.store)) {
      std::string line = std::to_string(row.period);
      for (int i = 0; i < kCodeCount; ++i)
        line += ' ' + (row.drawn[i] ? formatBall(i < kRedCount ? i + 1 : i + 1 - kRedCount) : "..");
      session.out << line << '\n';
    }
    return Outcome::done;
  }

 private:
  bool all_ = false;
};

}  // namespace

void addAnalysisCommands(CommandList& list) {
  list.push_back(std::make_unique<OmissionCommand>());
  list.push_back(std::make_unique<CountsCommand>());
  list.push_back(std::make_unique<DistributionCommand>());
}

}  // namespace lotmere
