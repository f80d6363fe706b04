#include "ui/shell/settings.hpp"

#include <mutex>
#include <vector>

#include "base/failure.hpp"
#include "conditions/condition_store.hpp"
#include "ui/shell/commands.hpp"

namespace lotmere::ui {

// What the window and the saves on the work thread have in common.
struct Settings::Shared {
  std::mutex mutex;
  // What the window wants, one change behind the other, as far as it isn't written.
  struct Change {
    ConditionSet set;
    StepNote note;
  };
  std::vector<Change> wanted;
  ConditionSet stored;  // written by the work thread, or where it does nothing
  NextSteps steps;      // behind the last save
};

Settings::Settings(StoreDoor store, WindowDesk& desk)
    : store_(store), desk_(desk), shared_(std::make_shared<Shared>()) {
  set_ = store_.run(loadConditionSet);
  shared_->stored = set_;
  readSteps();
}

Settings::~Settings() {
  if (ended_ == saves_) return;
  try {
    store_.run([](Store& /*store*/) {});
  } catch (const std::exception& failure) {
    desk_.tell(failureText(failure), Tone::error);
  }
}

void Settings::save(const StepNote& note) {
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->wanted.push_back({set_, note});
  }
  store_.post(
      [shared = shared_](Store& store) {
        std::vector<Shared::Change> wanted;
        {
          const std::lock_guard lock(shared->mutex);
          wanted = shared->wanted;  // with what came meanwhile
        }
        if (wanted.empty()) return;
        StoreChange change(store);
        const ConditionSet* stored = &shared->stored;
        for (const Shared::Change& next : wanted) {
          saveConditionSet(store, *stored, next.set, next.note);
          stored = &next.set;
        }
        change.commit();
        shared->stored = std::move(wanted.back().set);
        NextSteps steps = nextSteps(store);
        const std::lock_guard lock(shared->mutex);
        shared->steps = std::move(steps);
        shared->wanted.erase(shared->wanted.begin(),
                             shared->wanted.begin() + static_cast<std::ptrdiff_t>(wanted.size()));
      },
      [this, number = ++saves_](const std::exception_ptr& failure) { saved(number, failure); });
}

void Settings::saved(int number, const std::exception_ptr& failure) {
  ended_ = number;
  if (!failure) {
    const std::lock_guard lock(shared_->mutex);
    steps_ = shared_->steps;
  }
  if (!failure) Q_EMIT stepsChanged();
  if (!failure || number != saves_) return;  // the next save tries all again
  set_ = shared_->stored;
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->wanted.clear();
  }
  Q_EMIT changed();
  Q_EMIT refused();
  runGuarded(desk_, [&] { std::rethrow_exception(failure); });
}

void Settings::change(const std::function<void(ConditionSet&)>& edit, const StepNote& note) {
  ConditionSet after = set_;
  edit(after);
  if (after == set_) return;
  set_ = std::move(after);
  save(note);
  Q_EMIT changed();
}

bool Settings::changeNow(const std::function<void(ConditionSet&)>& edit, const StepNote& note) {
  change(edit, note);
  const ConditionSet wanted = set_;
  store_.run([](Store& /*store*/) {});  // behind the save
  return set_ == wanted;
}

bool Settings::restoreDefaults() {
  const ConditionSet factory = store_.run(loadFactorySet);
  return changeNow([&](ConditionSet& set) { set = factory; }, {.name = "还原默认值"});
}

void Settings::reload() {
  set_ = store_.run([shared = shared_](Store& store) { return shared->stored = loadConditionSet(store); });
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->wanted.clear();
  }
  readSteps();
  Q_EMIT changed();
}

void Settings::replace() {
  reload();
  Q_EMIT replaced();
}

void Settings::readSteps() {
  steps_ = store_.run(nextSteps);
  Q_EMIT stepsChanged();
}

std::optional<std::string> Settings::makeStep(std::optional<StepMade> (*make)(Store&)) {
  // Behind the saves under way, which it may be about.
  const auto made = store_.run([make, shared = shared_](Store& store) {
    auto step = make(store);
    if (step) shared->stored = step->set;
    return step;
  });
  if (!made) return std::nullopt;
  set_ = made->set;
  readSteps();
  Q_EMIT changed();
  Q_EMIT replaced();
  return made->name;
}

std::optional<std::string> Settings::undo() { return makeStep(undoSettings); }
std::optional<std::string> Settings::redo() { return makeStep(redoSettings); }

}  // namespace lotmere::ui
