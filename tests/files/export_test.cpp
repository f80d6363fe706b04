#include "files/export.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

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
  for (const auto& [switches, line] : rows) EXPECT_EQ(export_Line(12, 2007001, kNumbers, switches), line);
}

class Export : public StoreTest {
 protected:
  const std::filesystem::path file_ = home_.path() / "tickets.txt";
};

TEST_F(Export, WritesOnePeriodByRunningNumberWithASeparatorBehindEachFifth) {
  for (int i = 1; i <= 12; ++i) put_Ticket(store_, i, 13 - i, i > 9 ? 2008001 : 2007001, kNumbers);
  put_Ticket(store_, 13, 99, 2007001, {{9, 8, 8, 33, 1, 2}, 16});
  EXPECT_EQ(export_Tickets(store_, desk_, 2007001, file_, {true, false, false, true}), 10);
  EXPECT_EQ(read_File(file_), "4\r\n5\r\n6\r\n7\r\n8\r\n\r\n9\r\n10\r\n11\r\n12\r\n99\r\n\r\n");
  put_Ticket(store_, 14, 1, 2006001, {{9, 8, 8, 33, 1, 2}, 16});
  EXPECT_EQ(export_Command(store_, desk_, file_, {}), 1) << "of the first period";
  EXPECT_EQ(read_File(file_), "09 08 08 33 01 02+16\r\n");
  EXPECT_TRUE(desk_.told.empty());
}

TEST_F(Export, OfNoTicketEmptiesTheFileAndWarns) {
  real_Files().write_Whole(file_, "yesterday");
  EXPECT_EQ(export_Command(store_, desk_, file_, {}), 0);
  EXPECT_EQ(read_File(file_), "");
  EXPECT_EQ(desk_.told.at(0).tone, Tone::warning);
}

TEST_F(Export, ServesTheDeskAndAFullDiskLeavesTheEarlierFile) {
  StoreChange change(store_);
  for (int i = 1; i <= 20'000; ++i) put_Ticket(store_, i, i, 2007001, kNumbers);
  change.commit();
  real_Files().write_Whole(file_, "yesterday");
  int served = 0;
  desk_.on_serve = [&] { ++served, desk_.request_Stop(); };
  rlimit usual{};
  ::getrlimit(RLIMIT_FSIZE, &usual);
  const rlimit full{1000, usual.rlim_max};
  std::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &full);
  EXPECT_THROW(export_Command(store_, desk_, file_, {}), std::filesystem::filesystem_error);
  ::setrlimit(RLIMIT_FSIZE, &usual);
  EXPECT_EQ(read_File(file_), "yesterday");
  const std::filesystem::directory_iterator files(home_.path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 2) << "a half-written file is left behind";
  EXPECT_EQ(desk_.jobs_open, 0);
  EXPECT_EQ(export_Command(store_, desk_, file_, {}), 20'000) << "an export stops for nobody";
  EXPECT_EQ(read_File(file_).size(), 20'000u * 22u);
  EXPECT_GE(served, 40);
}

}  // namespace
}  // namespace lotmere::test
