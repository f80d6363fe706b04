#include "conditions/summary.hpp"

#include <gtest/gtest.h>

#include "conditions/condition_store.hpp"
#include "conditions/own_sets.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

TEST(Summary, TellsEverySettingInItsLine) {
  test::TempHome home;
  Store& store = home.store();
  test::put_Pick(store, 8, PickState::tuo);
  test::put_Pick(store, 105, PickState::dan);
  set_Column(store, AttributeTable::first, "自定义组2", std::vector{9, 3});
  set_Usage(store, 21, true);
  set_Usage(store, 29, true);
  set_Usage(store, 46, true);
  for (int k = 0; k <= 6; ++k) set_Cell(store, 3890 + k, false);
  set_Usage(store, 5, false);

  const std::string text = tj_Summary(store);
  const char* lines[] = {
      "\r\n 红球“拖码”： ０８  \r\n\r\n 红球“胆码”： \r\n\r\n",
      " 蓝球“胆码”： ０５  \r\n\r\n 最大间距取值范围：  未 使 用\r\n\r\n 连号取值范围： ０  ２  ２+２  ３  "
      "\r\n",
      " 间距四：  未 使 用\r\n\r\n 间距八：  未 使 用\r\n\r\n 间距3： （２,２,２）   （３,２,１）   ",
      "\r\n 自定义组1 ——　未 使 用 \r\n\r\n 自定义组2　号码：（０３,０９） —— 允许开出个数（0个,1个,",
      "\r\n 自定义组10（ 无 号 码 ） ——（条 件 未 设 置）\r\n\r\n 缩 水 类 型： 保六型\r\n\r\n"};
  std::size_t from = 0;
  for (const char* line : lines) {
    from = text.find(line, from);
    ASSERT_NE(from, std::string::npos) << line << "\nin " << text;
  }
  set_Usage(store, 29, false);
  EXPECT_EQ(tj_FillGroups(store)[9], "自定义组10——　未 使 用 ");
}

TEST(OwnSets, ANumberPickedSwitchesThePlaceOnAndTheLastOneGoneSwitchesItOff) {
  test::TempHome home;
  set_Place(home.store(), 7, std::vector{1, 16});
  EXPECT_TRUE(is_Used(home.store(), 36));
  EXPECT_EQ(read_AttributeColumn(home.store(), AttributeTable::first, "第7")[16], 1);
  set_Place(home.store(), 7, {});
  EXPECT_FALSE(is_Used(home.store(), 36));
  EXPECT_FALSE(set_CustomInterval(home.store(), "六区间7", std::vector{1}));
}

}  // namespace
}  // namespace lotmere
