#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "cli_home.hpp"

namespace lotmere::test {
namespace {

namespace fs = std::filesystem;

void expect_OneLine(const Reply& reply, int status) {
  EXPECT_EQ(reply.status, status);
  EXPECT_GT(reply.err.size(), 1U);
  EXPECT_EQ(reply.err.find('\n'), reply.err.size() - 1) << reply.err;
}

void spoil(const fs::path& file) {
  std::fstream(file, std::ios::in | std::ios::out | std::ios::binary) << "this is no database any more";
}

TEST(CliHomeFolder, ThatCannotBeOne) {
  const CliHome around;
  const std::string file = around.put_File("file", "text").substr(std::string("file://").size());
  for (const std::string& home : {file, file + "/below", std::string("/proc/lotmere")}) {
    SCOPED_TRACE(home);
    const Reply reply = run_Bare({"--home", home, "numbers", "show"});
    expect_OneLine(reply, 1);
    EXPECT_EQ(reply.out, "");
  }
  EXPECT_EQ(read_File(file), "text");
  expect_OneLine(run_Bare({"--home", "", "numbers", "show"}), 2);
}

TEST(CliHomeFolder, HeldByAnotherProcess) {
  const CliHome home;
  home.do_Step({"numbers", "pick", "--red-tuo", "1-6"});
  const std::string before = home.contents();
  const auto files = home.files();
  {
    const auto held = HomeLock::take(home.home());
    ASSERT_TRUE(held);
    const Reply reply = home.run({"numbers", "clear"});
    expect_OneLine(reply, 1);
    EXPECT_EQ(reply.out, "");
    EXPECT_EQ(home.contents(), before);
    EXPECT_EQ(home.files(), files);
  }
  EXPECT_EQ(home.run({"numbers", "clear"}).status, 0);
}

// A home whose backup holds a selection that the factory store doesn't have.
class LostStore : public testing::Test {
 protected:
  LostStore() {
    home_.do_Step({"numbers", "pick", "--red-tuo", "1-6", "--blue-tuo", "1"});
    fs::copy_file(home_.home().main_Db(), home_.home().backup_Db(), fs::copy_options::overwrite_existing);
    kept_ = home_.contents();
  }
  void expect_Recovered() const {
    const Reply reply = home_.run({"numbers", "show"});
    expect_OneLine(reply, 0);
    EXPECT_NE(reply.out.find("注数: 1\n"), std::string::npos) << reply.out;
    EXPECT_EQ(home_.contents(), kept_);
    EXPECT_EQ(home_.run({"numbers", "show"}).err, "") << "told once";
  }

  CliHome home_;
  std::string kept_;
};

TEST_F(LostStore, ComesBackWhenItIsMissing) {
  fs::remove(home_.home().main_Db());
  expect_Recovered();
}

TEST_F(LostStore, ComesBackWhenItIsDamaged) {
  spoil(home_.home().main_Db());
  expect_Recovered();
}

TEST_F(LostStore, StaysAsItIsWhenTheBackupIsDamagedToo) {
  spoil(home_.home().backup_Db());
  const std::string backup = read_File(home_.home().backup_Db());
  for (const bool missing : {false, true}) {
    SCOPED_TRACE(missing);
    spoil(home_.home().main_Db());
    if (missing) fs::remove(home_.home().main_Db());
    const auto files = home_.files();
    const Reply reply = home_.run({"numbers", "clear"});
    expect_OneLine(reply, 1);
    EXPECT_EQ(reply.out, "");
    EXPECT_EQ(home_.files(), files);
    EXPECT_EQ(read_File(home_.home().backup_Db()), backup);
  }
}

}  // namespace
}  // namespace lotmere::test
