// A home folder that the command line works in, and what one call of it gave back.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/text.hpp"
#include "cli/app.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {

struct Reply {
  int status = -1;
  std::string out;
  std::string err;
};

using Arguments = std::vector<std::string>;

// Runs without --home.
inline Reply runBare(const Arguments& arguments) {
  std::ostringstream out, err;
  // No default home: a call that goes as far as opening one fails instead of finding a real one.
  const Surroundings surroundings{"/proc/lotmere", "/proc/lotmere", "/proc/lotmere", false,
                                  HashLimits::lowest()};
  const int status = runCli(arguments, out, err, surroundings);
  return {status, out.str(), err.str()};
}

// A refusal or a report: one line that a user reads at a glance.
inline void expectOneLine(const Reply& reply, int status) {
  EXPECT_EQ(reply.status, status);
  EXPECT_GT(reply.err.size(), 1U);
  EXPECT_EQ(reply.err.find('\n'), reply.err.size() - 1) << reply.err;
  EXPECT_LE(countCharacters(reply.err), 160U) << reply.err;
  EXPECT_EQ(reply.err.find('\x1B'), std::string::npos) << "nothing steers the terminal";
  EXPECT_EQ(reply.out.empty(), status != 0) << reply.out;
}

// A call that a command must refuse with this status.
struct BadCall {
  const char* fault;
  int status;
  Arguments arguments;
};

class CliHome : public TempHome {
 public:
  // Runs `lotmere-cli --home <this folder>` with the arguments.
  Reply run(const Arguments& arguments) const {
    Arguments all{"--home", path().string()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return runBare(all);
  }
  // The same for a step that the test builds on: fails the test when it isn't done.
  void doStep(const Arguments& arguments) const {
    const Reply reply = run(arguments);
    ASSERT_EQ(reply.status, 0) << arguments.at(0) << ' ' << arguments.at(1) << ": " << reply.err;
  }
  // Every call is refused in one line, and the home stays as it is.
  void expectRefused(const std::vector<BadCall>& calls) const {
    const std::string before = contents();
    for (const BadCall& call : calls) {
      SCOPED_TRACE(call.fault);
      expectOneLine(run(call.arguments), call.status);
      EXPECT_TRUE(contents() == before) << "the home has changed";
    }
  }
  // The address of a new file in this folder.
  std::string putFile(const std::string& name, const std::string& text) const {
    std::ofstream(path() / name, std::ios::binary) << text;
    return "file://" + (path() / name).string();
  }
  // Every row of every table and the names of all files, but for one table: two homes with the same text hold
  // the same.
  std::string contents(std::string_view but_for = {}) const {
    SQLite::Database db(home().mainDb().string(), SQLite::OPEN_READWRITE);
    SQLite::Statement tables(db, "SELECT name FROM sqlite_master WHERE type='table' ORDER BY name");
    std::string text;
    while (tables.executeStep()) {
      const std::string table = tables.getColumn(0).getString();
      if (table == but_for) continue;
      SQLite::Statement rows(db, "SELECT * FROM \"" + table + "\" ORDER BY rowid");
      for (text += table; rows.executeStep(); text += '\n')
        for (int i = 0; i < rows.getColumnCount(); ++i)
          text += std::to_string(rows.getColumn(i).getType()) + rows.getColumn(i).getString() + '\t';
    }
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path()))
      names.insert(entry.path().string());
    for (const std::string& name : names) text += name + '\n';
    return text;
  }
};

// Six invented draws of 2024; the fourth entry has a red of 35.
inline constexpr const char* kDrawList =
    "=336= invented\n"
    "2024001 2024/01/02 01 02 03 04 05 06 07\n"
    "2024002 2024/01/04 03 08 14 24 32 33 01\n"
    "2024003 2024/01/07 06 07 14 16 20 27 12\n"
    "2024004 2024/01/09 03 08 12 13 24 35 02\n"
    "2024005 2024/01/11 04 07 11 17 22 27 08\n"
    "2024006 2024/01/14 01 11 14 19 20 27 03\n";

}  // namespace lotmere::test
