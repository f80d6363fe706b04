#include "ui/shell/tip_dialog.hpp"

#include <QLabel>
#include <QVBoxLayout>

namespace lotmere::ui {

TipDialog::TipDialog(const QString& text, const QString& title, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("tipDialog"));
  setWindowTitle(title.isEmpty() ? QStringLiteral("信息提示") : title);
  auto* label = new QLabel(text);
  label->setObjectName(QStringLiteral("tipText"));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setMinimumWidth(360);
  ok_ = new QPushButton;
  ok_->setObjectName(QStringLiteral("okButton"));
  ok_->setDefault(true);
  connect(ok_, &QPushButton::clicked, this, &QDialog::accept);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(20, 18, 20, 16);
  layout->setSpacing(16);
  layout->addWidget(label);
  layout->addWidget(ok_, 0, Qt::AlignRight);
  showCounter();
  timer_.setObjectName(QStringLiteral("tipTimer"));
  connect(&timer_, &QTimer::timeout, this, &TipDialog::tick);
  timer_.start(1000);
}

void TipDialog::tick() {
  --counter_;
  showCounter();
  if (counter_ > 0) return;
  timer_.stop();
  accept();
}

void TipDialog::showCounter() { ok_->setText(QStringLiteral("知道了 (%1)").arg(counter_)); }

}  // namespace lotmere::ui
