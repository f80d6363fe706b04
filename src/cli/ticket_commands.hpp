// What the commands over tickets share.
#pragma once

#include <CLI/CLI.hpp>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "cli/command.hpp"
#include "pipeline/funnel_rows.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {

// A command that works on the tickets of one period.
class PeriodCommand : public Command {
 public:
  using Command::Command;

  void addOptions(CLI::App& app) override {
    app.add_option("PERIOD", period_, "期号，如 2007001")->required();
  }

  Outcome run(Session& session) override {
    const auto period = readPeriod(session.desk, period_);
    return period ? runPeriod(session, *period) : Outcome::refused;
  }

 protected:
  virtual Outcome runPeriod(Session& session, PeriodNo period) = 0;

 private:
  std::string period_;
};

// What `--existing` means where one period's tickets are made anew.
inline constexpr const char* kExistingOfPeriod =
    "这一期已有的号码：keep 保留，replace 删除（不写时要问）；其他期的号码总是删除，tickets undo 可以恢复";

// What a command does with the tickets that stand, said ahead of time.
class ExistingOption {
 public:
  void add(CLI::App& app, const char* help) {
    app.add_option("--existing", text_, help)->check(CLI::IsMember({"keep", "replace"}));
  }
  [[nodiscard]] Existing value() const {
    if (text_.empty()) return Existing::ask;
    return text_ == "keep" ? Existing::keep : Existing::replace;
  }

 private:
  std::string text_;
};

// A text of the engine, its line ends those of a terminal.
void printLines(std::ostream& out, std::string_view text);
// By what settings the tickets were filtered, and what has changed since.
// Of one period, or of all for 0.
void printRunNotes(Session& session, PeriodNo period = 0);
// The funnel, its fields separated by tabs.
void printFunnel(std::ostream& out, const std::vector<FunnelRow>& rows);

void addGenerateCommand(CommandList& list);
void addTicketAdviceCommands(CommandList& list);

}  // namespace lotmere
