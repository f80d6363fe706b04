// The commands that write tickets to files and read them back.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "base/text.hpp"
#include "cli/command.hpp"
#include "cli/ticket_commands.hpp"
#include "files/export.hpp"
#include "files/export_compound.hpp"
#include "files/import.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

class ExportCommand final : public Command {
 public:
  ExportCommand()
      : Command("tickets", "export", "把号码写到文件：文本、电子表格（.xlsx）或 CSV，一注一行；或合成复式") {}

  void addOptions(CLI::App& app) override {
    app.add_option("FILE", file_, "文件名")->required();
    CLI::Option* columns =
        app.add_option("--columns", columns_,
                       "内容，用逗号隔开：序号,期号,号码,分隔行（不写时只有号码，表格是序号、期号和号码）");
    CLI::Option* format = app.add_option("--format", switches_.format, "0 淘宝彩票网格式，1 财付通彩票格式")
                              ->check(CLI::Range(0, 1));
    CLI::Option* as =
        app.add_option("--as", as_, "text 文本，xlsx 电子表格，csv CSV 文件（不写时按文件名的结尾）")
            ->check(CLI::IsMember({"text", "xlsx", "csv"}));
    format_ = format;
    app.add_flag("--compound", compound_,
                 "合成复式号码，一行一个复式，行末写注数；不能和 --columns、--format、--as 同用")
        ->excludes(columns)
        ->excludes(as)
        ->excludes(format);
  }

  Outcome run(Session& session) override {
    if (columns_ && !readColumns())
      return refuse(session.desk,
                    fmt::format("内容{}不对，可用：序号,期号,号码,分隔行。", quoteTyped(*columns_)));
    if (file_.empty()) return refuse(session.desk, kNoFileName);
    const TicketFile named = ticketFileOf(file_);
    switches_.file = as_ == "text"   ? TicketFile::text
                     : as_ == "xlsx" ? TicketFile::spreadsheet
                     : as_ == "csv"  ? TicketFile::csv
                                     : named;
    const bool table = switches_.file != TicketFile::text;
    if (compound_ && table)
      return refuse(session.desk, "复式号码写成文本文件：文件名不能以 .xlsx 或 .csv 结尾。");
    if (table && (format_->count() > 0 || switches_.separator))
      return refuse(session.desk, "--format 和分隔行只用于文本文件；要写成文本，请加上 --as text。");
    if (table && !columns_) switches_.seq = switches_.period = true;
    return compound_ ? writeCompound(session) : writeTickets(session);
  }

 private:
  Outcome writeCompound(Session& session) {
    const auto [outcome, tickets, bets] = exportCompound(session.store, session.desk, file_);
    if (outcome != Outcome::done) return outcome;
    session.out << fmt::format("已导出 {} 注，合成 {} 行复式，到 {}\n", tickets, bets, file_);
    printRunNotes(session);
    return Outcome::done;
  }

  Outcome writeTickets(Session& session) {
    const auto [outcome, count] = exportCommand(session.store, session.desk, file_, switches_);
    if (outcome != Outcome::done) return outcome;
    session.out << fmt::format("已导出 {} 注到 {}\n", count, file_);
    printRunNotes(session);
    return Outcome::done;
  }

  bool readColumns() {
    switches_.numbers = false;
    for (std::size_t from = 0; from <= columns_->size();) {
      const std::size_t end = std::min(columns_->find(',', from), columns_->size());
      const std::string_view name = trim(std::string_view(*columns_).substr(from, end - from));
      if (name == "序号")
        switches_.seq = true;
      else if (name == "期号")
        switches_.period = true;
      else if (name == "号码")
        switches_.numbers = true;
      else if (name == "分隔行")
        switches_.separator = true;
      else
        return false;
      from = end + 1;
    }
    return true;
  }

  std::string file_;
  std::optional<std::string> columns_;
  std::string as_;
  CLI::Option* format_ = nullptr;
  ExportSwitches switches_;
  bool compound_ = false;
};

class ImportCommand final : public Command {
 public:
  ImportCommand() : Command("tickets", "import", "从文本文件导入号码") {}

  void addOptions(CLI::App& app) override {
    app.add_option("FILE", file_, "文件名")->required();
    app.add_option("--format", format_,
                   "一行的内容：0 只有号码，1 期号＋号码，2 序号＋号码，3 复式号码（不写时为 0）")
        ->transform(wholeNumber(0, 3));
    app.add_option("--period", period_, "号码的期号，如 2007001；格式 1 用文件里的期号");
    existing_.add(app, "已有的号码（各期都算）：keep 保留并追加，replace 全部删除（不写时要问）");
  }

  Outcome run(Session& session) override {
    if (file_.empty()) return refuse(session.desk, kNoFileName);
    ImportChoice choice{static_cast<ImportFormat>(format_), 0};
    if (choice.format != ImportFormat::period_numbers) {
      if (period_.empty()) return refuse(session.desk, "请用 --period 写上号码的期号，如 2007001。");
      const auto period = readPeriod(session.desk, period_);
      if (!period) return Outcome::refused;
      choice.period = *period;
    }
    const ImportResult result = importCommand(session.store, session.desk, file_, choice, existing_.value());
    return result.outcome;
  }

 private:
  std::string file_;
  int format_ = 0;
  std::string period_;
  ExistingOption existing_;
};

}  // namespace

void addTicketFileCommands(CommandList& list) {
  list.push_back(std::make_unique<ExportCommand>());
  list.push_back(std::make_unique<ImportCommand>());
}

}  // namespace lotmere
