#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "base/text.hpp"
#include "cli/command.hpp"
#include "game/game.hpp"
#include "history/addresses.hpp"
#include "history/curl_fetcher.hpp"
#include "history/download.hpp"
#include "history/draw_import.hpp"
#include "history/draw_stats.hpp"
#include "history/entry.hpp"
#include "history/upkeep.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

class FetchCommand final : public Command {
 public:
  FetchCommand() : Command("draws", "fetch", "下载开奖数据并合并到历史记录") {}

  void addOptions(CLI::App& app) override {
    app.add_option("ADDRESS", address_,
                   "开奖数据的地址（http、https 或 file）或文件，下载成功后记住，下次可以不写");
    app.add_flag("--all", all_, "一直下载到没有更新的数据为止");
  }

  Outcome run(Session& session) override {
    const auto address = address_ ? readAddress(session.desk, *address_)
                                  : std::optional(storedAddress(session.store, AddressUse::draw_list));
    if (!address) return Outcome::refused;
    if (address->empty()) return refuse(session.desk, "还没有下载地址，请在命令后面写上地址。");
    const auto fetcher = makeCurlFetcher(session.desk.course());
    const auto fetch = all_ ? downloadAll : downloadDraws;
    const DownloadResult result = fetch(session.store, session.desk, *fetcher, *address, realClock().today());
    if (result.outcome == Outcome::stopped) return refuse(session.desk, "下载已中止，历史记录没有改变。");
    if (result.outcome == Outcome::refused && result.more)
      return refuse(session.desk, "历史记录还是空的，首次下载请加 --all。");
    if (result.outcome != Outcome::done) {
      tellFailure(session.desk, result);
      return Outcome::refused;
    }
    for (const std::string& line : reportLines(result)) session.out << line << '\n';
    if (result.more) session.out << "数据里还有更新的开奖记录，请加 --all 继续下载\n";
    return Outcome::done;
  }

 private:
  std::optional<std::string> address_;
  bool all_ = false;
};

class ImportCommand final : public Command {
 public:
  ImportCommand() : Command("draws", "import", "从文本或 CSV 文件导入开奖记录，每行有期号、日期和号码") {}

  void addOptions(CLI::App& app) override {
    app.add_option("FILE", file_, "文件名，- 是标准输入")->required();
    app.add_option("--existing", existing_, "和原有记录不同的期：keep 保留原有的，replace 替换（不写时要问）")
        ->check(CLI::IsMember({"keep", "replace"}));
  }

  Outcome run(Session& session) override {
    if (file_.empty()) return refuse(session.desk, kNoFileName);
    const Conflicts conflicts = existing_.empty()     ? Conflicts::ask
                                : existing_ == "keep" ? Conflicts::keep
                                                      : Conflicts::replace;
    const DrawImport result = importDraws(session.store, session.desk, file_, realClock().today(), conflicts);
    if (result.outcome == Outcome::done)
      for (const std::string& line : importReport(result)) session.out << line << '\n';
    else
      tellNoImport(session.desk, result);
    return result.outcome;
  }

 private:
  std::string file_;
  std::string existing_;
};

class AddressCommand final : public Command {
 public:
  AddressCommand() : Command("draws", "address", "显示或修改下载地址：list 开奖数据，page 详细开奖页面") {}

  void addOptions(CLI::App& app) override {
    app.add_option("USE", use_, "list 开奖数据，page 详细开奖页面的网址中期号之前的部分")
        ->required()
        ->check(CLI::IsMember({"list", "page"}));
    app.add_option("ADDRESS", address_, "新的地址，写成空的 \"\" 就是不再记住");
  }

  Outcome run(Session& session) override {
    const auto use = use_ == "list" ? AddressUse::draw_list : AddressUse::detail_page;
    if (address_) {
      const auto address =
          trim(*address_).empty() ? std::optional<std::string>("") : readAddress(session.desk, *address_);
      if (!address) return Outcome::refused;
      rememberAddress(session.store, use, *address);
    }
    const std::string shown = shownAddress(storedAddress(session.store, use));
    session.out << (shown.empty() ? "还没有设置地址" : shown) << '\n';
    return Outcome::done;
  }

 private:
  std::string use_;
  std::optional<std::string> address_;
};

class AddCommand final : public Command {
 public:
  AddCommand() : Command("draws", "add", "录入一期开奖号码并统计；这一期已有不同的记录时要加 --answer yes") {}

  void addOptions(CLI::App& app) override {
    app.add_option("PERIOD", period_, "期号，如 2007001")->required();
    app.add_option("DATE", date_, "开奖日期，如 2007-01-02")->required();
    app.add_option("NUMBERS", numbers_, "六个红球和一个蓝球")
        ->required()
        ->expected(kRedsPerTicket + 1)
        ->transform(wholeNumber(0, 99));
  }

  Outcome run(Session& session) override {
    const auto period = readPeriod(session.desk, period_);
    if (!period) return Outcome::refused;
    const auto date = parseDate(date_);
    if (!date) return refuse(session.desk, fmt::format("日期{}不对，应为 YYYY-MM-DD。", quoteTyped(date_)));
    DrawEntry entry{period_, {}, std::to_string(numbers_.back())};
    for (int i = 0; i < kRedsPerTicket; ++i) entry.reds[i] = std::to_string(numbers_[i]);
    const CheckedEntry checked = checkManualEntry(entry);
    if (!checked.numbers) {
      session.desk.tell("输入有误或不完整,请核对后重新输入!", Tone::error);
      return Outcome::refused;
    }
    const Outcome outcome = enterDraw(session.store, session.desk, *period, *date, *checked.numbers);
    if (outcome != Outcome::done) return outcome;
    session.out << fmt::format("{} {} {}\n", *period, formatDate(*date), numbersText(*checked.numbers));
    return Outcome::done;
  }

 private:
  std::string period_;
  std::string date_;
  std::vector<int> numbers_;
};

class DeleteCommand final : public Command {
 public:
  DeleteCommand() : Command("draws", "delete", "删除一期开奖记录，要加 --answer yes") {}

  void addOptions(CLI::App& app) override { app.add_option("PERIOD", period_, "期号")->required(); }

  Outcome run(Session& session) override { return deleteDraw(session.store, session.desk, period_); }

 private:
  std::string period_;
};

class StatsCommand final : public Command {
 public:
  StatsCommand() : Command("draws", "stats", "重新统计一段期号的各项值") {}

  void addOptions(CLI::App& app) override {
    app.add_option("FROM", from_, "起始期号")->required();
    app.add_option("TO", to_, "结束期号")->required();
  }

  Outcome run(Session& session) override {
    const auto range = readRange(session.desk, from_, to_);
    if (!range) return Outcome::refused;
    const auto rows = countDraws(session.store, *range);
    if (rows == 0) return refuse(session.desk, "这段期号里没有开奖记录。");
    computeDrawStatistics(session.store, session.desk, range->from, range->to);
    session.out << fmt::format("统计完成，共 {} 期\n", rows);
    return Outcome::done;
  }

 private:
  std::string from_;
  std::string to_;
};

}  // namespace

void addDrawCommands(CommandList& list) {
  list.push_back(std::make_unique<FetchCommand>());
  list.push_back(std::make_unique<ImportCommand>());
  list.push_back(std::make_unique<AddressCommand>());
  list.push_back(std::make_unique<AddCommand>());
  list.push_back(std::make_unique<DeleteCommand>());
  list.push_back(std::make_unique<StatsCommand>());
}

}  // namespace lotmere
