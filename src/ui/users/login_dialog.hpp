// The login.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>

#include "ui/shell/session.hpp"
#include "users/login.hpp"

namespace lotmere::ui {

class LoginDialog : public QDialog {
  Q_OBJECT

 public:
  LoginDialog(Session& session, QWidget* parent);

  // Accepted: currentUser() is the one who logged in. Otherwise whether the user asked to end the program,
  // which is more than closing the dialog.
  [[nodiscard]] bool programEnds() const { return program_ends_; }

 private:
  void fillNames();
  void logIn();
  void showNewUser();
  void manageUsers();

  Session& session_;
  QComboBox* name_;
  QLineEdit* password_;
  bool new_user_ = false;  // the button for new users was pressed
  bool program_ends_ = false;
};

// Does an operation of users on the work thread, and gives what it gives.
template <class Work>
auto asUser(Session& session, Work&& work) {
  return session.store.run([&, today = session.clock.today()](Store& store) {
    return work(UserDesk{store, session.home, session.desk, today, realFiles(), session.password_limits});
  });
}

}  // namespace lotmere::ui
