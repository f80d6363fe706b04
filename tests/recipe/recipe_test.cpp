// The recipes of the developer documents, followed: the tables that this program is built with have one row
// more each, tests/recipe/condition_row.txt and statistic_row.txt, and nothing else differs.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "catalogue/draw_columns.hpp"
#include "cli/cli_home.hpp"
#include "conditions/condition_store.hpp"
#include "history/export_sheet.hpp"
#include "panels/pages.hpp"
#include "support/desk_script.hpp"

namespace lotmere {
namespace {

constexpr const char* kName = "首尾和";

class Recipe : public testing::Test {
 protected:
  void SetUp() override {
    home_.doStep({"draws", "fetch", "--all", home_.putFile("list.txt", test::kDrawList)});
    home_.doStep({"numbers", "pick", "--red-tuo", "1-9", "--blue-tuo", "5"});
  }
  test::CliHome home_;
};

TEST_F(Recipe, ARowIsAConditionEverywhere) {
  const auto lines_of = [&](const test::Arguments& arguments) {
    const test::Reply reply = home_.run(arguments);
    EXPECT_EQ(reply.status, 0) << reply.err;
    return reply.out;
  };
  EXPECT_NE(lines_of({"conditions", "list"}).find("74\t首尾和\toff\t２０～４８\n"), std::string::npos)
      << "factory cells";
  EXPECT_EQ(lines_of({"conditions", "allow", kName, "9,20"}), "74\t首尾和\toff\t９ 或 ２０\n");
  lines_of({"conditions", "use", kName, "on"});
  EXPECT_NE(lines_of({"conditions", "show"}).find(" 首尾和取值范围： "), std::string::npos);
  // 1,107,568 sixes: those whose first and last red add up to 9 (1 + 8: C(6,4), 2 + 7: C(4,4)) or 20.
  std::int64_t sixes = 0;
  for (const int sum : {9, 20})
    for (int first = 1; first < sum - first; ++first) {
      const int between = sum - 2 * first - 1;
      sixes += between < 4 ? 0 : between * (between - 1) * (between - 2) * (between - 3) / 24;
    }
  EXPECT_NE(lines_of({"conditions", "strength", kName})
                .find(fmt::format("\t{:.2f}\t", 100.0 * double(sixes) / kAllRedSixes)),
            std::string::npos);

  home_.doStep({"tickets", "init", "2024007"});
  for (const Condition& condition : allConditions())
    if (condition.used_at_first) home_.doStep({"conditions", "use", condition.name, "off"});
  home_.doStep({"conditions", "shrink", "7"});
  const std::string run = lines_of({"tickets", "run", "2024007"});
  EXPECT_NE(run.find("[首尾和]过滤后余：１６ 注"), std::string::npos) << run;  // C(6,4) and C(4,4)

  const auto pages = conditionPages();
  const auto page = std::ranges::find(pages, kName, &ConditionPage::caption);
  ASSERT_NE(page, pages.end());
  Store store(home_.home().mainDb());
  const ConditionPanel panel = valuePage(loadConditionSet(store), static_cast<int>(page - pages.begin()) + 1);
  EXPECT_EQ(panel.items.size(), 54U);
  EXPECT_TRUE(panel.ticked);
}

TEST_F(Recipe, ARowIsAStatisticEverywhere) {
  const auto place = std::ranges::find(drawColumns(), "首尾差", &DrawColumn::name);
  EXPECT_EQ(std::next(place)->name, "AC值") << "in the middle";
  const test::Reply found = home_.run({"draws", "search", "首尾差=26"});
  EXPECT_EQ(found.status, 0) << found.err;
  EXPECT_EQ(found.out.find("2024006"), 0U) << "19 - 1 is none of them; 27 - 1 is: " << found.out;
  Store store(home_.home().mainDb());
  ScriptedDesk desk;
  const auto sheet = home_.path() / "sheet.xlsx";
  EXPECT_EQ(exportHistory(store, desk, sheet).rows, 5);
  EXPECT_EQ(store.value(R"(SELECT sum("首尾差") FROM "历史记录")"), 5 + 30 + 21 + 23 + 26);
}

// A store that was made before the rows were there.
TEST_F(Recipe, AnOlderStoreTakesTheRowsUpAndLosesNothing) {
  {
    Store store(home_.home().mainDb());
    store.db().exec(R"(ALTER TABLE "历史记录" DROP COLUMN "首尾差"; ALTER TABLE "过滤条件" ADD "备注";
      DELETE FROM "过滤条件" WHERE "ID" BETWEEN 5200 AND 5266; DELETE FROM "默认过滤条件" WHERE "ID" BETWEEN
      5200 AND 5266;
      DELETE FROM "过滤条件使用情况" WHERE "条件"=74; DELETE FROM "默认过滤条件使用情况" WHERE "条件"=74;
      UPDATE "过滤条件" SET "Value"=1-"Value" WHERE "ID" BETWEEN 5140 AND 6660; PRAGMA user_version=3)");
  }
  const auto rows = [&](const char* select) {
    Store store(home_.home().mainDb());
    Query query = store.query(select);
    std::string text;
    while (query.next()) text += query.text(0) + ' ';
    return text;
  };
  home_.doStep({"conditions", "list"});
  EXPECT_EQ(rows(R"(SELECT "首尾差" FROM "历史记录" ORDER BY "期号")"), "5 30 21 23 26 ") << "computed";
  EXPECT_EQ(rows(R"(SELECT sum("Value") FROM "过滤条件" WHERE "ID" BETWEEN 5200 AND 5266)"), "29 ")
      << "the factory's";
  EXPECT_EQ(rows(
                R"(SELECT count(*) FROM "过滤条件" AS a JOIN "默认过滤条件" AS b USING ("ID") WHERE
             a."Value"=b."Value"
                    AND "ID" BETWEEN 5140 AND 6660 AND "ID" NOT BETWEEN 5200 AND 5266)"),
            "0 ")
      << "the user's";
  EXPECT_EQ(rows("PRAGMA user_version"), "6 ");
  EXPECT_EQ(checkStore(home_.home().mainDb()), StoreState::sound);
  home_.doStep({"conditions", "use", kName, "on"});
  EXPECT_EQ(checkStore(home_.home().backupDb()), StoreState::sound);
}

}  // namespace
}  // namespace lotmere
