#include "ui/shell/job_bar.hpp"

#include <QHBoxLayout>
#include <algorithm>

namespace lotmere::ui {
namespace {

constexpr int kSteps = 1000;  // of the bar; a job may have more rows than a bar has numbers

}  // namespace

JobBar::JobBar(WindowDesk& desk, const char* bar_name, QWidget* parent) : QFrame(parent) {
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  bar_ = new QProgressBar;
  bar_->setObjectName(QString::fromUtf8(bar_name));
  bar_->setMinimumWidth(220);
  stop_ = new QPushButton(QStringLiteral("停 止"));
  stop_->setObjectName(QStringLiteral("stopButton"));
  stop_->setShortcut(Qt::Key_Escape);
  stop_->setToolTip(QStringLiteral("停止（Esc）"));
  // The press counts, not the release: it has to be taken between two blocks of work.
  connect(stop_, &QPushButton::pressed, this, [this, &desk] {
    desk.course().requestStop();
    stop_->setEnabled(false);
  });
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(10, 8, 10, 8);
  layout->addWidget(bar_, 1);
  layout->addWidget(stop_);
  hide();
}

void JobBar::begin(std::int64_t maximum, bool can_stop) {
  ++depth_;
  maximum_ = maximum;
  bar_->setRange(0, maximum > 0 ? kSteps : 0);
  bar_->setValue(0);
  stop_->setVisible(can_stop);
  stop_->setEnabled(can_stop);
  show();
}

void JobBar::advance(std::int64_t value) {
  if (maximum_ > 0)
    bar_->setValue(static_cast<int>(std::clamp<std::int64_t>(value * kSteps / maximum_, 0, kSteps)));
}

void JobBar::end() {
  if (--depth_ == 0) hide();
}

}  // namespace lotmere::ui
