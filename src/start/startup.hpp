// The start of the program as a list of named steps. Every face lines up the steps of this file with its own
// (splash, window, login) and runs the list; the order is what the list says and nothing else.
//
//   single instance, database presence, compaction, size guard, home files, main connection
//
// is the order of the steps given here. The tables of digits and draw days that were once filled at the start
// are constants, and the engine has no limit of locks to be raised.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/desk.hpp"
#include "start/home.hpp"
#include "store/store.hpp"
#include "store/store_files.hpp"

namespace lotmere {

// What stands behind the text of a failure.
enum class StartAdvice {
  administrator,  // a second message: run the program with the rights of an administrator
  security,  // two paragraphs below the text, on the security settings that keep a program from its folder
  reinstall  // on the same line: a file is lost
};

struct StartStep {
  std::string_view name;
  std::function<bool()> run;  // false: the program ends here, and the user was told why
  StartAdvice advice = StartAdvice::administrator;
};

struct StartOutcome {
  bool ready = false;                 // every step ran
  std::string_view step = {};         // where it ended, when not ready
  std::vector<std::string> messages;  // of a failure, one after the other; the face tells them and ends
};

// Runs the steps in their order. The first that answers false or fails ends it; what it held is let go by its
// owner.
[[nodiscard]] StartOutcome runSteps(std::span<const StartStep> steps);

// A `MainDb` above this size after a compaction gives way to the backup made just before.
inline constexpr std::uintmax_t kLargestMainDb = 11'685'168;

// What a start brings about: the lock, the open store, and what was done on the way.
class ProgramStart {
 public:
  ProgramStart(Home home, Desk& desk, FileSystem& files = realFiles());

  // The steps work on this object, which outlives them.
  // Takes the lock; another process that holds it ends the start before any file is touched.
  [[nodiscard]] StartStep singleInstance();
  // A sound store, from the backup if need be.
  [[nodiscard]] StartStep databasePresence();
  // Refreshes the backup and compacts. What goes wrong is told, stands in compactionResult() and doesn't end
  // the start.
  [[nodiscard]] StartStep compaction();
  // Puts the backup in the place of a store that is still larger than kLargestMainDb: only one refreshed by
  // this start, so that nothing newer is lost. A refusal of the machine is told and doesn't end the start.
  [[nodiscard]] StartStep sizeGuard();
  // Makes the backup and the profile template where they are missing.
  [[nodiscard]] StartStep homeFiles();
  [[nodiscard]] StartStep mainConnection();

  [[nodiscard]] const Home& home() const { return home_; }
  [[nodiscard]] Store& store() const { return *store_; }
  [[nodiscard]] Mended mended() const { return mended_; }
  // Nothing when the start had no such step.
  [[nodiscard]] const std::optional<CompactResult>& compactionResult() const { return compaction_; }

 private:
  Home home_;
  Desk& desk_;
  FileSystem& files_;
  std::unique_ptr<FileLock> lock_;
  std::unique_ptr<Store> store_;
  Mended mended_ = Mended::nothing;
  std::optional<CompactResult> compaction_;
};

}  // namespace lotmere
