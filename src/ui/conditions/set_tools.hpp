// The way back for settings, and the sets with names: the commands for them, and the buttons over the
// condition page.
#pragma once

#include <QMenu>
#include <QObject>
#include <QPushButton>

#include "ui/shell/session.hpp"

namespace lotmere::ui {

class SetTools : public QObject {
  Q_OBJECT

 public:
  // Registers conditions.undo, conditions.redo, sets.save, sets.manage and sets.import.
  explicit SetTools(Session& session, QObject* parent = nullptr);

  // The menu of the sets: its commands, and each set to be loaded by a click.
  [[nodiscard]] QMenu* makeMenu(QWidget* parent);
  // The button "撤销：勾选 总和值"; greyed where there is nothing to take back.
  [[nodiscard]] QPushButton* makeUndoButton();
  // Keeps the set of a file under a name that is asked for. To be called inside a command.
  void importFile(const QString& file);

 private:
  void step(std::optional<std::string> (Settings::*make)(), const char* done, const char* none);
  void showSteps();
  void fill(QMenu& menu);
  void save();
  void manage();
  void load(const std::string& name);
  void importSet();

  Session& session_;
  QAction* undo_;
  QAction* redo_;
};

}  // namespace lotmere::ui
