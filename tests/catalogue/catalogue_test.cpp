// What a row of the catalogue must have.
#include "catalogue/catalogue.hpp"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "base/number_list.hpp"

namespace lotmere {
namespace {

// What a row lacks or has wrong by itself; empty for a sound one.
std::string faultOf(const Condition& row) {
  const bool bare =
      row.kind == CellKind::position || row.kind == CellKind::combination || row.kind == CellKind::setting;
  if (row.usage <= 0 || row.name.empty() || row.log_name.empty()) return "no number or no name";
  if (row.definition.empty()) return "no definition";
  if (bare) return row.first == 0 && row.factory.empty() ? "" : "cells of nothing";
  if (row.first <= 0 || row.last < row.first) return "no cells";
  if (row.first % 10 != 0) return "cell k doesn't stand at place k";
  if (row.last_item <= row.first_item || row.last_item > row.last - row.first) return "items without cells";
  if (!parseNumberList(row.factory, 0, row.last - row.first)) return "no factory value";
  if (row.kind == CellKind::sum_family) return "";
  if (row.figure.index() == 0) return "no figure";
  if (row.kind == CellKind::shape) return row.family != nullptr ? "" : "no family";
  return row.item_text.empty() ? "no text for its items" : "";
}

TEST(Catalogue, EveryRowIsWholeAndNoneTakesWhatIsAnothers) {
  std::set<UsageId> switches;
  std::set<std::string> names, pages;
  std::set<int> places;
  std::map<ConditionId, const Condition*> cells;
  for (const Condition& row : allConditions()) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(faultOf(row), "");
    EXPECT_TRUE(switches.insert(row.usage).second && names.insert(row.name).second);
    EXPECT_TRUE(places.insert(row.pass).second);
    EXPECT_TRUE(row.page.empty() || pages.insert(std::string(row.page)).second);
    // The range of a shape may reach into the next one's, but no item of it does.
    for (int k = 0; row.first != 0 && k < cellCount(row); ++k)
      EXPECT_TRUE(cells.emplace(row.first + k, &row).second) << k;
  }
  EXPECT_EQ(findCondition("总和值")->usage, 1);
}

TEST(Catalogue, ARowThatLacksSomethingIsSeen) {
  const auto broken = [](void (*harm)(Condition&)) {
    Condition row = conditionNamed("总和值");
    harm(row);
    return faultOf(row);
  };
  EXPECT_EQ(broken([](Condition&) {}), "");
  EXPECT_EQ(broken([](Condition& row) { row.first = row.last = 0; }), "no cells");
  EXPECT_EQ(broken([](Condition& row) { row.factory = "60-1143"; }), "no factory value");
  EXPECT_EQ(broken([](Condition& row) { row.item_text.clear(); }), "no text for its items");
  EXPECT_EQ(broken([](Condition& row) { row.figure = {}; }), "no figure");
  EXPECT_EQ(broken([](Condition& row) { row.definition.clear(); }), "no definition");
  EXPECT_EQ(broken([](Condition& row) { row.log_name.clear(); }), "no number or no name");
}

}  // namespace
}  // namespace lotmere
