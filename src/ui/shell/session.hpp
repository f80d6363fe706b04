// What the pages of the window work on.
#pragma once

#include <functional>
#include <utility>

#include "base/dates.hpp"
#include "base/platform.hpp"
#include "start/home.hpp"
#include "store/periods.hpp"
#include "store/store.hpp"
#include "ui/shell/commands.hpp"
#include "ui/shell/window_desk.hpp"
#include "users/password.hpp"

namespace lotmere::ui {

// The store as the window has it: whatever reads or writes it does so on the work thread.
class StoreDoor {
 public:
  StoreDoor(WorkThread& thread, Store& store) : thread_(thread), store_(store) {}

  // Does the work on the store and gives what it gives; the window is served meanwhile (see WorkThread::run).
  template <class Work>
  auto run(Work&& work) {
    return thread_.run([&] { return std::invoke(work, store_); });
  }
  // Gives the work and comes back at once (see WorkThread::post).
  void post(std::function<void(Store&)> work, WorkThread::Then then) {
    thread_.post([this, work = std::move(work)] { work(store_); }, std::move(then));
  }

  Store& direct() { return store_; }

 private:
  WorkThread& thread_;
  Store& store_;
};

struct Session {
  StoreDoor store;
  Home home;
  WindowDesk& desk;
  Clock& clock;
  Commands& commands;
  HashLimits password_limits = HashLimits::interactive();
  Date entry_date = {};  // the value of the date field of the entry strip

  // The period that every prompt proposes.
  [[nodiscard]] PeriodNo nextPeriod() {
    return store.run([date = entry_date](Store& stored) { return lotmere::nextPeriod(stored, date); });
  }
};

}  // namespace lotmere::ui
