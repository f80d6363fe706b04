#include "panels/combination_list.hpp"

#include <fmt/format.h>

#include <vector>

#include "history/draw_stats.hpp"
#include "store/schema.hpp"

namespace lotmere {
namespace {

// The groups of a stored text, up to and with the first bracket; the shape behind it isn't compared.
std::string groupsOf(const std::string& text) { return text.substr(0, text.find(']') + 1); }

}  // namespace

std::array<PanelItem, kTurnCount> combinationList(Store& store, Desk& desk, const ConditionSet& set,
                                                  PeriodNo period) {
  computeDrawStatistics(store, desk, period, period);
  std::vector<std::string> names;
  names.reserve(kTurnCount);
  for (int turn = 0; turn < kTurnCount; ++turn) names.emplace_back(familyOfTurn(turn).draw_column);
  Query draw = store.query(fmt::format(R"(SELECT {} FROM "历史记录" WHERE "期号"=?)", columnList(names)));
  draw.bind(period);
  const bool stored = draw.next();
  std::array<PanelItem, kTurnCount> items;
  for (int turn = 0; turn < kTurnCount; ++turn) {
    const std::string groups = stored ? groupsOf(draw.text(turn)) : "";
    items[turn] = {fmt::format("{} ≠ {}", names[turn], groups), turn, set.isTicked(usageOfTurn(turn))};
  }
  return items;
}

}  // namespace lotmere
