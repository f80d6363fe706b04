#include "ui/shell/settings.hpp"

#include "conditions/condition_store.hpp"
#include "ui/shell/commands.hpp"

namespace lotmere::ui {

Settings::Settings(Store& store, WindowDesk& desk)
    : store_(store), desk_(desk), set_(loadConditionSet(store)) {}

bool Settings::put(const std::function<ConditionSet()>& wanted) {
  bool saved = false;
  runGuarded(desk_, [&] {
    ConditionSet after = wanted();
    saveConditionSet(store_, set_, after);
    set_ = std::move(after);
    saved = true;
  });
  if (saved)
    Q_EMIT changed();
  else
    Q_EMIT refused();
  return saved;
}

bool Settings::change(const std::function<void(ConditionSet&)>& edit) {
  return put([&] {
    ConditionSet after = set_;
    edit(after);
    return after;
  });
}

bool Settings::restoreDefaults() {
  return put([this] { return loadFactorySet(store_); });
}

void Settings::reload() {
  set_ = loadConditionSet(store_);
  Q_EMIT changed();
}

}  // namespace lotmere::ui
