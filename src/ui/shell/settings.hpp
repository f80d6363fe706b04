// The settings that the window shows and changes: the one place where it reads or writes them in the store.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "conditions/condition_set.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/setting_steps.hpp"
#include "ui/shell/store_door.hpp"
#include "ui/shell/window_desk.hpp"

namespace lotmere::ui {

// A change shows at once and is saved beside the window. Changes that come while a save is under way are
// saved together by the next one. Work that is given behind a change finds it in the store.
class Settings : public QObject {
  Q_OBJECT

 public:
  // Reads the store; throws when it refuses.
  Settings(StoreDoor store, WindowDesk& desk);
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;
  // Behind the last save.
  ~Settings() override;

  // What pages, lists and tips show.
  [[nodiscard]] const ConditionSet& set() const { return set_; }
  // Lets `edit` change a copy, which is shown from then on, and saves what differs. `edit` asks and tells
  // nothing. Where it can't be saved, that is told later and set() is again what is stored.
  void change(const std::function<void(ConditionSet&)>& edit, const StepNote& note = {});
  // The same, saved when it comes back. False where it can't be, which has been told.
  [[nodiscard]] bool changeNow(const std::function<void(ConditionSet&)>& edit, const StepNote& note = {});
  // Everything back to the factory, with nothing picked, as changeNow().
  [[nodiscard]] bool restoreDefaults();
  // Reads the store again, which somebody else has written: a login, a restore. Throws when the store
  // refuses.
  void reload();
  // The same behind a change of the settings that the engine has made by itself, a set that was loaded.
  void replace();
  // Takes the last change back, or makes the one again that was taken back last; gives its name, nothing
  // where there is none. Throws when the store refuses, with nothing changed.
  std::optional<std::string> undo();
  std::optional<std::string> redo();
  // What undo and redo would change, as far as it is saved.
  [[nodiscard]] const NextSteps& steps() const { return steps_; }

 Q_SIGNALS:
  // set() is another one, or may be.
  void changed();
  // A change was not taken, and set() is what it was. The control that was clicked shows the click all the
  // same, so whoever shows settings shows them again.
  void refused();
  // set() came from somewhere else than a control in front: an undo, a set that was loaded.
  void replaced();
  // steps() are others.
  void stepsChanged();

 private:
  struct Shared;

  void save(const StepNote& note);
  void saved(int number, const std::exception_ptr& failure);
  void readSteps();
  std::optional<std::string> makeStep(std::optional<StepMade> (*make)(Store&));

  StoreDoor store_;
  WindowDesk& desk_;
  ConditionSet set_;
  NextSteps steps_;
  std::shared_ptr<Shared> shared_;
  int saves_ = 0;  // given so far
  int ended_ = 0;  // and over
};

}  // namespace lotmere::ui
