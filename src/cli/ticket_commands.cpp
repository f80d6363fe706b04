#include "cli/ticket_commands.hpp"

#include <ostream>

#include "advice/funnel.hpp"
#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "tickets/run_note.hpp"

namespace lotmere {

void printLines(std::ostream& out, std::string_view text) {
  for (const char c : trim(text))
    if (c != '\r') out << c;
  out << '\n';
}

void printRunNotes(Session& session, PeriodNo period) {
  for (const std::string& note : runNotes(session.store, loadConditionSet(session.store), period))
    session.out << note << '\n';
}

void printFunnel(std::ostream& out, const std::vector<FunnelRow>& rows) {
  out << funnelHeading('\t') << '\n';
  for (const FunnelRow& row : rows) out << funnelLine(row, '\t') << '\n';
}

}  // namespace lotmere
