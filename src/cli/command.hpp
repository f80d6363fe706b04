// One command of the command line: its name, what it takes, and what it does with the open store.
#pragma once

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "base/platform.hpp"
#include "game/game.hpp"
#include "start/startup.hpp"
#include "store/periods.hpp"
#include "store/store.hpp"
#include "users/password.hpp"

namespace CLI {
class App;
class Validator;
}  // namespace CLI

namespace lotmere {

// What a command runs with. Results go to `out`; what the user must know goes through the desk.
struct Session {
  const ProgramStart& start;
  Store& store;
  Desk& desk;
  std::ostream& out;
  const std::optional<std::string>& password;  // of the password file; nothing without one
  HashLimits password_limits;
};

inline constexpr std::string_view kNoFileName = "文件名为空。";

class Command {
 public:
  // A command with the empty group stands at the top level.
  Command(const char* group, const char* name, const char* description)
      : group_(group), name_(name), description_(description) {}
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;
  virtual ~Command() = default;

  [[nodiscard]] const char* group() const { return group_; }
  [[nodiscard]] const char* name() const { return name_; }
  [[nodiscard]] const char* description() const { return description_; }

  // Whether it works on somebody's settings: where several people use the program, it then asks who.
  [[nodiscard]] virtual bool needsUser() const { return true; }
  // Whether it takes the name of a user as its argument, so that --user beside it is wrong usage.
  [[nodiscard]] virtual bool namesUser() const { return false; }
  // Whether its start refreshes the backup and compacts the store.
  [[nodiscard]] virtual bool compacts() const { return false; }
  virtual void addOptions(CLI::App& /*app*/) {}
  // What is wrong with the words typed that the parser couldn't see, as one line; empty where nothing is.
  [[nodiscard]] virtual std::string usageFault() const { return {}; }
  // What is done to the locked home before its store is looked at. `done` goes on with the start; any
  // other end is that of the command, told why.
  [[nodiscard]] virtual Outcome prepare(const Home& /*home*/, Desk& /*desk*/) { return Outcome::done; }
  // How it ended: refused after the desk told why, which counts as stopped where Ctrl-C stopped a job of the
  // command; stopped where what was done so far stands.
  virtual Outcome run(Session& session) = 0;

 private:
  const char* group_;
  const char* name_;
  const char* description_;
};

using CommandList = std::vector<std::unique_ptr<Command>>;
void addDrawCommands(CommandList& list);
void addDrawViewCommands(CommandList& list);
void addNumberCommands(CommandList& list);
void addConditionCommands(CommandList& list);
void addOwnSetCommands(CommandList& list);
void addSettingStepCommands(CommandList& list);
void addSetCommands(CommandList& list);
void addTicketCommands(CommandList& list);
void addTicketFileCommands(CommandList& list);
void addAnalysisCommands(CommandList& list);
void addUserCommands(CommandList& list);
void addStoreCommands(CommandList& list);

// Two periods as typed, the first not behind the second; told and nothing otherwise.
[[nodiscard]] std::optional<PeriodRange> readRange(Desk& desk, const std::string& from,
                                                   const std::string& to);

// Lets a whole number of first to last through, in decimal digits and with leading zeros (09 is nine).
[[nodiscard]] CLI::Validator wholeNumber(int first, int last);

// Tells a refusal.
Outcome refuse(Desk& desk, std::string_view text);

}  // namespace lotmere
