#include "cli/ticket_commands.hpp"

#include <ostream>

#include "advice/funnel.hpp"
#include "base/text.hpp"

namespace lotmere {

void printLines(std::ostream& out, std::string_view text) {
  for (const char c : trim(text))
    if (c != '\r') out << c;
  out << '\n';
}

void printFunnel(std::ostream& out, const std::vector<FunnelRow>& rows) {
  out << funnelHeading('\t') << '\n';
  for (const FunnelRow& row : rows) out << funnelLine(row, '\t') << '\n';
}

}  // namespace lotmere
