#include "ui/analysis/count_bars.hpp"

#include <QCursor>
#include <QGraphicsLayout>
#include <QToolTip>
#include <QtCharts/QLegend>
#include <algorithm>
#include <cmath>

#include "base/text.hpp"
#include "game/game.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kMostLines = 8;
constexpr int kSmallestLabel = 9;
constexpr int kLargestLabel = 12;
constexpr double kLabelPart = 0.55;      // height of a label of three digits, to the room of a bar
constexpr double kRoomForLabels = 1.07;  // above the highest bar

int stepFor(int largest) {
  for (int unit = 1;; unit *= 10)
    for (const int digit : {1, 2, 5})
      if (unit * digit * kMostLines >= largest) return unit * digit;
}

}  // namespace

CountGrid gridFor(const std::vector<CountRow>& rows) {
  int largest = 1;
  for (const CountRow& row : rows) largest = std::max(largest, row.count);
  const int step = stepFor(largest);
  return {step, static_cast<int>(std::ceil(largest * kRoomForLabels / step))};
}

CountBars::CountBars(QWidget* parent)
    : QChartView(parent), series_(new QBarSeries), numbers_(new QBarCategoryAxis), counts_(new QValueAxis) {
  setRenderHint(QPainter::Antialiasing);
  setFrameShape(QFrame::NoFrame);
  series_->setBarWidth(0.62);
  series_->setLabelsVisible(true);
  series_->setLabelsPosition(QAbstractBarSeries::LabelsOutsideEnd);
  chart()->addSeries(series_);
  chart()->addAxis(numbers_, Qt::AlignBottom);
  chart()->addAxis(counts_, Qt::AlignLeft);
  series_->attachAxis(numbers_);
  series_->attachAxis(counts_);
  chart()->legend()->hide();
  chart()->setMargins(QMargins(6, 6, 6, 6));
  chart()->setBackgroundRoundness(5);
  chart()->layout()->setContentsMargins(0, 0, 0, 0);
  numbers_->setGridLineVisible(false);
  numbers_->setTruncateLabels(false);
  counts_->setLabelFormat(QStringLiteral("%d"));
  counts_->setTickType(QValueAxis::TicksDynamic);
  connect(series_, &QAbstractBarSeries::hovered, this, [this](bool over, int bar) {
    if (over)
      QToolTip::showText(QCursor::pos(), tipOf(bar), this);
    else
      QToolTip::hideText();
  });
}

QString CountBars::tipOf(int bar) const {
  const CountRow& row = rows_[static_cast<std::size_t>(bar)];
  return QStringLiteral("%1　%2 次").arg(shown(row.label)).arg(row.count);
}

void CountBars::showRows(BallColour balls, const std::vector<CountRow>& rows, const QString& axis_title) {
  rows_ = rows;
  balls_ = balls;
  auto* set = new QBarSet(shown(ballName(balls)));
  QStringList numbers;
  QStringList tips;
  for (const CountRow& row : rows) {
    *set << row.count;
    numbers.append(shown(formatBall(row.number)));
    tips.append(tipOf(static_cast<int>(tips.size())));
  }
  series_->clear();
  series_->append(set);
  numbers_->setCategories(numbers);
  numbers_->setTitleText(shown(ballName(balls)));
  counts_->setTitleText(axis_title);
  const CountGrid grid = gridFor(rows);
  counts_->setTickInterval(grid.step);
  counts_->setRange(0, grid.step * grid.lines);
  setAccessibleDescription(tips.join(QStringLiteral("，")));
  applyLook();
}

int CountBars::labelPixels() const {
  const auto bars = static_cast<int>(std::max<std::size_t>(rows_.size(), 1));
  return std::clamp(static_cast<int>(chart()->plotArea().width() / bars * kLabelPart), kSmallestLabel,
                    kLargestLabel);
}

void CountBars::applyLook() {
  const QColor text = palette().color(QPalette::Text);
  QFont small = font();
  small.setPixelSize(labelPixels());
  chart()->setBackgroundBrush(palette().base());
  chart()->setBackgroundPen(QPen(colours().line));
  for (QAbstractAxis* axis : {static_cast<QAbstractAxis*>(numbers_), static_cast<QAbstractAxis*>(counts_)}) {
    axis->setLabelsBrush(text);
    axis->setLabelsFont(small);
    axis->setTitleBrush(colours().faint);
    axis->setTitleFont(font());
    axis->setLinePenColor(colours().faint);
    axis->setGridLineColor(colours().line);
  }
  for (QBarSet* set : series_->barSets()) {
    set->setColor(balls_ == BallColour::red ? colours().red_ball : colours().blue_ball);
    set->setBorderColor(Qt::transparent);
    set->setLabelColor(text);
    set->setLabelFont(small);
  }
}

void CountBars::mouseDoubleClickEvent(QMouseEvent* /*event*/) { Q_EMIT doubleClicked(); }

void CountBars::resizeEvent(QResizeEvent* event) {
  QChartView::resizeEvent(event);
  applyLook();
}

void CountBars::changeEvent(QEvent* event) {
  QChartView::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) applyLook();
}

}  // namespace lotmere::ui
