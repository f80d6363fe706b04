#include "ui/users/login_dialog.hpp"

#include <QGridLayout>

#include "ui/look/text.hpp"
#include "ui/shell/dialog_parts.hpp"
#include "ui/users/users_dialog.hpp"

namespace lotmere::ui {

LoginDialog::LoginDialog(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName(QStringLiteral("loginDialog"));
  setWindowTitle(QStringLiteral("用户登录"));
  name_ = new QComboBox;
  name_->setObjectName(QStringLiteral("userName"));
  name_->setEditable(true);
  name_->setMinimumWidth(220);
  fillNames();
  QString current = shown(session_.store.run(currentUser));
  if (current.isEmpty()) current = session_.remembered.userName();
  name_->setCurrentText(current);
  password_ = new QLineEdit;
  password_->setObjectName(QStringLiteral("password"));
  password_->setEchoMode(QLineEdit::Password);
  auto* grid = new QGridLayout;
  grid->setVerticalSpacing(12);
  auto* name_label = new QLabel(QStringLiteral("用户名:"));
  name_label->setBuddy(name_);
  auto* password_label = new QLabel(QStringLiteral("密  码:"));
  password_label->setBuddy(password_);
  grid->addWidget(name_label, 0, 0);
  grid->addWidget(name_, 0, 1);
  grid->addWidget(password_label, 1, 0);
  grid->addWidget(password_, 1, 1);
  auto* ok = makeDialogButton("okButton", QStringLiteral("登 陆"), IsDefault::yes);
  auto* new_user = makeDialogButton("newUserButton", QStringLiteral("我是新用户"));
  auto* manage = makeDialogButton("manageUsersButton", QStringLiteral("忘记密码／管理用户..."));
  auto* end = makeDialogButton("exitButton", QStringLiteral("退出系统"));
  connect(ok, &QPushButton::clicked, this, &LoginDialog::logIn);
  connect(new_user, &QPushButton::clicked, this, &LoginDialog::showNewUser);
  connect(manage, &QPushButton::clicked, this, &LoginDialog::manageUsers);
  connect(end, &QPushButton::clicked, this, [this] {
    program_ends_ = true;
    reject();
  });
  auto* layout = makeDialogLayout(this);
  layout->addLayout(grid);
  layout->addWidget(manage, 0, Qt::AlignRight);
  layout->addLayout(makeDialogFoot({ok, new_user, end}));
  (current.isEmpty() ? static_cast<QWidget*>(name_) : password_)->setFocus();
}

void LoginDialog::fillNames() {
  const QString typed = name_->currentText();
  name_->clear();
  const auto users = session_.store.run(allUsers);
  for (const User& user : users) name_->addItem(shown(user.name));
  name_->setCurrentText(typed);
}

void LoginDialog::logIn() {
  runGuarded(session_.desk, [this] {
    const Credentials typed{utf8(name_->currentText()), utf8(password_->text())};
    const auto log_in = [&](const UserDesk& at) {
      return lotmere::logIn(at, typed, new_user_ ? NewUser::asked : NewUser::refused);
    };
    if (asUser(session_, log_in) != Outcome::done) return;
    session_.remembered.setUserName(name_->currentText());
    accept();
  });
}

void LoginDialog::showNewUser() {
  session_.desk.tell(newUserText());
  new_user_ = true;
  password_->setEchoMode(QLineEdit::Normal);
  name_->setFocus();
}

void LoginDialog::manageUsers() {
  UsersDialog dialog(session_, name_->currentText(), this);
  session_.desk.runDialog(dialog);
  fillNames();
}

}  // namespace lotmere::ui
