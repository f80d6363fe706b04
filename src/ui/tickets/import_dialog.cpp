#include "ui/tickets/import_dialog.hpp"

#include <QRadioButton>

#include "store/periods.hpp"
#include "ui/look/text.hpp"
#include "ui/shell/dialog_parts.hpp"
#include "ui/widgets/digit_validator.hpp"

namespace lotmere::ui {

ImportDialog::ImportDialog(Session& session, ImportFormat proposed, QWidget* parent)
    : QDialog(parent), desk_(session.desk) {
  setObjectName(QStringLiteral("importDialog"));
  setWindowTitle(QStringLiteral("数 据 导 入"));
  auto* options = new QHBoxLayout;
  const char* const captions[] = {"只有号码", " 期号＋号码", " 序号＋号码", "复式号码"};
  for (int i = 0; i < static_cast<int>(std::size(captions)); ++i) {
    auto* option = new QRadioButton(QString::fromUtf8(captions[i]));
    option->setObjectName(QStringLiteral("importFormat.%1").arg(i));
    formats_.addButton(option, i);
    options->addWidget(option);
  }
  period_label_ = new QLabel(QStringLiteral("号码对应的期号："));
  period_label_->setObjectName(QStringLiteral("importPeriodLabel"));
  period_ = new QLineEdit(QString::number(
      session.store.run([today = session.clock.today()](Store& store) { return nextPeriod(store, today); })));
  period_->setObjectName(QStringLiteral("importPeriod"));
  period_->setValidator(new DigitValidator(period_));
  period_->setMaximumWidth(140);
  auto* period_row = new QHBoxLayout;
  period_row->addWidget(period_label_);
  period_row->addWidget(period_);
  period_row->addStretch();
  auto* hint = new QLabel(QStringLiteral("文件格式要求：文件内各数之前必须用空格或逗号分开。"));
  hint->setObjectName(QStringLiteral("importHint"));
  auto* ok = makeDialogButton("okButton", QStringLiteral("确认"), IsDefault::yes);
  auto* cancel = makeDialogButton("cancelButton", QStringLiteral("取消"));
  auto* label = new QLabel(QStringLiteral("文件内容格式："));
  label->setObjectName(QStringLiteral("importFormatLabel"));
  auto* layout = makeDialogLayout(this);
  layout->addWidget(label);
  layout->addLayout(options);
  layout->addLayout(period_row);
  layout->addWidget(hint);
  layout->addLayout(makeDialogFoot({ok, cancel}));
  connect(&formats_, &QButtonGroup::idToggled, this, [this](int id, bool checked) {
    if (id != static_cast<int>(ImportFormat::period_numbers)) return;
    period_label_->setEnabled(!checked);
    period_->setEnabled(!checked);
  });
  formats_.button(static_cast<int>(proposed))->setChecked(true);
  connect(ok, &QPushButton::clicked, this, &ImportDialog::acceptChoice);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void ImportDialog::acceptChoice() {
  choice_ = readImportChoice(desk_, formats_.checkedId(), utf8(period_->text()));
  if (choice_) accept();
}

}  // namespace lotmere::ui
