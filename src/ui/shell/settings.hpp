// The settings that the window shows and changes: the one place where it reads or writes them in the store.
#pragma once

#include <QObject>
#include <functional>

#include "conditions/condition_set.hpp"
#include "store/store.hpp"
#include "ui/shell/window_desk.hpp"

namespace lotmere::ui {

class Settings : public QObject {
  Q_OBJECT

 public:
  // Reads the store; throws when it refuses.
  Settings(Store& store, WindowDesk& desk);

  // What pages, lists and tips show.
  [[nodiscard]] const ConditionSet& set() const { return set_; }
  // Lets `edit` change a copy, saves what differs and shows it from then on. `edit` asks and tells nothing.
  // False where it couldn't be saved: that is told, and set() stays as it was.
  bool change(const std::function<void(ConditionSet&)>& edit);
  // Everything back to the factory, with nothing picked; as change().
  bool restoreDefaults();
  // Reads the store again, which somebody else has written: a login, a restore. Throws when the store refuses.
  void reload();

 Q_SIGNALS:
  // set() is another one, or may be.
  void changed();
  // A change was not taken and set() is as it was. The control that was clicked shows the click all the same,
  // so whoever shows settings shows them again.
  void refused();

 private:
  bool put(const std::function<ConditionSet()>& wanted);

  Store& store_;
  WindowDesk& desk_;
  ConditionSet set_;
};

}  // namespace lotmere::ui
