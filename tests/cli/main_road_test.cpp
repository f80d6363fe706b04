#include <gtest/gtest.h>

#include "cli_home.hpp"

namespace lotmere::test {
namespace {

// Runs a command and compares all that it gives.
void expect_Reply(const CliHome& home, const Arguments& arguments, const std::string& out,
                  const std::string& err = "") {
  SCOPED_TRACE(arguments.at(0) + ' ' + arguments.at(1));
  const Reply reply = home.run(arguments);
  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.out, out);
  EXPECT_EQ(reply.err, err);
}

std::string lines_With(const std::string& text, const std::string& part) {
  std::string found;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = std::min(text.find('\n', from), text.size());
    const std::string line = text.substr(from, end - from);
    if (line.find(part) != std::string::npos) found += line + '\n';
    from = end + 1;
  }
  return found;
}

// The six conditions that a new store has switched on go off, but for the sum, which keeps 21 to 25.
void set_Conditions(const CliHome& home) {
  expect_Reply(home, {"conditions", "use", "奇数个数", "off"}, "10\t奇数个数\toff\t１～５\n");
  expect_Reply(home, {"conditions", "use", "9", "off"}, "9\tAC值\toff\t５～１０\n");
  for (const char* name : {"大数个数", "最大间距", "连号"})
    EXPECT_EQ(home.run({"conditions", "use", name, "off"}).status, 0) << name;
  expect_Reply(home, {"conditions", "allow", "总和值", "21-23, 24,25"}, "1\t总和值\ton\t２１～２５\n");
}

TEST(MainRoad, FromADrawListToATicketFile) {
  const CliHome home;
  const std::string list = home.put_File("list.txt", kDrawList);
  expect_Reply(home, {"draws", "fetch", list, "--all"},
               "已成功更新!\n新增 5 期，更新 0 期，跳过 1 条无效数据，最新一期 2024006\n");
  expect_Reply(home, {"draws", "list", "--last", "2"},
               "2024005 2024-01-11 04 07 11 17 22 27+08\n2024006 2024-01-14 01 11 14 19 20 27+03\n");

  const std::string picked =
      "红球拖码: 01 02 03 04 05 06 07 08\n红球胆码:\n蓝球拖码: 01 02\n蓝球胆码:\n注数: 56\n";
  expect_Reply(home, {"numbers", "pick", "--red-tuo", "01,2-8", "--blue-tuo", "1,2"}, picked);
  expect_Reply(home, {"numbers", "show"}, picked);
  set_Conditions(home);
  EXPECT_EQ(lines_With(home.run({"conditions", "list"}).out, "\ton\t"), "1\t总和值\ton\t２１～２５\n");

  expect_Reply(home, {"tickets", "init", "2024007"}, "初始化选号完成!共 ５６ 注！\n");
  const Reply run = home.run({"tickets", "run", "2024007"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  // Nine sixes of 1 to 8 have a sum of 21 to 25, each with two blues.
  EXPECT_EQ(lines_With(run.out, "注"),
            "过滤缩水之前共：５６注．\n[ 总和值 ]过滤后余：１８ 注\n[组合（具体）]过滤后余：１８ 注\n"
            "[保六型]缩水后余：４ 注\n全部过滤缩水完成,余：４ 注\n");
  // No two of them have six numbers in common, blue included; worked out by hand.
  expect_Reply(home, {"tickets", "list", "2024007"},
               "2024007 1 01 02 03 04 05 06+01\n2024007 2 01 02 03 04 05 07+02\n"
               "2024007 3 01 02 03 04 06 08+02\n2024007 4 01 02 03 04 07 08+01\n");

  const std::string target = (home.path() / "tickets.txt").string();
  expect_Reply(home, {"tickets", "export", target}, "已导出 4 注到 " + target + "\n");
  EXPECT_EQ(
      read_File(target),
      "01 02 03 04 05 06+01\r\n01 02 03 04 05 07+02\r\n01 02 03 04 06 08+02\r\n01 02 03 04 07 08+01\r\n");
  expect_Reply(home, {"tickets", "export", target, "--columns", "序号,号码", "--format", "1"},
               "已导出 4 注到 " + target + "\n");
  EXPECT_EQ(read_File(target).substr(0, 34), "1,,,,,,,01,02,03,04,05,06|01\r\n2,,,");

  expect_Reply(home, {"tickets", "clear"}, "删除记录完成！\n", "确认要删除全部记录吗？ [是]\n");
  expect_Reply(home, {"tickets", "list"}, "");
}

TEST(MainRoad, TheAddressIsRemembered) {
  const CliHome home;
  const std::string list = home.put_File("list.txt", kDrawList);
  home.do_Step({"draws", "fetch", "--all", list});
  expect_Reply(home, {"draws", "fetch"},
               "已成功更新!\n新增 0 期，更新 5 期，跳过 1 条无效数据，最新一期 2024006\n");
}

TEST(MainRoad, SingleDrawsAreAddedReplacedAndDeleted) {
  const CliHome home;
  expect_Reply(home, {"draws", "list"}, "");
  // As a ball is written: 08 and 09 are no octal numbers, and 010 is ten.
  expect_Reply(home, {"draws", "add", "2024001", "2024-01-02", "33", "09", "21", "08", "010", "1", "09"},
               "2024001 2024-01-02 01 08 09 10 21 33+09\n");
  expect_Reply(home, {"draws", "add", "2024001", "2024-01-03", "1", "2", "3", "4", "5", "6", "7"},
               "2024001 2024-01-03 01 02 03 04 05 06+07\n");
  expect_Reply(home, {"draws", "list"}, "2024001 2024-01-03 01 02 03 04 05 06+07\n");
  expect_Reply(home, {"draws", "stats", "2024001", "2024001"}, "统计完成，共 1 期\n");
  expect_Reply(home, {"draws", "delete", "2024001"}, "删除完成！\n");
  expect_Reply(home, {"draws", "list"}, "");
}

TEST(MainRoad, OwnSetsAndReset) {
  const CliHome home;
  home.do_Step({"draws", "list"});
  const std::string factory = home.contents();
  expect_Reply(home, {"conditions", "group", "10", "1,33"}, "");
  EXPECT_NE(home.contents(), factory);
  expect_Reply(home, {"conditions", "group", "10", "无"}, "");
  EXPECT_EQ(home.contents(), factory);
  const std::string recounted = "区间重新划分之后，各区间的开出号码个数需要重新计算。。。\n";
  expect_Reply(home, {"conditions", "interval", "4", "1-7"}, recounted);
  expect_Reply(home, {"conditions", "interval", "4", "31-33"}, recounted);
  EXPECT_EQ(home.contents(), factory);

  home.do_Step({"numbers", "pick", "--red-dan", "1-5", "--red-tuo", "6", "--blue-dan", "16"});
  expect_Reply(home, {"conditions", "reset"}, "完成，过滤条件已经还原为默认值！\n");
  EXPECT_EQ(home.contents(), factory);
  home.do_Step({"numbers", "pick", "--red-tuo", "1-9"});
  expect_Reply(home, {"numbers", "clear"}, "");
  EXPECT_EQ(home.contents(), factory);
}

TEST(MainRoad, NoAnswersEveryQuestion) {
  const CliHome home;
  home.do_Step({"numbers", "pick", "--red-tuo", "1-6", "--blue-tuo", "1"});
  home.do_Step({"tickets", "init", "2024001"});
  const Reply kept = home.run({"--answer", "no", "tickets", "clear"});
  EXPECT_EQ(kept.status, 1);
  EXPECT_EQ(kept.out, "");
  expect_Reply(home, {"tickets", "init", "2024001", "--answer", "no"}, "初始化选号完成!共 ２ 注！\n",
               "该期数已有记录存在日志表中!要删除它吗？ 按'是',删除它;按'否'保留它! [否]\n");
  expect_Reply(home, {"tickets", "init", "2024001", "--answer", "yes"}, "初始化选号完成!共 １ 注！\n",
               "该期数已有记录存在日志表中!要删除它吗？ 按'是',删除它;按'否'保留它! [是]\n");
}

TEST(Help, StandsOnEveryLevelWithoutAHome) {
  const struct {
    std::string group;
    Arguments commands;
  } levels[] = {{"draws", {"fetch", "add", "delete", "list", "stats"}},
                {"numbers", {"pick", "show", "clear"}},
                {"conditions", {"list", "use", "allow", "interval", "group", "reset"}},
                {"tickets", {"init", "run", "list", "clear", "export"}}};
  const auto expect_Help = [](Arguments level, const std::string& name) {
    SCOPED_TRACE(name);
    level.emplace_back("--help");
    const Reply reply = run_Bare(level);
    EXPECT_EQ(reply.status, 0);
    EXPECT_EQ(reply.err, "");
    EXPECT_NE(reply.out.find(name), std::string::npos) << reply.out;
  };
  expect_Help({}, "lotmere-cli");
  for (const auto& [group, commands] : levels) {
    expect_Help({group}, group);
    for (const std::string& command : commands) expect_Help({group, command}, command);
  }
}

}  // namespace
}  // namespace lotmere::test
