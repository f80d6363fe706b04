#include "ui/shell/settings.hpp"

#include <mutex>

#include "base/failure.hpp"
#include "conditions/condition_store.hpp"
#include "ui/shell/commands.hpp"

namespace lotmere::ui {

// What the window and the saves on the work thread have in common.
struct Settings::Shared {
  std::mutex mutex;
  ConditionSet wanted;  // by the window
  ConditionSet stored;  // written by the work thread, or where it does nothing
};

Settings::Settings(StoreDoor store, WindowDesk& desk)
    : store_(store), desk_(desk), shared_(std::make_shared<Shared>()) {
  set_ = store_.run(loadConditionSet);
  shared_->wanted = shared_->stored = set_;
}

Settings::~Settings() {
  if (ended_ == saves_) return;
  try {
    store_.run([](Store& /*store*/) {});
  } catch (const std::exception& failure) {
    desk_.tell(failureText(failure), Tone::error);
  }
}

void Settings::save() {
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->wanted = set_;
  }
  store_.post(
      [shared = shared_](Store& store) {
        ConditionSet wanted;
        {
          const std::lock_guard lock(shared->mutex);
          wanted = shared->wanted;  // with what came meanwhile
        }
        if (wanted == shared->stored) return;
        saveConditionSet(store, shared->stored, wanted);
        shared->stored = std::move(wanted);
      },
      [this, number = ++saves_](const std::exception_ptr& failure) { saved(number, failure); });
}

void Settings::saved(int number, const std::exception_ptr& failure) {
  ended_ = number;
  if (!failure || number != saves_) return;  // the next save tries all again
  set_ = shared_->stored;
  Q_EMIT changed();
  Q_EMIT refused();
  runGuarded(desk_, [&] { std::rethrow_exception(failure); });
}

void Settings::change(const std::function<void(ConditionSet&)>& edit) {
  ConditionSet after = set_;
  edit(after);
  if (after == set_) return;
  set_ = std::move(after);
  save();
  Q_EMIT changed();
}

bool Settings::changeNow(const std::function<void(ConditionSet&)>& edit) {
  change(edit);
  const ConditionSet wanted = set_;
  store_.run([](Store& /*store*/) {});  // behind the save
  return set_ == wanted;
}

bool Settings::restoreDefaults() {
  const ConditionSet factory = store_.run(loadFactorySet);
  return changeNow([&](ConditionSet& set) { set = factory; });
}

void Settings::reload() {
  set_ = store_.run([shared = shared_](Store& store) { return shared->stored = loadConditionSet(store); });
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->wanted = set_;
  }
  Q_EMIT changed();
}

}  // namespace lotmere::ui
