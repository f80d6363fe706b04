// A home folder for one test, with a fresh store of factory rows on demand.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "conditions/condition_set.hpp"
#include "game/game.hpp"
#include "start/home.hpp"
#include "store/periods.hpp"
#include "store/store.hpp"

namespace lotmere::test {

// A new folder, removed with everything in it at the end.
class TempHome {
 public:
  TempHome();
  TempHome(const TempHome&) = delete;
  TempHome& operator=(const TempHome&) = delete;
  ~TempHome();

  [[nodiscard]] const std::filesystem::path& path() const { return home_.folder; }
  [[nodiscard]] const Home& home() const { return home_; }
  // The store of the folder; made with factory rows at the first call.
  [[nodiscard]] Store& store();
  // Closes the store, so that its file can be damaged or opened by another.
  void close() { store_.reset(); }

 private:
  Home home_;
  std::unique_ptr<Store> store_;
};

// The settings of a fresh store, read once.
[[nodiscard]] const ConditionSet& factorySet();

// Writes a draw's identity and numbers without any statistics.
void putDraw(Store& store, PeriodNo period, const std::string& date, const DrawNumbers& numbers);

// The same for a list, each with the date 2007-01-02, in one change.
void putDraws(Store& store, const std::vector<StoredDraw>& draws);

// Writes a ticket row with an ID and a running number of the caller's choice.
void putTicket(Store& store, int id, int seq, PeriodNo period, const DrawNumbers& numbers);

// Replaces the selection: state by number, codes 1 to 33 and 101 to 116.
void putPick(Store& store, int code, PickState state);

// Damages a database file: the last row of a table's first page is lost. The engine's check finds it, a plain
// read doesn't.
void loseRow(const std::filesystem::path& path, const std::string& table);

// The whole text of a file.
[[nodiscard]] std::string readFile(const std::filesystem::path& path);

}  // namespace lotmere::test
