// The commands of the window: each registered once, with its text, shortcut, tip and handler, and used from
// there by menus, buttons and tests; and the one place where a command runs and its failure is caught.
#pragma once

#include <QAction>
#include <QActionGroup>
#include <QHash>
#include <QKeySequence>
#include <QObject>
#include <QPushButton>
#include <functional>

#include "ui/shell/window_desk.hpp"

namespace lotmere::ui {

// Does a piece of work; a failure of the store or of a file is told, the work has rolled its change back by
// then.
void runGuarded(WindowDesk& desk, const std::function<void()>& work);

// Runs commands one at a time.
class CommandRunner : public QObject {
  Q_OBJECT

 public:
  explicit CommandRunner(WindowDesk& desk) : desk_(desk) {}

  // Runs a command, guarded. While another one runs, also when that one waits in a dialog or serves the
  // window, nothing happens.
  void run(const std::function<void()>& command);
  [[nodiscard]] bool isRunning() const { return running_; }

 Q_SIGNALS:
  // In front of a command that runs.
  void begins();
  // Behind a command, with its failure told.
  void finished();

 private:
  WindowDesk& desk_;
  bool running_ = false;
};

struct ActionText {
  const char* name;  // of the object
  QString text;      // of the menu entry, with its mnemonic
  QKeySequence shortcut{};
  QString tip{};
};

class Commands : public QObject {
  Q_OBJECT

 public:
  explicit Commands(WindowDesk& desk);

  // Registers a command; its name must be new. The action belongs to this object.
  QAction* add(const ActionText& text, std::function<void()> handler);
  // A command that was registered before.
  [[nodiscard]] QAction* action(const char* name) const;
  // Several of them, for a menu.
  [[nodiscard]] QList<QAction*> actions(std::initializer_list<const char*> names) const;
  [[nodiscard]] QList<QAction*> all() const { return actions_.actions(); }
  // No command can be given while busy; afterwards those can that could before.
  void setBusy(bool busy) { actions_.setEnabled(!busy); }

  // A button of another caption for a command: it can be pressed when the command can be given.
  [[nodiscard]] QPushButton* makeButton(const char* name, const QString& caption, QAction* action) const;

  [[nodiscard]] CommandRunner& runner() { return runner_; }

 private:
  CommandRunner runner_;
  QActionGroup actions_;
};

}  // namespace lotmere::ui
