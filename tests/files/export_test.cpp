#include "files/export.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "start/home.hpp"
#include "support/store_test.hpp"

namespace lotmere::test {
namespace {

constexpr DrawNumbers kNumbers{{1, 2, 3, 4, 5, 6}, 7};

TEST(ExportLine, HoldsWhatTheSwitchesSay) {
  const struct {
    ExportSwitches switches;
    const char* line;
  } rows[] = {{{false, false, true, false, 1}, "01,02,03,04,05,06|07"},
              {{true, true, true}, "12      2007001   01 02 03 04 05 06+07"},
              {{true, true, true, false, 1}, "12,,,,,,2007001,,,01,02,03,04,05,06|07"},
              {{false, true, false, false, 1}, "2007001"},
              {{true, false, false}, "12"},
              {{false, false, false}, ""}};
  for (const auto& [switches, line] : rows) EXPECT_EQ(exportLine(12, 2007001, kNumbers, switches), line);
}

class Export : public StoreTest {
 protected:
  const std::filesystem::path file_ = home_.path() / "tickets.txt";
};

TEST_F(Export, WritesOnePeriodByRunningNumberWithASeparatorBehindEachFifth) {
  for (int i = 1; i <= 12; ++i) putTicket(store_, i, 13 - i, i > 9 ? 2008001 : 2007001, kNumbers);
  putTicket(store_, 13, 99, 2007001, {{9, 8, 8, 33, 1, 2}, 16});
  EXPECT_EQ(exportTickets(store_, desk_, 2007001, file_, {true, false, false, true}), 10);
  EXPECT_EQ(readFile(file_), "4\r\n5\r\n6\r\n7\r\n8\r\n\r\n9\r\n10\r\n11\r\n12\r\n99\r\n\r\n");
  putTicket(store_, 14, 1, 2006001, {{9, 8, 8, 33, 1, 2}, 16});
  EXPECT_EQ(exportCommand(store_, desk_, file_, {}).rows, 1) << "of the first period";
  EXPECT_EQ(readFile(file_), "09 08 08 33 01 02+16\r\n");
  EXPECT_TRUE(desk_.told.empty());
}

TEST_F(Export, OfNoTicketWritesNothingAndWarns) {
  realFiles().writeWhole(file_, "yesterday");
  EXPECT_EQ(exportCommand(store_, desk_, file_, {}).rows, 0);
  EXPECT_EQ(readFile(file_), "yesterday");
  EXPECT_EQ(desk_.runningText().text(), "") << "nothing is said to be complete";
  EXPECT_EQ(desk_.told.at(0).tone, Tone::warning);
  putTicket(store_, 1, 1, 2007001, kNumbers);
  EXPECT_EQ(exportTickets(store_, desk_, 2008001, file_, {}), 0);
  EXPECT_EQ(readFile(file_), "yesterday");
}

TEST_F(Export, AsATableHasAColumnForEachNumberAndCanBeStopped) {
  putTicket(store_, 1, 2, 2007001, kNumbers);
  putTicket(store_, 2, 1, 2007001, {{9, 8, 8, 33, 1, 2}, 16});
  const struct {
    ExportSwitches switches;
    const char* text;
  } rows[] = {{{true, true, true, true, 1, TicketFile::csv},
               "\xEF\xBB\xBF序号,期号,红球1,红球2,红球3,红球4,红球5,红球6,蓝球\r\n"
               "1,2007001,09,08,08,33,01,02,16\r\n2,2007001,01,02,03,04,05,06,07\r\n"},
              {{true, false, false, false, 0, TicketFile::csv}, "\xEF\xBB\xBF序号\r\n1\r\n2\r\n"}};
  for (const auto& [switches, text] : rows) {
    EXPECT_EQ(exportCommand(store_, desk_, file_, switches).rows, 2);
    EXPECT_EQ(readFile(file_), text);
  }
  desk_.course().on_look = [&] { desk_.course().requestStop(); };
  const ExportSwitches sheet{.file = TicketFile::spreadsheet};
  EXPECT_EQ(exportCommand(store_, desk_, file_, sheet).outcome, Outcome::stopped);
  EXPECT_EQ(readFile(file_), rows[1].text);
  desk_.course().on_look = {};
  EXPECT_EQ(exportCommand(store_, desk_, file_, sheet).rows, 2);
  EXPECT_TRUE(readFile(file_).starts_with("PK"));
}

// By name and by every kind of link, also to a profile that has no file yet.
TEST_F(Export, NeverTakesThePlaceOfAFileOfTheProgram) {
  putTicket(store_, 1, 1, 2007001, kNumbers);
  const std::filesystem::path& folder = home_.path();
  std::filesystem::create_directory(folder / "below");
  std::filesystem::create_directory_symlink(folder, folder / "below/up");
  for (const std::string name :
       {"Lotmere.db", "Lotmere.backup.db", "甲.uLotmere", "TJmode.tjmod", "Lotmere.lock",
        "甲.uLotmere.damaged", "Lotmere.db-journal", "Lotmere.db.damaged2", "丙.uLotmere"}) {
    SCOPED_TRACE(name);
    std::vector<std::string> targets{name, "below/../" + name, "below/up/" + name, name + " link",
                                     "below/" + name + " link"};
    std::filesystem::create_symlink(name, folder / targets[3]);
    std::filesystem::create_symlink("../" + targets[3], folder / targets[4]);
    if (name != "丙.uLotmere") {
      if (name != "Lotmere.db") realFiles().writeWhole(folder / name, "own");
      std::filesystem::create_hard_link(folder / name, folder / targets.emplace_back(name + " hard"));
    }
    const std::string before = readFile(folder / name);
    for (const std::string& target : targets) {
      desk_.told.clear();
      EXPECT_EQ(exportCommand(store_, desk_, folder / target, {}).rows, 0) << target;
      ASSERT_EQ(desk_.told.size(), 1U);
      EXPECT_EQ(desk_.told[0].text, kOwnFile);
    }
    EXPECT_EQ(readFile(folder / name), before);
    std::filesystem::remove(folder / (name + " hard"));
    if (name != "Lotmere.db") std::filesystem::remove(folder / name);
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "丙.uLotmere"));
  for (const char* name : {"Lotmere.txt", "LotmereTemp.txt", "below/Lotmere.db", "below/甲.uLotmere"})
    EXPECT_EQ(exportCommand(store_, desk_, folder / name, {}).rows, 1) << name << " is the user's";
}

TEST_F(Export, ReplacesAUsersFileWhereverALinkLeadsAndKeepsItsMode) {
  putTicket(store_, 1, 1, 2007001, kNumbers);
  std::filesystem::create_symlink("tickets.txt", home_.path() / "link");
  const auto mode = [&] { return static_cast<int>(std::filesystem::status(file_).permissions()); };
  EXPECT_EQ(exportCommand(store_, desk_, home_.path() / "link", {}).rows, 1) << "where no file stands yet";
  EXPECT_EQ(mode(), 0600);
  std::filesystem::permissions(file_, std::filesystem::perms(0664));
  for (const char* name : {"link", "tickets.txt"}) {
    std::ofstream(file_) << "yesterday";
    EXPECT_EQ(exportCommand(store_, desk_, home_.path() / name, {}).rows, 1);
    EXPECT_EQ(readFile(file_), "01 02 03 04 05 06+07\r\n");
    EXPECT_EQ(mode(), 0664);
  }
  EXPECT_TRUE(std::filesystem::is_symlink(home_.path() / "link"));
}

TEST_F(Export, IsRefusedByWhatIsNoFileOfTheUsers) {
  putTicket(store_, 1, 1, 2007001, kNumbers);
  const auto path = [&](const char* name) { return home_.path() / name; };
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  std::filesystem::create_directory(path("folder"));
  std::filesystem::create_symlink("pipe", path("to pipe"));
  // A device of the test's own: a guard that fails must not cost the machine one. Who can't make one can't
  // replace one.
  const bool own = ::mknod(path("device").c_str(), S_IFCHR | 0600, makedev(1, 3)) == 0;
  const std::string device = own ? "device" : "/dev/null";
  std::filesystem::create_symlink(device, path("to device"));
  std::filesystem::create_symlink("round", path("round"));
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const std::string nameless = "/proc/self/fd/" + std::to_string(ends[1]);
  const std::pair<std::string, std::errc> targets[] = {{"pipe", std::errc::invalid_argument},
                                                       {"to pipe", std::errc::invalid_argument},
                                                       {nameless, std::errc::invalid_argument},
                                                       {"to device", std::errc::invalid_argument},
                                                       {device, std::errc::invalid_argument},
                                                       {"folder", std::errc::is_a_directory},
                                                       {"none/file", std::errc::no_such_file_or_directory},
                                                       {"round", std::errc::too_many_symbolic_link_levels}};
  for (const auto& [name, reason] : targets) try {
      exportCommand(store_, desk_, path(name.c_str()), {});
      ADD_FAILURE() << name << " is no file to be replaced";
    } catch (const std::filesystem::filesystem_error& failure) {
      EXPECT_EQ(failure.code(), std::make_error_code(reason)) << name;
    }
  for (const int end : ends) ::close(end);
  EXPECT_TRUE(std::filesystem::is_fifo(path("pipe")));
  EXPECT_TRUE(std::filesystem::is_character_file(path(device.c_str())));
  realFiles().writeWhole(file_, "another's");
  std::filesystem::permissions(file_, std::filesystem::perms(0666));
  if (::chown(file_.c_str(), 1, 1) != 0) GTEST_SKIP() << "only root can give a file away";
  EXPECT_THROW(exportCommand(store_, desk_, file_, {}), std::filesystem::filesystem_error);
  EXPECT_EQ(readFile(file_), "another's");
}

TEST_F(Export, ServesTheDeskAndAFullDiskLeavesTheEarlierFile) {
  StoreChange change(store_);
  for (int i = 1; i <= 20'000; ++i) putTicket(store_, i, i, 2007001, kNumbers);
  change.commit();
  realFiles().writeWhole(file_, "yesterday");
  int served = 0;
  desk_.course().on_look = [&] { ++served, desk_.course().requestStop(); };
  rlimit usual{};
  ::getrlimit(RLIMIT_FSIZE, &usual);
  const rlimit full{1000, usual.rlim_max};
  std::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &full);
  EXPECT_THROW(exportCommand(store_, desk_, file_, {}), std::filesystem::filesystem_error);
  ::setrlimit(RLIMIT_FSIZE, &usual);
  EXPECT_EQ(readFile(file_), "yesterday");
  const std::filesystem::directory_iterator files(home_.path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 2) << "a half-written file is left behind";
  EXPECT_FALSE(desk_.course().open);
  EXPECT_EQ(exportCommand(store_, desk_, file_, {}).rows, 20'000) << "an export stops for nobody";
  EXPECT_EQ(readFile(file_).size(), 20'000u * 22u);
  EXPECT_GE(served, 40);
}

}  // namespace
}  // namespace lotmere::test
