// What the dialogs of the program share.
#pragma once

#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace lotmere::ui {

// The column of a dialog, with the usual room around it.
[[nodiscard]] inline QVBoxLayout* makeDialogLayout(QDialog* dialog) {
  auto* layout = new QVBoxLayout(dialog);
  layout->setContentsMargins(22, 20, 22, 18);
  layout->setSpacing(14);
  return layout;
}

// A button of a dialog; Enter presses the default one.
enum class IsDefault { no, yes };
[[nodiscard]] inline QPushButton* makeDialogButton(const char* name, const QString& text,
                                                   IsDefault is_default = IsDefault::no) {
  auto* button = new QPushButton(text);
  button->setObjectName(QString::fromUtf8(name));
  button->setAutoDefault(is_default == IsDefault::yes);
  button->setDefault(is_default == IsDefault::yes);
  return button;
}

// A row of buttons at the foot, at its right end.
[[nodiscard]] inline QHBoxLayout* makeDialogFoot(std::initializer_list<QPushButton*> buttons) {
  auto* foot = new QHBoxLayout;
  foot->addStretch();
  for (QPushButton* button : buttons) foot->addWidget(button);
  return foot;
}

}  // namespace lotmere::ui
