// The way back for tickets: how they stood before the last action, in one packed row of the store.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "game/game.hpp"
#include "store/store.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// What changes the tickets as a whole.
enum class TicketAction { init, run, import, removal, generate };

// Keeps all tickets as they stand in front of an action and forgets what set a run had. What was taken back
// before can't be made again from then on. Runs inside the change of the action, before its first row. Throws
// SQLite::Exception.
void keepTickets(Store& store, TicketAction action);

// The tickets of one period in front of a run.
class BeforeRun {
 public:
  // Of a set that has just been read, before any ticket is gone.
  BeforeRun(Store& store, const TicketSet& tickets);
  // Says that these stood in front of the shrink.
  void markBeforeShrink(const TicketSet& tickets);
  // Keeps them, and what set the run had: the text of its settings, and the name where the user gave it one.
  // Runs inside the run's change. Throws SQLite::Exception.
  void keep(Store& store, const std::string& set_name, const std::string& set_text) const;

 private:
  PeriodNo period_;
  std::size_t rows_;
  std::string packed_;
  std::string before_shrink_;
};

// The set that the last run began with. Nothing where the last action wasn't a run of this period.
struct RunOrigin {
  std::vector<Balls> tickets;
  std::vector<bool> before_shrink;  // whether the ticket stood when its shrink began
};
[[nodiscard]] std::optional<RunOrigin> loadRunOrigin(Store& store, PeriodNo period);

// What set the tickets of a period were filtered with, while no other action has come.
struct RunSettings {
  std::string name;  // empty where the set had none
  std::string text;  // as setText() writes it, without picked numbers
};
[[nodiscard]] std::optional<RunSettings> loadRunSettings(Store& store, PeriodNo period);
// The periods for which there are such, ascending.
[[nodiscard]] std::vector<PeriodNo> runPeriods(Store& store);
// Says what they were filtered with. Runs inside the change of an action that filters them, behind
// keepTickets(). Throws SQLite::Exception.
void saveRunSettings(Store& store, PeriodNo period, const RunSettings& settings);

// What the next undo and redo would take back or make again, for a menu; nothing where there is none.
struct NextTicketSteps {
  std::optional<std::string> undo;
  std::optional<std::string> redo;
};
[[nodiscard]] NextTicketSteps nextTicketSteps(Store& store);

// The commands `tickets undo` and `tickets redo`: the tickets with all their columns as they stood before the
// last action, and as they stood when that was taken back; each in one change, and told with the number of
// tickets. Refused, told, where there is nothing. Serve the course and can't be stopped. Throw
// SQLite::Exception with nothing changed when the store refuses.
Outcome undoTickets(Store& store, Desk& desk);
Outcome redoTickets(Store& store, Desk& desk);

}  // namespace lotmere
