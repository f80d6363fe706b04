#include "ui/shell/commands.hpp"

#include <stdexcept>

#include "base/failure.hpp"

namespace lotmere::ui {

void runGuarded(WindowDesk& desk, const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& failure) {
    desk.tell(failureText(failure), Tone::error);
  }
}

void CommandRunner::run(const std::function<void()>& command) {
  if (running_) return;
  running_ = true;
  desk_.course().clearStop();  // one that came behind the last look of the command before
  Q_EMIT begins();
  runGuarded(desk_, command);
  running_ = false;
  desk_.showRunningText();
  Q_EMIT finished();
}

Commands::Commands(WindowDesk& desk) : runner_(desk), actions_(this) {
  actions_.setExclusionPolicy(QActionGroup::ExclusionPolicy::None);
}

QAction* Commands::add(const ActionText& text, std::function<void()> handler) {
  auto* action = new QAction(text.text, this);
  action->setObjectName(QString::fromUtf8(text.name));
  action->setShortcut(text.shortcut);
  if (!text.tip.isEmpty()) {
    action->setToolTip(text.tip);
    action->setStatusTip(text.tip);
  }
  connect(action, &QAction::triggered, this, [this, handler = std::move(handler)] { runner_.run(handler); });
  actions_.addAction(action);
  return action;
}

QAction* Commands::action(const char* name) const {
  auto* found = findChild<QAction*>(QString::fromUtf8(name), Qt::FindDirectChildrenOnly);
  if (found == nullptr) throw std::logic_error(std::string("no command ") + name);
  return found;
}

QList<QAction*> Commands::actions(std::initializer_list<const char*> names) const {
  QList<QAction*> found;
  for (const char* name : names) found.append(action(name));
  return found;
}

QPushButton* Commands::makeButton(const char* name, const QString& caption, QAction* action) const {
  auto* button = new QPushButton(caption);
  button->setObjectName(QString::fromUtf8(name));
  button->setAutoDefault(false);
  const auto follow = [button, action] {
    button->setEnabled(action->isEnabled());
    const QString keys = action->shortcut().toString(QKeySequence::NativeText);
    const QString tip = action->toolTip();
    button->setToolTip(keys.isEmpty() ? tip : QStringLiteral("%1（%2）").arg(tip, keys));
  };
  follow();
  connect(action, &QAction::changed, button, follow);
  connect(button, &QPushButton::clicked, action, &QAction::trigger);
  return button;
}

}  // namespace lotmere::ui
