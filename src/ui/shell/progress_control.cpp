#include "ui/shell/progress_control.hpp"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

namespace lotmere::ui {

ProgressControl::ProgressControl(WindowDesk& desk, QWidget* parent) : QFrame(parent) {
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setFixedSize(340, 110);
  tip_ = new QLabel;
  tip_->setObjectName(QStringLiteral("progressText"));
  bar_ = new QProgressBar;
  bar_->setTextVisible(false);
  all_ = new QLabel;
  all_->setObjectName(QStringLiteral("progressAll"));
  done_ = new QLabel;
  done_->setObjectName(QStringLiteral("progressDone"));
  stop_ = new QPushButton(QStringLiteral("停 止"));
  stop_->setObjectName(QStringLiteral("stopButton"));
  stop_->setShortcut(Qt::Key_Escape);
  stop_->setToolTip(QStringLiteral("停止（Esc）"));
  connect(stop_, &QPushButton::pressed, this, [this, &desk] {
    stopped_ = true;
    stop_->setEnabled(false);
    desk.course().requestStop();
  });
  auto* foot = new QHBoxLayout;
  foot->addWidget(done_);
  foot->addWidget(all_);
  foot->addStretch();
  foot->addWidget(stop_);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tip_);
  layout->addWidget(bar_);
  layout->addLayout(foot);
  hide();
}

void ProgressControl::setMinimum(int minimum) {
  minimum_ = std::min(minimum, maximum_);
  showValue();
}

void ProgressControl::setMaximum(int maximum) {
  maximum_ = std::max(maximum, minimum_);
  showValue();
}

void ProgressControl::setValue(int value) {
  value_ = value;
  showValue();
}

void ProgressControl::showValue() {
  const int shown = std::clamp(value_, minimum_, maximum_);
  bar_->setRange(minimum_, maximum_);
  bar_->setValue(shown);
  const bool known = maximum_ > minimum_;
  done_->setText(known ? QString::number(shown) : QString());
  all_->setText(known ? QStringLiteral("/ %1").arg(maximum_) : QString());
}

void ProgressControl::begin(std::int64_t maximum, bool can_stop) {
  if (depth_++ == 0) {
    stopped_ = false;
    place();
  }
  minimum_ = 0;
  maximum_ = static_cast<int>(std::min<std::int64_t>(maximum, std::numeric_limits<int>::max()));
  value_ = 0;
  showValue();
  stop_->setEnabled(can_stop && !stopped_);
  show();
  raise();
}

void ProgressControl::advance(std::int64_t value) { setValue(static_cast<int>(value)); }

void ProgressControl::end() {
  if (--depth_ == 0) hide();
}

void ProgressControl::place() {
  const QWidget* over = parentWidget();
  move((over->width() - width()) / 2, (over->height() - height()) / 2);
}

}  // namespace lotmere::ui
