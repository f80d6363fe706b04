#include "ui/users/users_dialog.hpp"

#include <QFormLayout>

#include "ui/look/text.hpp"
#include "ui/shell/dialog_parts.hpp"
#include "ui/users/login_dialog.hpp"
#include "users/accounts.hpp"

namespace lotmere::ui {

UsersDialog::UsersDialog(Session& session, const QString& first, QWidget* parent)
    : QDialog(parent),
      session_(session),
      name_(new QComboBox),
      before_(makePasswordLine("txtOldPWD", QStringLiteral("忘记了就空着"))),
      after_(makePasswordLine("txtNewPWD", {})),
      again_(makePasswordLine("txtNewPWDAgain", {})),
      change_(makeDialogButton("changePasswordButton", QStringLiteral("更改密码"), IsDefault::yes)),
      remove_(makeDialogButton("removeUserButton", QStringLiteral("删除用户..."))) {
  setObjectName(QStringLiteral("usersDialog"));
  setWindowTitle(QStringLiteral("密码和用户"));
  name_->setObjectName(QStringLiteral("managedUser"));
  name_->setMinimumWidth(220);
  fillNames();
  name_->setCurrentIndex(std::max(0, name_->findText(first)));
  auto* form = new QFormLayout;
  form->setVerticalSpacing(12);
  form->addRow(QStringLiteral("用户名:"), name_);
  form->addRow(QStringLiteral("旧密码:"), before_);
  form->addRow(QStringLiteral("新密码:"), after_);
  form->addRow(QStringLiteral("再输一次:"), again_);
  auto* close = makeDialogButton("closeButton", QStringLiteral("关闭"));
  connect(change_, &QPushButton::clicked, this, &UsersDialog::changePassword);
  connect(remove_, &QPushButton::clicked, this, &UsersDialog::removeUser);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  auto* layout = makeDialogLayout(this);
  layout->addLayout(form);
  layout->addLayout(makeDialogFoot({change_, remove_, close}));
  before_->setFocus();
}

QLineEdit* UsersDialog::makePasswordLine(const char* name, const QString& hint) {
  auto* line = new QLineEdit;
  line->setObjectName(QString::fromUtf8(name));
  line->setEchoMode(QLineEdit::Password);
  line->setPlaceholderText(hint);
  return line;
}

void UsersDialog::fillNames() {
  name_->clear();
  const auto users = session_.store.run(allUsers);
  for (const User& user : users)
    if (user.name != kGuest) name_->addItem(shown(user.name));
  change_->setEnabled(name_->count() > 0);
  remove_->setEnabled(name_->count() > 0);
}

void UsersDialog::changePassword() {
  runGuarded(session_.desk, [this] {
    if (after_->text() != again_->text()) {
      session_.desk.tell("两次输入的新密码不一样。", Tone::error);
      return;
    }
    const std::string before = utf8(before_->text());
    const std::string after = utf8(after_->text());
    const std::string name = utf8(name_->currentText());
    const Outcome changed = asUser(session_, [&](const UserDesk& at) {
      return lotmere::changePassword(at, name, before.empty() ? std::nullopt : std::optional(before), after);
    });
    if (changed != Outcome::done) return;
    session_.desk.tell("密码已更改。");
    for (QLineEdit* line : {before_, after_, again_}) line->clear();
  });
}

void UsersDialog::removeUser() {
  runGuarded(session_.desk, [this] {
    const std::string name = utf8(name_->currentText());
    const Outcome removed =
        asUser(session_, [&](const UserDesk& at) { return lotmere::removeUser(at, name); });
    if (removed != Outcome::done) return;
    session_.desk.tell("用户已删除。");
    fillNames();
  });
}

}  // namespace lotmere::ui
