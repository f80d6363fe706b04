// The commands that show the draws and write them to a file.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "base/text.hpp"
#include "cli/command.hpp"
#include "game/game.hpp"
#include "history/export_sheet.hpp"
#include "history/search.hpp"
#include "history/status.hpp"
#include "sheets/table_file.hpp"

namespace lotmere {
namespace {

// Period, date and numbers of a row that begins with them.
void printDraw(std::ostream& out, const Query& row) {
  out << fmt::format("{} {} {}\n", row.number(0), row.text(1), numbersText(readNumbers(row, 2)));
}

class ListCommand final : public Command {
 public:
  ListCommand() : Command("draws", "list", "列出开奖记录，一期一行") {}

  void addOptions(CLI::App& app) override {
    app.add_option("--last", last_, "只列最近的几期")->transform(wholeNumber(1, 1'000'000));
  }

  Outcome run(Session& session) override {
    listDraws(session.store, last_, [&](const Query& row) { printDraw(session.out, row); });
    return Outcome::done;
  }

 private:
  int last_ = -1;  // no limit
};

class SearchCommand final : public Command {
 public:
  SearchCommand() : Command("draws", "search", "列出各列以所给文本开头的开奖记录，一期一行") {}

  void addOptions(CLI::App& app) override {
    app.add_option("COLUMN=TEXT", filters_, "列名和开头的文本，如 期号=2008 蓝球=5，几个条件要同时符合")
        ->required();
  }

  Outcome run(Session& session) override {
    std::vector<ColumnFilter> filters;
    for (const std::string& filter : filters_) {
      const auto sign = filter.find('=');
      if (sign == std::string::npos)
        return refuse(session.desk,
                      fmt::format("条件{}不对，应为 列名=文本，如 期号=2008。", quoteTyped(filter)));
      filters.push_back({filter.substr(0, sign), filter.substr(sign + 1)});
    }
    const auto condition = buildSearchWhere(session.desk, filters);
    if (!condition) return Outcome::refused;
    bool found = false;
    searchDraws(session.store, *condition, [&](const Query& row) {
      printDraw(session.out, row);
      found = true;
    });
    if (!found) session.desk.tell("没有符合条件的记录。", Tone::warning);
    return Outcome::done;
  }

 private:
  std::vector<std::string> filters_;
};

class StatusCommand final : public Command {
 public:
  StatusCommand() : Command("draws", "status", "显示历史记录是否完整，以及下一期的期号和开奖日期") {}

  Outcome run(Session& session) override {
    const Date today = realClock().today();
    const HistoryStatus status =
        updateHistoryStatus(session.store, today, upcomingDrawDate(session.store, today));
    session.out << trim(status.history) << '\n' << trim(status.next_draw) << '\n';
    if (!status.missing.empty()) session.out << status.missing << '\n';
    return Outcome::done;
  }
};

class ExportCommand final : public Command {
 public:
  ExportCommand()
      : Command("draws", "export", "把全部开奖记录和统计值写到电子表格文件（.xlsx）或 CSV 文件（.csv）") {}

  void addOptions(CLI::App& app) override {
    app.add_option("FILE", file_, "文件名，以 .xlsx 或 .csv 结尾")->required();
  }

  Outcome run(Session& session) override {
    const std::filesystem::path file(file_);
    if (!tableFormOf(file))
      return refuse(session.desk, fmt::format("文件名{}不对，应以 .xlsx 或 .csv 结尾。", quoteTyped(file_)));
    const auto [outcome, draws] = exportHistory(session.store, session.desk, file);
    if (outcome != Outcome::done) return outcome;
    session.out << fmt::format("已导出 {} 期到 {}\n", draws, file_);
    return Outcome::done;
  }

 private:
  std::string file_;
};

}  // namespace

void addDrawViewCommands(CommandList& list) {
  list.push_back(std::make_unique<ListCommand>());
  list.push_back(std::make_unique<SearchCommand>());
  list.push_back(std::make_unique<StatusCommand>());
  list.push_back(std::make_unique<ExportCommand>());
}

}  // namespace lotmere
