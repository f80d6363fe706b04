// What the ticket commands do with tickets and files that stand already, and how they end when they are
// stopped.
#include "cli/desk_terminal.hpp"
#include "cli_home.hpp"

namespace lotmere::test {
namespace {

// Tickets of two periods, some draws and a selection of 28 tickets.
class TicketCommands : public testing::Test {
 protected:
  TicketCommands() {
    home_.doStep({"draws", "fetch", "--all", home_.putFile("list.txt", kDrawList)});
    home_.doStep({"numbers", "pick", "--red-tuo", "1-8", "--blue-tuo", "1"});
    home_.putFile("two.txt", "2024007 01 02 03 04 05 06+07\n2024008 01 02 03 04 05 07+08\n");
    home_.doStep({"tickets", "import", file("two.txt"), "--format", "1"});
  }
  [[nodiscard]] std::string file(const char* name) const { return (home_.path() / name).string(); }
  // A selection of which the factory conditions leave some tickets.
  void pickWide() const {
    home_.doStep({"numbers", "pick", "--red-tuo", "2,5,9,14,18,23,27,32", "--blue-tuo", "1"});
  }
  [[nodiscard]] std::size_t tickets() const {
    const std::string list = home_.run({"tickets", "list"}).out;
    return static_cast<std::size_t>(std::count(list.begin(), list.end(), '\n'));
  }

  CliHome home_;
};

TEST_F(TicketCommands, NoneThatDeletesIsTakenAsAnswered) {
  home_.putFile("wide.txt", "12 01 02 03 04 05 16+07\n");
  home_.expectRefused({
      {"tickets of the period", 1, {"tickets", "init", "2024007"}},
      {"tickets of any period", 1, {"tickets", "import", file("two.txt"), "--format", "1"}},
      {"all tickets", 1, {"tickets", "clear"}},
      {"no to the deletion", 1, {"--answer", "no", "tickets", "clear"}},
      {"lines of another format",
       1,
       {"tickets", "import", file("wide.txt"), "--period", "2024009", "--existing", "keep"}},
      {"neither kept nor replaced", 2, {"tickets", "init", "2024007", "--existing", "yes"}},
  });
  EXPECT_NE(home_.run({"tickets", "init", "2024007"}).err.find("--answer yes（删除）"), std::string::npos);
  home_.doStep({"--answer", "yes", "tickets", "clear"});
  home_.expectRefused({{"no ticket to be written", 1, {"tickets", "export", file("two.txt")}}});
}

// The option says it; a typed answer means at each question what it always did.
TEST_F(TicketCommands, KeepOrReplaceWhatStands) {
  const struct {
    Arguments arguments;
    std::size_t left;
  } steps[] = {
      {{"tickets", "import", file("two.txt"), "--format", "1", "--existing", "keep"}, 4},
      {{"--answer", "yes", "tickets", "import", file("two.txt"), "--format", "1"}, 6},
      {{"--answer", "no", "tickets", "import", file("two.txt"), "--format", "1"}, 2},
      {{"tickets", "init", "2024007", "--existing", "keep"}, 1 + 28},
      {{"--answer", "no", "tickets", "init", "2024007"}, 29 + 28},
      {{"--answer", "yes", "tickets", "init", "2024007"}, 28},
      {{"tickets", "init", "2024007", "--existing", "replace"}, 28},
      {{"tickets", "import", file("two.txt"), "--format", "1", "--existing", "replace"}, 2},
      {{"--answer", "yes", "tickets", "clear"}, 0},
  };
  for (const auto& [arguments, left] : steps) {
    home_.doStep(arguments);
    EXPECT_EQ(tickets(), left) << arguments[0] << ' ' << arguments[1] << ' ' << arguments[2];
  }
}

// The funnel told ahead is the one that the run then tells, and changes nothing.
TEST_F(TicketCommands, TheFunnelIsWhatTheRunTakesAway) {
  home_.doStep({"tickets", "init", "2024007", "--existing", "replace"});
  const std::string before = home_.contents();
  const Reply ahead = home_.run({"tickets", "funnel"});
  EXPECT_EQ(home_.contents(), before);
  EXPECT_TRUE(ahead.out.starts_with("条件\t之前\t之后\t去掉％\t单独去掉\n总和值\t28\t0\t100.00\t28\n"))
      << ahead.out;
  home_.doStep({"tickets", "funnel", "--csv", file("funnel.csv")});
  EXPECT_TRUE(readFile(file("funnel.csv")).find("总和值,28,0,100.00,28\r\n") != std::string::npos);
  const std::string told = home_.run({"tickets", "run", "2024007", "--funnel"}).out;
  EXPECT_TRUE(told.ends_with(" 注\n" + ahead.out)) << told;
}

// What init and run would leave; with other reds and blues than those picked; and nothing where it is too
// much.
TEST_F(TicketCommands, GeneratesInOneGo) {
  const Arguments generate{"tickets", "generate", "2024007"};
  const auto with = [&](const Arguments& more) {
    Arguments all = generate;
    all.insert(all.end(), more.begin(), more.end());
    return all;
  };
  home_.expectRefused({{"tickets of the period", 1, generate},
                       {"a blue beyond the game", 1, with({"--existing", "keep", "--blues", "1,17"})},
                       {"no blue", 1, with({"--existing", "keep", "--blues", ""})}});
  pickWide();
  home_.doStep({"tickets", "init", "2024007", "--existing", "keep"});
  const std::string run = home_.run({"tickets", "run", "2024007"}).out;
  const std::string list = home_.run({"tickets", "list"}).out;
  EXPECT_GT(tickets(), 2U) << run;
  home_.doStep({"tickets", "import", file("two.txt"), "--format", "1", "--existing", "replace"});
  const Reply made = home_.run(with({"--existing", "keep"}));
  EXPECT_EQ(home_.run({"tickets", "list"}).out, list);
  EXPECT_EQ(made.out, run.substr(run.find("过滤缩水之前共")));

  const Reply too_many = home_.run(with({"--existing", "keep", "--all-reds", "--blues", "1-16"}));
  EXPECT_EQ(too_many.status, 1);
  EXPECT_TRUE(too_many.err.starts_with("过滤缩水后还有 ")) << too_many.err;
  EXPECT_TRUE(too_many.out.starts_with("条件\t之前\t之后\t去掉％\t单独去掉\n总和值\t17721091\t16868147\t"))
      << too_many.out;
  EXPECT_EQ(home_.run({"tickets", "list"}).out, list);
  home_.doStep({"conditions", "shrink", "3"});
  home_.doStep(with({"--existing", "replace", "--all-reds", "--blues", "4,9"}));
  const std::string ten = home_.run({"tickets", "list"}).out;
  EXPECT_TRUE(ten.find("+04\n") != ten.npos && ten.find("+09\n") != ten.npos &&
              ten.find("+01\n") == ten.npos);
}

// Of the tickets in front of the last run or of its shrink, as long as nothing else changes them.
TEST_F(TicketCommands, AGuaranteeIsThatOfTheLastRun) {
  const auto guarantee = [](const char* of) {
    return Arguments{"tickets", "guarantee", "2024007", "--of", of};
  };
  pickWide();
  home_.doStep({"conditions", "shrink", "6"});
  home_.doStep({"tickets", "init", "2024007", "--existing", "replace"});
  home_.expectRefused({{"no run so far", 1, guarantee("run")},
                       {"another period", 1, {"tickets", "guarantee", "2024008"}},
                       {"of nothing", 2, guarantee("init")}});
  const Reply run = home_.run({"tickets", "run", "2024007", "--funnel"});
  EXPECT_NE(run.out.find("\n保六型\t21\t3\t"), run.out.npos) << run.out;
  home_.doStep({"tickets", "list"});
  for (const auto& [of, taken] :
       {std::pair("run", "把过滤缩水前的 28 注"), std::pair("shrink", "把缩水前的 21 注")}) {
    const std::string told = home_.run(guarantee(of)).out;
    EXPECT_TRUE(told.starts_with(std::string(taken) + "逐一当作开奖号码，核对余下的 3 注：\n最高奖级\t"))
        << told;
    EXPECT_NE(told.find("\n一等奖\t3\t"), told.npos) << told;
    EXPECT_NE(told.find("\n成本 6 元；"), told.npos) << told;
  }
  home_.doStep({"tickets", "undo"});
  home_.expectRefused({{"taken back", 1, guarantee("run")}});
}

TEST_F(TicketCommands, AnExportHoldsTheColumnsThatWereAskedFor) {
  home_.doStep({"tickets", "export", file("out.txt"), "--columns", "期号, 序号"});
  EXPECT_EQ(readFile(file("out.txt")), "1       2024007\r\n");
  home_.doStep({"tickets", "export", file("out.csv")});
  EXPECT_TRUE(readFile(file("out.csv")).starts_with("\xEF\xBB\xBF序号,期号,红球1,"));
  home_.doStep({"tickets", "export", file("out.csv"), "--as", "text", "--format", "1"});
  EXPECT_TRUE(std::isdigit(readFile(file("out.csv")).front()));
  home_.doStep({"tickets", "export", file("out.txt")});
  EXPECT_EQ(readFile(file("out.txt")), "01 02 03 04 05 06+07\r\n") << "numbers alone";
}

TEST_F(TicketCommands, AFullDiskBehindTheResultIsAFailure) {
  const Surroundings surroundings{"/proc/lotmere", "/proc/lotmere", "/proc/lotmere"};
  for (const Arguments& command : {Arguments{"tickets", "list"}, {"conditions", "show"}}) {
    std::ofstream full("/dev/full");
    std::ostringstream err;
    Arguments arguments{"--home", home_.path().string()};
    arguments.insert(arguments.end(), command.begin(), command.end());
    EXPECT_EQ(runCli(arguments, full, err, surroundings), 1);
    EXPECT_EQ(err.str(), "无法写出结果。\n");
  }
}

// Ctrl-C in front of the first look at the desk.
class Interrupted : public TicketCommands {
 protected:
  Reply run(const Arguments& arguments) const {
    TerminalCourse::interrupt();
    return home_.run(arguments);
  }
};

TEST_F(Interrupted, EveryCommandThatStopsSaysSoAndEndsWithAStatusOfItsOwn) {
  home_.doStep({"numbers", "pick", "--red-tuo", "1-12", "--blue-tuo", "1"});
  home_.doStep({"tickets", "init", "2024007", "--existing", "replace"});
  const std::pair<Arguments, const char*> cases[] = {
      {{"tickets", "init", "2024007", "--existing", "keep"}, "用户中止,当前记录余："},
      {{"tickets", "run", "2024007"}, "用户中止,当前记录余：１４３６ 注"},
      {{"draws", "export", file("x.xlsx")}, "用户中止，数据没有导出。"},
      {{"conditions", "strength"}, "用户中止，算完了"}};
  for (const auto& [arguments, said] : cases) {
    const Reply reply = run(arguments);
    EXPECT_EQ(reply.status, 130) << arguments[0] << ' ' << arguments[1];
    EXPECT_NE((reply.out + reply.err).find(said), std::string::npos) << reply.out << reply.err;
    EXPECT_EQ(home_.run({"numbers", "show"}).status, 0) << "the next command isn't stopped for it";
  }
  EXPECT_EQ(tickets(), 924U + 512U) << "a stopped initialisation keeps what is written, a run what is left";
  EXPECT_EQ(home_.run({"tickets", "run", "2024007"}).status, 0);
}

TEST_F(Interrupted, WhatCantBeStoppedSaysSoAndIsDone) {
  const std::pair<Arguments, const char*> cases[] = {
      {{"tickets", "import", file("two.txt"), "--format", "1", "--existing", "keep"}, "不能中断"},
      {{"tickets", "export", file("out.txt")}, "不能中断"},
      {{"tickets", "check", "2024006"}, "来不及中断"},
      {{"numbers", "clear"}, "来不及中断"}};
  home_.putFile("drawn.txt", "2024006 01 02 03 04 05 06+07\n");
  home_.doStep({"tickets", "import", file("drawn.txt"), "--format", "1", "--existing", "keep"});
  for (const auto& [arguments, said] : cases) {
    const Reply reply = run(arguments);
    expectOneLine({reply.status, "done", reply.err}, 0);
    EXPECT_NE(reply.err.find(said), std::string::npos) << arguments[1] << ": " << reply.err;
  }
  EXPECT_EQ(tickets(), 2U + 1U + 2U);
  EXPECT_EQ(readFile(file("out.txt")), "01 02 03 04 05 06+07\r\n");
}

}  // namespace
}  // namespace lotmere::test
