// What the pages of the window work on.
#pragma once

#include <utility>

#include "base/dates.hpp"
#include "base/platform.hpp"
#include "start/home.hpp"
#include "store/periods.hpp"
#include "store/store.hpp"
#include "ui/shell/commands.hpp"
#include "ui/shell/remembered.hpp"
#include "ui/shell/settings.hpp"
#include "ui/shell/store_door.hpp"
#include "ui/shell/window_desk.hpp"
#include "users/password.hpp"

namespace lotmere::ui {

struct Session {
  Session(Store& opened, Home at, WindowDesk& window_desk, Clock& time, Commands& all,
          HashLimits limits = HashLimits::interactive())
      : store(window_desk.work(), opened),
        home(std::move(at)),
        desk(window_desk),
        clock(time),
        commands(all),
        password_limits(limits),
        settings(store, window_desk),
        remembered(home.folder, window_desk.work()) {
    desk.setFolder(remembered.folder());
    QObject::connect(&desk, &WindowDesk::folderChanged, &settings,
                     [this](const QString& folder) { remembered.setFolder(folder); });
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  StoreDoor store;
  Home home;
  WindowDesk& desk;
  Clock& clock;
  Commands& commands;
  HashLimits password_limits;
  Settings settings;
  Remembered remembered;
  Date entry_date = {};  // the value of the date field of the entry strip

  // The period that every prompt proposes.
  [[nodiscard]] PeriodNo nextPeriod() {
    return store.run([date = entry_date](Store& stored) { return lotmere::nextPeriod(stored, date); });
  }
};

}  // namespace lotmere::ui
