// What the workloads run on: a store with invented draws, a selection of some 100,000 tickets, every
// condition on.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <random>
#include <vector>

#include "game/game.hpp"
#include "store/store.hpp"
#include "support/desk_script.hpp"

namespace lotmere {
struct NumberSelection;
struct TicketSet;
}  // namespace lotmere

namespace lotmere::bench {

inline constexpr PeriodNo kTarget = 2099001;  // a period behind every invented draw

// A desk that nobody sits at.
class QuietDesk final : public ScriptedDesk {
 public:
  bool ask(std::string_view /*text*/, std::string_view /*title*/) override { return true; }
  std::size_t choose(std::string_view /*text*/, std::span<const std::string_view> /*captions*/,
                     std::size_t /*cancel*/, std::string_view /*title*/) override {
    return 0;
  }
  void tell(std::string_view /*text*/, Tone /*tone*/, std::string_view /*title*/) override {}
  void showTip(std::string_view /*text*/, std::string_view /*title*/) override {}
};

// A temporary folder with a store, removed at the end.
class World {
 public:
  World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World();

  [[nodiscard]] Store& store() { return *store_; }
  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
  // An empty store beside the first one, for floors that must not disturb it.
  [[nodiscard]] std::unique_ptr<Store> otherStore();

  void addDraws(int count);
  // Picks `reds` reds and `blues` blues as Tuo: 17 and 8 make 99,008 tickets.
  void pick(int reds, int blues);
  // Switches every condition on, each allowing the most frequent figures that hold 99.5 percent of the
  // tickets. History-relative conditions read the draws, so those come first.
  void useAllConditions(const TicketSet& tickets);
  void setShrinkType(int type);

 private:
  std::filesystem::path folder_;
  std::unique_ptr<Store> store_;
};

// A new folder on a disk, where the temporary folder may lie in memory; removed at the end. Throws where
// there is none.
class DiskFolder {
 public:
  DiskFolder();
  DiskFolder(const DiskFolder&) = delete;
  DiskFolder& operator=(const DiskFolder&) = delete;
  ~DiskFolder();
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// Six reds in order and a blue.
[[nodiscard]] DrawNumbers randomDraw(std::mt19937& random);

// The numbers picked in a store.
[[nodiscard]] NumberSelection selectionIn(Store& store);
// Every ticket of a selection, in memory alone.
[[nodiscard]] TicketSet makeTickets(const NumberSelection& selection, PeriodNo period);
[[nodiscard]] NumberSelection wholeGame();

// Seconds that a call takes.
template <class Call>
double seconds(Call&& call) {
  const auto start = std::chrono::steady_clock::now();
  call();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The highest resident memory of the process so far, in MB.
[[nodiscard]] double peakMegabytes();

}  // namespace lotmere::bench
