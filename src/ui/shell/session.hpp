// What the pages of the window work on.
#pragma once

#include "base/dates.hpp"
#include "base/platform.hpp"
#include "start/home.hpp"
#include "store/periods.hpp"
#include "store/store.hpp"
#include "ui/shell/commands.hpp"
#include "ui/shell/window_desk.hpp"
#include "users/password.hpp"

namespace lotmere::ui {

struct Session {
  Store& store;
  Home home;
  WindowDesk& desk;
  Clock& clock;
  Commands& commands;
  HashLimits password_limits = HashLimits::interactive();
  Date entry_date = {};  // the value of the date field of the entry strip

  // The period that every prompt proposes.
  [[nodiscard]] PeriodNo nextPeriod() const { return lotmere::nextPeriod(store, entry_date); }
};

}  // namespace lotmere::ui
