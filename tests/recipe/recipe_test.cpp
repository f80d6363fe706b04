// The recipes of the developer documents, followed: the catalogue that this program is built with has one row more,
// tests/recipe/condition_row.txt, and nothing else differs.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "cli/cli_home.hpp"
#include "conditions/pages.hpp"

namespace lotmere {
namespace {

constexpr const char* kName = "首尾和";

class Recipe : public testing::Test {
 protected:
  void SetUp() override {
    home_.do_Step({"draws", "fetch", "--all", home_.put_File("list.txt", test::kDrawList)});
    home_.do_Step({"numbers", "pick", "--red-tuo", "1-9", "--blue-tuo", "5"});
  }
  test::CliHome home_;
};

TEST_F(Recipe, ARowIsAConditionEverywhere) {
  const auto lines_Of = [&](const test::Arguments& arguments) {
    const test::Reply reply = home_.run(arguments);
    EXPECT_EQ(reply.status, 0) << reply.err;
    return reply.out;
  };
  EXPECT_NE(lines_Of({"conditions", "list"}).find("74\t首尾和\toff\t２０～４８\n"), std::string::npos)
      << "factory cells";
  EXPECT_EQ(lines_Of({"conditions", "allow", kName, "9,20"}), "74\t首尾和\toff\t９ 或 ２０\n");
  lines_Of({"conditions", "use", kName, "on"});
  EXPECT_NE(lines_Of({"conditions", "show"}).find(" 首尾和取值范围： "), std::string::npos);
  // 1,107,568 sixes: those whose first and last red add up to 9 (1 + 8: C(6,4), 2 + 7: C(4,4)) or 20.
  std::int64_t sixes = 0;
  for (const int sum : {9, 20})
    for (int first = 1; first < sum - first; ++first) {
      const int between = sum - 2 * first - 1;
      sixes += between < 4 ? 0 : between * (between - 1) * (between - 2) * (between - 3) / 24;
    }
  EXPECT_NE(lines_Of({"conditions", "strength", kName})
                .find(fmt::format("\t{:.2f}\t", 100.0 * double(sixes) / kAllRedSixes)),
            std::string::npos);

  home_.do_Step({"tickets", "init", "2024007"});
  for (const Condition& condition : allConditions())
    if (condition.used_at_first) home_.do_Step({"conditions", "use", condition.name, "off"});
  home_.do_Step({"conditions", "shrink", "7"});
  const std::string run = lines_Of({"tickets", "run", "2024007"});
  EXPECT_NE(run.find("[首尾和]过滤后余：１６ 注"), std::string::npos) << run;  // C(6,4) and C(4,4)

  const auto pages = condition_Pages();
  const auto page = std::ranges::find(pages, kName, &ConditionPage::caption);
  ASSERT_NE(page, pages.end());
  Store store(home_.home().main_Db());
  const ConditionPanel panel = value_Page(store, static_cast<int>(page - pages.begin()) + 1);
  EXPECT_EQ(panel.items.size(), 54U);
  EXPECT_TRUE(panel.ticked);
}

}  // namespace
}  // namespace lotmere
