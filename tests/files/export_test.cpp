#include "files/export.hpp"

#include <gtest/gtest.h>

#include "core/desk_script.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

namespace fs = std::filesystem;
using test::put_Ticket;
using test::read_File;
using test::TempHome;

constexpr DrawNumbers kNumbers{{1, 2, 3, 4, 5, 6}, 7};

// A machine that refuses to write.
class FullDisk final : public FileSystem {
 public:
  bool exists(const fs::path& path) override { return fs::exists(path); }
  void remove(const fs::path& path) override { refuse(path); }
  void sync(const fs::path& path) override { refuse(path); }
  void replace(const fs::path& from, const fs::path& /*to*/) override { refuse(from); }
  void write_Whole(const fs::path& path, const std::string& /*bytes*/) override { refuse(path); }

 private:
  [[noreturn]] static void refuse(const fs::path& path) {
    throw fs::filesystem_error("write", path, std::make_error_code(std::errc::no_space_on_device));
  }
};

TEST(ExportLine, HoldsWhatTheSwitchesSay) {
  struct Row {
    const char* name;
    bool seq, period, numbers;
    const char* blanks;
    const char* commas;
  };
  const Row rows[] = {
      {"numbers", false, false, true, "01 02 03 04 05 06+07", "01,02,03,04,05,06|07"},
      {"running number", true, false, true, "12      01 02 03 04 05 06+07", "12,,,,,,01,02,03,04,05,06|07"},
      {"period", false, true, true, "2007001   01 02 03 04 05 06+07", "2007001,,,01,02,03,04,05,06|07"},
      {"all", true, true, true, "12      2007001   01 02 03 04 05 06+07",
       "12,,,,,,2007001,,,01,02,03,04,05,06|07"},
      {"no numbers", true, true, false, "12      2007001", "12,,,,,,2007001"},
      {"a lone period, its blanks cut off", false, true, false, "2007001", "2007001"},
      {"a lone running number, its blanks cut off", true, false, false, "12", "12"},
      {"nothing", false, false, false, "", ""},
  };
  for (const Row& row : rows) {
    ExportSwitches switches{row.seq, row.period, row.numbers};
    EXPECT_EQ(export_Line(12, 2007001, kNumbers, switches), row.blanks) << row.name;
    switches.format = 1;
    EXPECT_EQ(export_Line(12, 2007001, kNumbers, switches), row.commas) << row.name;
  }
  EXPECT_EQ(export_Line(123456789, 2007001, {{10, 11, 22, 31, 32, 33}, 16}, {true}),
            "12345678910 11 22 31 32 33+16");
}

TEST(ExportTickets, SeparatorFollowsEachFifthTicketAndTheLastOneToo) {
  struct Row {
    int tickets;
    const char* text;
  };
  const Row rows[] = {{4, "1\r\n2\r\n3\r\n4\r\n"},
                      {5, "1\r\n2\r\n3\r\n4\r\n5\r\n\r\n"},
                      {12, "1\r\n2\r\n3\r\n4\r\n5\r\n\r\n6\r\n7\r\n8\r\n9\r\n10\r\n\r\n11\r\n12\r\n"}};
  for (const Row& row : rows) {
    TempHome home;
    for (int i = 1; i <= row.tickets; ++i) put_Ticket(home.store(), i, i, 2007001, kNumbers);
    ScriptedDesk desk;
    const auto file = home.path() / "tickets.txt";
    EXPECT_EQ(export_Tickets(home.store(), desk, 2007001, file, {true, false, false, true}), row.tickets);
    EXPECT_EQ(read_File(file), row.text);
  }
}

TEST(ExportTickets, WritesOnePeriodByRunningNumberAndKeepsNumbersAsTheyStand) {
  TempHome home;
  put_Ticket(home.store(), 1, 3, 2007001, kNumbers);
  put_Ticket(home.store(), 2, 1, 2007001, {{9, 8, 8, 33, 1, 2}, 16});
  put_Ticket(home.store(), 3, 1, 2007002, kNumbers);
  put_Ticket(home.store(), 4, 2, 2007001, {{10, 20, 30, 31, 32, 33}, 1});
  ScriptedDesk desk;
  desk.running_Text().set("before");
  const auto file = home.path() / "tickets.txt";
  EXPECT_EQ(export_Tickets(home.store(), desk, 2007001, file, {true, false, true}), 3);
  EXPECT_EQ(
      read_File(file),
      "1       09 08 08 33 01 02+16\r\n2       10 20 30 31 32 33+01\r\n3       01 02 03 04 05 06+07\r\n");
  EXPECT_EQ(desk.running_Text().text(), "before\r\n\r\n号码导出完成．");
}

TEST(ExportTickets, ServesTheDeskOnTheWayAndStopsForNobody) {
  TempHome home;
  {
    StoreChange change(home.store());
    for (int i = 1; i <= 20'000; ++i) put_Ticket(home.store(), i, i, 2007001, kNumbers);
    change.commit();
  }
  ScriptedDesk desk;
  int served = 0;
  desk.on_serve = [&] {
    ++served;
    EXPECT_EQ(desk.jobs_open, 1);
    desk.request_Stop();
  };
  EXPECT_EQ(export_Tickets(home.store(), desk, 2007001, home.path() / "tickets.txt", {}), 20'000);
  EXPECT_EQ(read_File(home.path() / "tickets.txt").size(), 20'000u * 22u);
  EXPECT_GE(served, 20);
  EXPECT_EQ(desk.progress, 20'000);
  EXPECT_EQ(desk.jobs_open, 0);
}

TEST(ExportCommand, TakesThePeriodOfTheFirstRow) {
  TempHome home;
  put_Ticket(home.store(), 1, 1, 2008001, kNumbers);
  put_Ticket(home.store(), 2, 1, 2007001, {{1, 2, 3, 4, 5, 33}, 7});
  ScriptedDesk desk;
  EXPECT_EQ(export_Command(home.store(), desk, home.path() / "tickets.txt", {}), 1);
  EXPECT_EQ(read_File(home.path() / "tickets.txt"), "01 02 03 04 05 33+07\r\n");
  EXPECT_TRUE(desk.told.empty());
}

TEST(ExportCommand, AnEmptyTableEmptiesTheFileAndWarns) {
  TempHome home;
  const auto file = home.path() / "tickets.txt";
  real_Files().write_Whole(file, "yesterday");
  ScriptedDesk desk;
  EXPECT_EQ(export_Command(home.store(), desk, file, {}), 0);
  EXPECT_TRUE(fs::exists(file));
  EXPECT_EQ(read_File(file), "");
  EXPECT_EQ(desk.running_Text().text(), "\r\n\r\n号码导出完成．");
  ASSERT_EQ(desk.told.size(), 1u);
  EXPECT_EQ(desk.told[0].text, "表格中还没有号码！");
  EXPECT_EQ(desk.told[0].tone, Tone::warning);
}

TEST(ExportCommand, AFullDiskLeavesTheEarlierFileAndPutsTheControlsBack) {
  TempHome home;
  put_Ticket(home.store(), 1, 1, 2007001, kNumbers);
  const auto file = home.path() / "tickets.txt";
  real_Files().write_Whole(file, "yesterday");
  ScriptedDesk desk;
  FullDisk disk;
  EXPECT_THROW(export_Command(home.store(), desk, file, {}, disk), fs::filesystem_error);
  EXPECT_EQ(read_File(file), "yesterday");
  EXPECT_EQ(desk.jobs_open, 0);
  EXPECT_EQ(desk.running_Text().text(), "");
  EXPECT_TRUE(desk.told.empty());
}

}  // namespace
}  // namespace lotmere
