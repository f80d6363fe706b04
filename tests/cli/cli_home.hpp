// A home folder that the command line works in, and what one call of it gave back.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "support/test_store.hpp"

namespace lotmere::test {

struct Reply {
  int status = -1;
  std::string out;
  std::string err;
};

using Arguments = std::vector<std::string>;

class CliHome {
 public:
  // Runs `lotmere-cli --home <this folder>` with the arguments.
  [[nodiscard]] Reply run(const Arguments& arguments) const;
  // The same for a step that the test builds on: fails the test when it isn't done.
  void do_Step(const Arguments& arguments) const;

  [[nodiscard]] const std::filesystem::path& path() const { return home_.path(); }
  [[nodiscard]] const Home& home() const { return home_.home(); }
  // The address of a new file in this folder.
  [[nodiscard]] std::string put_File(const std::string& name, const std::string& text) const;
  // Every row of every table as one text: two stores with the same text hold the same.
  [[nodiscard]] std::string contents() const;
  // The names of all files below this folder.
  [[nodiscard]] std::set<std::string> files() const;

 private:
  TempHome home_;
};

// Runs without --home.
[[nodiscard]] Reply run_Bare(const Arguments& arguments);

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
