// The users of a shared machine: a new password, also for somebody who forgot theirs, and removal.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>

#include "ui/shell/session.hpp"

namespace lotmere::ui {

class UsersDialog : public QDialog {
  Q_OBJECT

 public:
  // Shows the user of this name first, where there is one to be managed; the guest has neither password nor
  // end.
  UsersDialog(Session& session, const QString& first, QWidget* parent);

 private:
  void fillNames();
  void changePassword();
  void removeUser();
  [[nodiscard]] QLineEdit* makePasswordLine(const char* name, const QString& hint);

  Session& session_;
  QComboBox* name_;
  QLineEdit* before_;
  QLineEdit* after_;
  QLineEdit* again_;
  QPushButton* change_;
  QPushButton* remove_;
};

}  // namespace lotmere::ui
