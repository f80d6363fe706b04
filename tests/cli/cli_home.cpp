#include "cli_home.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "cli/app.hpp"

namespace lotmere::test {

namespace fs = std::filesystem;

Reply run_Bare(const Arguments& arguments) {
  std::ostringstream out;
  std::ostringstream err;
  // No default home: a call without --home that goes as far as opening one fails instead of finding a real
  // one.
  const Surroundings surroundings{"/proc/lotmere", "/proc/lotmere", "/proc/lotmere"};
  const int status = run_Cli(arguments, out, err, surroundings);
  return {status, out.str(), err.str()};
}

Reply CliHome::run(const Arguments& arguments) const {
  Arguments all{"--home", path().string()};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return run_Bare(all);
}

void CliHome::do_Step(const Arguments& arguments) const {
  const Reply reply = run(arguments);
  ASSERT_EQ(reply.status, 0) << arguments.at(0) << ' ' << arguments.at(1) << ": " << reply.err;
}

std::string CliHome::put_File(const std::string& name, const std::string& text) const {
  std::ofstream(path() / name, std::ios::binary) << text;
  return "file://" + (path() / name).string();
}

std::string CliHome::contents() const {
  SQLite::Database db(home().main_Db().string(), SQLite::OPEN_READWRITE);
  SQLite::Statement tables(db, "SELECT name FROM sqlite_master WHERE type='table' ORDER BY name");
  std::string text;
  while (tables.executeStep()) {
    const std::string table = tables.getColumn(0).getString();
    text += table + '\n';
    SQLite::Statement rows(db, "SELECT * FROM \"" + table + "\" ORDER BY rowid");
    while (rows.executeStep()) {
      for (int i = 0; i < rows.getColumnCount(); ++i) {
        const SQLite::Column value = rows.getColumn(i);
        text += std::to_string(value.getType()) + value.getString() + '\t';
      }
      text += '\n';
    }
  }
  return text;
}

std::set<std::string> CliHome::files() const {
  std::set<std::string> names;
  for (const auto& entry : fs::recursive_directory_iterator(path()))
    names.insert(fs::relative(entry.path(), path()).string());
  return names;
}

}  // namespace lotmere::test
