// The way of the window to the store.
#pragma once

#include <functional>
#include <utility>

#include "store/store.hpp"
#include "ui/shell/work_thread.hpp"

namespace lotmere::ui {

// Whatever reads or writes the store does so on the work thread.
class StoreDoor {
 public:
  StoreDoor(WorkThread& thread, Store& store) : thread_(thread), store_(store) {}

  // Does the work on the store and gives what it gives; the window is served meanwhile (see WorkThread::run).
  template <class Work>
  auto run(Work&& work) const {
    return thread_.run([&] { return std::invoke(work, store_); });
  }
  // Gives the work and comes back at once (see WorkThread::post).
  void post(std::function<void(Store&)> work, WorkThread::Then then) const {
    thread_.post([&store = store_, work = std::move(work)] { work(store); }, std::move(then));
  }

 private:
  WorkThread& thread_;
  Store& store_;
};

}  // namespace lotmere::ui
