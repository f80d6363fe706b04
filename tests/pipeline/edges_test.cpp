// Single tickets at the edges of a pass, through a real run.
#include <gtest/gtest.h>

#include "conditions/condition_store.hpp"
#include "core/desk_script.hpp"
#include "pipeline/run.hpp"
#include "pipeline/run_scene.hpp"

namespace lotmere {
namespace {

using test::kPeriod;

class Edges : public testing::Test {
 protected:
  Edges() { test::open_Conditions(store()); }
  bool stays(const Reds& reds) {
    test::write_Rows(store(), {{1, 1, kPeriod, reds, 5}});
    ScriptedDesk desk;
    return run_Pipeline(store(), desk, kPeriod).tickets == 1;
  }
  void use(std::initializer_list<UsageId> usages) {
    store().query(R"(UPDATE "过滤条件使用情况" SET "使用情况"=0)").run();
    for (const UsageId usage : usages) set_Usage(store(), usage, true);
  }
  Store& store() { return home_.store(); }
  test::TempHome home_;
};

TEST_F(Edges, OneCellDecides) {
  const struct {
    const char* what;
    UsageId usage;
    Reds reds;
    ConditionId first, last, cell;  // cell 0: no cell keeps the ticket
  } cases[] = {{"six in a row have AC 0", 9, {1, 2, 3, 4, 5, 6}, 3600, 3630, 3600},
               {"AC 10", 9, {1, 2, 4, 8, 16, 32}, 3600, 3630, 3610},
               {"repeated reds have an AC below 0", 9, {7, 7, 7, 7, 7, 9}, 3600, 3630, 0},
               {"the largest gap", 5, {2, 8, 12, 13, 17, 26}, 3400, 3440, 3409},
               {"the ways to 1 and 33 are no gaps", 5, {14, 15, 16, 17, 18, 19}, 3400, 3440, 3401},
               {"the largest gap of unsorted reds", 5, {33, 1, 5, 9, 13, 17}, 3400, 3440, 3416},
               {"span 5", 4, {28, 29, 30, 31, 32, 33}, 3300, 3340, 3305},
               {"a run that ends at 33", 6, {1, 5, 9, 31, 32, 33}, 3450, 3460, 3454},
               {"six in a run", 6, {28, 29, 30, 31, 32, 33}, 3450, 3460, 3460},
               {"three and two in runs", 6, {1, 2, 3, 10, 11, 20}, 3450, 3460, 3455},
               {"no odd red", 2, {2, 4, 6, 8, 10, 12}, 2000, 2170, 2000},
               {"a sum of 183 is beyond the cells", 1, {28, 29, 30, 31, 32, 33}, 1000, 1170, 0},
               {"the last sum with a cell", 1, {19, 25, 30, 31, 32, 33}, 1000, 1170, 1170},
               {"tails of 51 are beyond the cells", 62, {8, 9, 18, 19, 28, 29}, 4400, 4450, 0},
               {"digit roots of 51 are beyond the cells", 63, {8, 9, 17, 18, 26, 27}, 4500, 4550, 0},
               {"big reds of 166 are beyond the cells", 64, {22, 23, 28, 30, 31, 32}, 4600, 4765, 0}};
  for (const auto& row : cases) {
    use({row.usage});
    const auto allow = [&](int others) {
      StoreChange change(store());
      for (ConditionId id = row.first; id <= row.last; ++id)
        set_Cell(store(), id, id == row.cell ? others == 0 : others == 1);
      change.commit();
    };
    allow(0);
    EXPECT_EQ(stays(row.reds), row.cell != 0) << row.what;
    allow(1);
    EXPECT_FALSE(stays(row.reds)) << row.what;
  }
}

TEST_F(Edges, RepeatsOfTheDrawBefore) {
  const Reds drawn{3, 8, 13, 19, 26, 31};
  test::put_Draw(store(), kPeriod - 1, "2026-05-01", {drawn, 5});
  const struct {
    const char* what;
    std::initializer_list<UsageId> used;
    bool stays;
  } cases[] = {{"no earlier pass: one pattern may repeat", {100}, true},
               {"no earlier pass: the second removes", {100, 131}, false},
               {"an earlier pass: two patterns may repeat", {1, 100, 131}, true},
               {"an earlier pass: the third removes", {1, 100, 115, 131}, false},
               {"a later pass doesn't count", {263, 100, 131}, false},
               {"a place pass that can't reject is no pass", {30, 100, 131}, false},
               {"all seven sums agree", {266}, false}};
  set_ConditionValue(store(), kToleranceCell, 1);
  for (const auto& row : cases) {
    use(row.used);
    EXPECT_EQ(stays(drawn), row.stays) << row.what;
  }
  use({266});
  for (ConditionId id = 6682; id <= 6686; ++id) set_Cell(store(), id, false);
  EXPECT_TRUE(stays(drawn)) << "two sums may agree";
  set_Cell(store(), 6686, true);
  EXPECT_FALSE(stays(drawn)) << "the third removes";
}

TEST_F(Edges, TheHistoryMatchLooksAtItsRangeBeforeThePeriod) {
  const Reds drawn{3, 8, 13, 19, 26, 31};
  test::put_Draw(store(), kPeriod - 5, "2026-04-20", {drawn, 9});
  test::put_Draw(store(), kPeriod, "2026-05-01", {{1, 2, 4, 5, 6, 7}, 9});
  const struct {
    const char* what;
    PeriodNo first, last;
    int match;
    Reds reds;
    bool stays;
  } cases[] = {{"the same six with another blue", kPeriod - 5, kPeriod - 5, 6, drawn, false},
               {"five of six", kPeriod - 5, kPeriod - 5, 6, {3, 8, 13, 19, 26, 32}, true},
               {"five of six where five match", kPeriod - 9, kPeriod, 5, {3, 8, 13, 19, 26, 32}, false},
               {"the period's own draw doesn't count", kPeriod - 9, kPeriod + 9, 1, {1, 2, 4, 5, 6, 7}, true},
               {"a range without draws", kPeriod - 4, kPeriod - 1, 1, drawn, true},
               {"a red twice counts twice", kPeriod - 5, kPeriod - 5, 3, {3, 3, 3, 30, 32, 33}, false}};
  for (const auto& row : cases) {
    store()
        .query(R"(UPDATE "历史数据过滤" SET "使用状态"=1,"最小值"=?,"最大值"=?,"匹配值"=?)")
        .bind(row.first, row.last, row.match)
        .run();
    EXPECT_EQ(stays(row.reds), row.stays) << row.what;
  }
}

}  // namespace
}  // namespace lotmere
