// Analyses, ticket files coming in, the prize check, and the settings that stand outside the conditions.
#include "cli_home.hpp"

namespace lotmere::test {
namespace {

// The draws are kDrawList without its broken fourth entry.
void fetch_Draws(const CliHome& home) {
  home.do_Step({"draws", "fetch", "--all", home.put_File("list.txt", kDrawList)});
}

TEST(Analyses, AnswerALineANumberOrADraw) {
  const CliHome home;
  fetch_Draws(home);
  const std::pair<Arguments, std::string> cases[] = {
      {{"omission", "red"}, "04\t2\t2\t2\t2\t1\n"},
      {{"omission", "red", "2024005"}, "27\t2\t2\t2\t0\t0\n"},
      {{"omission", "blue", "2025001"}, "07\t1\t—\t—\t—\t4\n"},
      {{"counts", "red", "2024002", "2024005"}, "14\t2\n"},
      {{"numbers", "hints", "2024005"}, "红球 01 02 03 04 05 06\n蓝球 01 02 03 04 05\n"},
      {{"draws", "distribution", "--all"}, " 24 .. .. .. .. .. .. .. 32 33 01 .. "}};
  for (const auto& [arguments, line] : cases)
    EXPECT_NE(home.run(arguments).out.find(line), std::string::npos) << arguments[0] << ' ' << arguments[1];
}

TEST(TicketFiles, ComeBackInAndAreCheckedAgainstTheDraw) {
  const CliHome home;
  fetch_Draws(home);
  home.put_File("in.txt", "01,11,14,19,20,27+03\r\n01 11 14 19 20 27 04\nnothing here\n");
  home.do_Step({"tickets", "import", (home.path() / "in.txt").string(), "--period", "2024006"});
  EXPECT_EQ(home.run({"tickets", "list"}).out,
            "2024006 1 01 11 14 19 20 27+03\n2024006 2 01 11 14 19 20 27+04\n");
  const Reply check = home.run({"tickets", "check", "2024006"});
  EXPECT_EQ(check.status, 0);
  EXPECT_NE(check.out.find("一等奖"), std::string::npos) << check.out;
  Store store(home.home().main_Db());
  Query hits = store.query(R"(SELECT sum("红球中"),sum("蓝球中") FROM "日志表")");
  ASSERT_TRUE(hits.next());
  EXPECT_EQ(hits.number(0), 12);
  EXPECT_EQ(hits.number(1), 1);
}

TEST(LaterCommands, RefuseWhatMakesNoSense) {
  const CliHome home;
  fetch_Draws(home);
  std::filesystem::create_directory(home.path() / "folder");
  home.put_File("empty.txt", "");
  home.put_File("garbage.txt", std::string("01 02 03 04 05 06 07\n\0", 22));
  const std::string here = home.path().string();
  const std::string before = home.contents();
  const std::pair<int, Arguments> cases[] = {
      {2, {"omission"}},
      {2, {"omission", "green"}},
      {1, {"omission", "blue", "202400"}},
      {1, {"omission", "red", "2024004"}},
      {2, {"counts", "red", "2024001"}},
      {1, {"counts", "blue", "2024001", "today"}},
      {1, {"counts", "blue", "2024002", "2024001"}},
      {1, {"numbers", "hints", "202400"}},
      {1, {"tickets", "import", here + "/none", "--period", "2024007"}},
      {1, {"tickets", "import", here + "/folder", "--period", "2024007"}},
      {1, {"tickets", "import", here + "/empty.txt", "--period", "2024007"}},
      {1, {"--answer", "no", "tickets", "import", here + "/garbage.txt", "--period", "2024007"}},
      {1, {"tickets", "import", here + "/list.txt"}},
      {1, {"tickets", "check", "2024007"}},
      {2, {"conditions", "position", "8", "1"}},
      {1, {"conditions", "position", "7", "17"}},
      {1, {"conditions", "division", "六区间7", "1"}},
      {1, {"conditions", "match", "2024002", "2024001", "5"}},
      {2, {"conditions", "match", "2024001", "2024002", "7"}},
      {2, {"conditions", "shrink", "8"}},
  };
  for (const auto& [status, arguments] : cases) {
    SCOPED_TRACE(arguments.at(0) + ' ' + (arguments.size() > 1 ? arguments.at(1) : ""));
    expect_OneLine(home.run(arguments), status);
    EXPECT_TRUE(home.contents() == before);
  }
}

}  // namespace
}  // namespace lotmere::test
