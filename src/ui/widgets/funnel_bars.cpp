#include "ui/widgets/funnel_bars.hpp"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr double kWidestBar = 104;
constexpr double kBarGap = 0.12;  // of a bar's width, on each side
constexpr int kLeastNamed = 44;   // a bar that is narrower shows no name
constexpr int kPictureHeight = 44;

}  // namespace

FunnelBars::FunnelBars(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
  setAccessibleName(QStringLiteral("各条件去掉的注数"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void FunnelBars::showFunnel(std::vector<FunnelBar> bars) {
  if (bars == bars_) return;
  bars_ = std::move(bars);
  chosen_ = std::clamp(chosen_, 0, std::max(0, static_cast<int>(bars_.size()) - 1));
  QStringList texts;
  for (const FunnelBar& bar : bars_) texts.append(barText(bar));
  setAccessibleDescription(texts.join(QLatin1Char('\n')));
  update();
}

QString FunnelBars::barText(const FunnelBar& bar) {
  const std::int64_t gone = bar.before - bar.after;
  const double percent =
      bar.before == 0 ? 0 : 100.0 * static_cast<double>(gone) / static_cast<double>(bar.before);
  return QStringLiteral("%1：%2 → %3，去掉 %4 注（%5%）")
      .arg(bar.name, grouped(bar.before), grouped(bar.after), grouped(gone))
      .arg(percent, 0, 'f', 1);
}

double FunnelBars::barWidth() const {
  return bars_.empty() ? 0 : std::min(kWidestBar, width() / static_cast<double>(bars_.size()));
}

QRectF FunnelBars::boxOf(int bar) const {
  return {bar * barWidth(), 0, barWidth(), static_cast<double>(height())};
}

int FunnelBars::barAt(QPoint place) const {
  if (bars_.empty() || place.x() < 0) return -1;
  const int bar = static_cast<int>(place.x() / barWidth());
  return bar < static_cast<int>(bars_.size()) ? bar : -1;
}

QSize FunnelBars::minimumSizeHint() const { return {120, kPictureHeight + fontMetrics().height() + 4}; }

QSize FunnelBars::sizeHint() const { return minimumSizeHint().expandedTo({480, 0}); }

void FunnelBars::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  std::int64_t whole = 1;
  for (const FunnelBar& bar : bars_) whole = std::max(whole, bar.before);
  const bool named = barWidth() >= kLeastNamed;
  const double foot = named ? fontMetrics().height() + 4 : 2;
  const double room = height() - foot - 2;
  for (int i = 0; i < static_cast<int>(bars_.size()); ++i) {
    const FunnelBar& bar = bars_[static_cast<std::size_t>(i)];
    const QRectF box = boxOf(i);
    const double gap = std::max(0.5, box.width() * kBarGap);
    const auto height_of = [&](std::int64_t tickets) {
      return room * static_cast<double>(tickets) / static_cast<double>(whole);
    };
    // What stands above nothing at all is still seen as a line.
    const double before = std::max(1.0, height_of(bar.before)), after = height_of(bar.after);
    const QRectF column(box.left() + gap, 2 + room - before, box.width() - 2 * gap, before);
    painter.fillRect(column, bar.after < bar.before ? colours().removed : colours().kept);
    painter.fillRect(QRectF(column.left(), column.bottom() - after, column.width(), after), colours().kept);
    if (named) {
      painter.setPen(colours().faint);
      const QRectF text(box.left() + 1, height() - foot, box.width() - 2, foot);
      painter.drawText(text, Qt::AlignCenter,
                       fontMetrics().elidedText(bar.name, Qt::ElideRight, static_cast<int>(text.width())));
    }
    if (hasFocus() && i == chosen_) {
      painter.setPen(palette().color(QPalette::Highlight));
      painter.drawRect(box.adjusted(0.5, 0.5, -0.5, -0.5));
    }
  }
}

bool FunnelBars::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const int bar = barAt(help->pos());
  if (bar < 0)
    QToolTip::hideText();
  else
    QToolTip::showText(help->globalPos(), barText(bars_[static_cast<std::size_t>(bar)]), this,
                       boxOf(bar).toRect());
  return true;
}

void FunnelBars::choose(int bar) {
  if (bars_.empty()) return;
  chosen_ = std::clamp(bar, 0, static_cast<int>(bars_.size()) - 1);
  QToolTip::showText(mapToGlobal(boxOf(chosen_).topLeft().toPoint()),
                     barText(bars_[static_cast<std::size_t>(chosen_)]), this);
  update();
}

void FunnelBars::mousePressEvent(QMouseEvent* event) {
  const int bar = barAt(event->pos());
  if (event->button() == Qt::LeftButton && bar >= 0) Q_EMIT clicked(bar);
}

void FunnelBars::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
      return choose(chosen_ - 1);
    case Qt::Key_Right:
      return choose(chosen_ + 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (!bars_.empty()) Q_EMIT clicked(chosen_);
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace lotmere::ui
