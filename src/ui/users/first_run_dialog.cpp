#include "ui/users/first_run_dialog.hpp"

#include <QRadioButton>

#include "ui/look/text.hpp"
#include "ui/shell/dialog_parts.hpp"

namespace lotmere::ui {

FirstRunDialog::FirstRunDialog(QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("firstRunDialog"));
  setWindowTitle(QStringLiteral("设置用户模式"));
  auto* layout = makeDialogLayout(this);
  layout->addWidget(new QLabel(shown(userModeText())));
  const std::pair<UserMode, const char*> options[] = {{UserMode::single, "单用户模式(&1)"},
                                                      {UserMode::multi, "多用户模式(&2)"}};
  for (const auto& [mode, caption] : options) {
    auto* option = new QRadioButton(QString::fromUtf8(caption));
    option->setObjectName(QStringLiteral("userMode.%1").arg(static_cast<int>(mode)));
    option->setChecked(mode == mode_);
    connect(option, &QRadioButton::toggled, this, [this, chosen = mode](bool checked) {
      if (checked) mode_ = chosen;
    });
    layout->addWidget(option);
  }
  auto* ok = makeDialogButton("okButton", QStringLiteral("下一步"), IsDefault::yes);
  auto* end = makeDialogButton("exitButton", QStringLiteral("退出系统"));
  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
  connect(end, &QPushButton::clicked, this, &QDialog::reject);
  layout->addLayout(makeDialogFoot({ok, end}));
}

}  // namespace lotmere::ui
