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

CombinationTexts combinationTexts(Store& store, Desk& desk, PeriodNo period) {
  computeDrawStatistics(store, desk, period, period);
  std::vector<std::string> names;
  names.reserve(kTurnCount);
  for (int turn = 0; turn < kTurnCount; ++turn) names.emplace_back(familyOfTurn(turn).draw_column);
  Query draw = store.query(fmt::format(R"(SELECT {} FROM "历史记录" WHERE "期号"=?)", columnList(names)));
  draw.bind(period);
  const bool stored = draw.next();
  CombinationTexts texts;
  for (int turn = 0; turn < kTurnCount; ++turn)
    texts[turn] = fmt::format("{} ≠ {}", names[turn], stored ? groupsOf(draw.text(turn)) : "");
  return texts;
}

std::vector<PanelItem> combinationList(const ConditionSet& set, const CombinationTexts& texts) {
  std::vector<PanelItem> items;
  items.reserve(texts.size());
  for (int turn = 0; turn < kTurnCount; ++turn)
    items.push_back({texts[turn], turn, set.isTicked(usageOfTurn(turn))});
  return items;
}

}  // namespace lotmere
