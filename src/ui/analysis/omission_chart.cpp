#include "ui/analysis/omission_chart.hpp"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "analysis/omission_text.hpp"
#include "base/text.hpp"
#include "game/game.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr double kTwips = 15;       // of a pixel
constexpr double kBallPart = 0.95;  // of the box's width: wider than the bar, no wider than its column
constexpr double kLargestBall = 26;
constexpr double kSmallestTextBall = 17;  // smaller ones carry no number
constexpr int kValueHeight = 13;
constexpr int kCorner = 5;

QRectF rectOf(const Box& box) { return {box.left, box.top, box.width, box.height}; }

// From twips in the group's box to pixels in the widget.
Box pixelsOf(const Box& box, const QPointF& origin) {
  return {box.left / kTwips + origin.x(), box.top / kTwips + origin.y(), box.width / kTwips,
          box.height / kTwips};
}

QFont smallFont(const QWidget& widget, int pixels) {
  QFont font = widget.font();
  font.setPixelSize(pixels);
  return font;
}

}  // namespace

OmissionGroup::OmissionGroup(int number, QWidget* parent) : QAbstractButton(parent), number_(number) {
  setObjectName(QStringLiteral("omissionGroup.%1").arg(number));
  setText(shown(formatBall(number)));
  setFocusPolicy(Qt::ClickFocus);
  setAttribute(Qt::WA_Hover);
}

void OmissionGroup::showFigures(std::shared_ptr<const Omission> omission) {
  omission_ = std::move(omission);
  const QString tip = shown(omissionTip(*omission_, number_));
  setToolTip(tip);
  setAccessibleName(shown(ballName(omission_->balls)) + text());
  setAccessibleDescription(tip);
  update();
}

void OmissionGroup::setBox(const QRectF& box) {
  box_ = box;
  update();
}

double OmissionGroup::ballSize() const { return std::min(box_.width() * kBallPart, kLargestBall); }

OmissionBars OmissionGroup::bars() const {
  OmissionBars bars = drawOmissionBars(*omission_, number_, box_.width() * kTwips, box_.height() * kTwips);
  for (Box* bar : {&bars.largest, &bars.average, &bars.running}) *bar = pixelsOf(*bar, box_.topLeft());
  for (double* top : {&bars.caption_top, &bars.base_line, &bars.ball_foot}) *top = *top / kTwips + box_.top();
  bars.ball_centre = bars.ball_centre / kTwips + box_.left();
  // A running gap beyond the scale is cut where its ball and figure still find room.
  const double highest = std::min(ballSize() + kValueHeight + 2, bars.base_line);
  if (bars.ball_foot < highest) {
    bars.running = {bars.running.left, highest, bars.running.width, bars.base_line - highest};
    bars.ball_foot = highest;
  }
  return bars;
}

QString OmissionGroup::tipAt(const QPointF& place) const {
  const OmissionBars shown_bars = bars();
  if (rectOf(shown_bars.running).contains(place)) return shown(runningTip(*omission_, number_));
  if (rectOf(shown_bars.average).contains(place)) return shown(averageTip(*omission_, number_));
  if (rectOf(shown_bars.largest).contains(place)) return shown(largestTip(*omission_, number_));
  return toolTip();
}

bool OmissionGroup::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || !omission_) return QAbstractButton::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  // Another tip at the same widget has to show its own text as soon as the mouse rests on another bar.
  QToolTip::showText(help->globalPos(), tipAt(help->pos()), this, QRect(help->pos(), QSize(3, 3)));
  return true;
}

void OmissionGroup::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
      Q_EMIT stepWanted(event->key() == Qt::Key_Right ? 1 : -1);
      break;
    case Qt::Key_Home:
    case Qt::Key_End:
      Q_EMIT stepWanted(event->key() == Qt::Key_End ? kCodeCount : -kCodeCount);
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      click();
      break;
    default:
      QAbstractButton::keyPressEvent(event);
  }
}

void OmissionGroup::paintEvent(QPaintEvent* /*event*/) {
  if (!omission_) return;
  const OmissionBars shown_bars = bars();
  if (shown_bars.base_line <= box_.top()) return;  // too low for any bar
  QPainter painter(this);
  if (hasFocus() || underMouse()) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), 1.5) : QPen(Qt::NoPen));
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kCorner, kCorner);
    painter.setRenderHint(QPainter::Antialiasing, false);
  }
  paintBars(painter, shown_bars);
  paintTop(painter, shown_bars);
}

void OmissionGroup::paintBars(QPainter& painter, const OmissionBars& bars) {
  painter.fillRect(rectOf(bars.largest), colours().largest_gap);
  painter.fillRect(rectOf(bars.average), colours().long_gap);
  painter.fillRect(rectOf(bars.running), bars.above_average ? colours().long_gap : colours().running_gap);
  painter.fillRect(QRectF(box_.left(), bars.base_line, box_.width(), 1), colours().faint);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.setFont(smallFont(*this, 12));
  painter.drawText(QRectF(0, bars.caption_top, width(), height() - bars.caption_top),
                   Qt::AlignHCenter | Qt::AlignTop, text());
}

// The ball, and above it the running gap.
void OmissionGroup::paintTop(QPainter& painter, const OmissionBars& bars) {
  const double size = ballSize();
  const QRectF ball(bars.ball_centre - size / 2, bars.ball_foot - size, size, size);
  painter.setFont(font());
  paintBall(painter, ball, size < kSmallestTextBall ? QString() : text(),
            omission_->balls == BallColour::red ? BallFace::red : BallFace::blue);
  painter.setPen(bars.above_average ? colours().red_text : colours().faint);
  painter.setFont(smallFont(*this, 11));
  painter.drawText(
      QRectF(bars.ball_centre - width(), ball.top() - kValueHeight - 1, 2 * width(), kValueHeight),
      Qt::AlignCenter, QString::number(omission_->of(number_).running));
}

OmissionChart::OmissionChart(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("omissionChart"));
  setContentsMargins(8, 2, 8, 2);
  setMinimumSize(ballCount(BallColour::red) * 16, 180);
  for (int number = 1; number <= ballCount(BallColour::red); ++number) {
    auto* group = new OmissionGroup(number, this);
    group->hide();
    connect(group, &QAbstractButton::clicked, this, [this, number] { Q_EMIT numberClicked(number); });
    connect(group, &OmissionGroup::stepWanted, this,
            [this, number](int step) { focusNumber(number + step); });
    groups_.push_back(group);
  }
}

void OmissionChart::showOmission(std::shared_ptr<const Omission> omission) {
  omission_ = std::move(omission);
  const int count = omission_ ? ballCount(omission_->balls) : 0;
  for (OmissionGroup* group : groups_) {
    if (group->number() <= count) group->showFigures(omission_);
    group->setVisible(group->number() <= count);
    group->setFocusPolicy(group->number() == 1 ? Qt::StrongFocus : Qt::ClickFocus);
  }
  placeGroups();
  update();
}

// A group's widget is a column of the frame from top to foot: room for the ball, and a large place to click.
void OmissionChart::placeGroups() {
  if (!omission_) return;
  const QRect frame = contentsRect();
  const int count = ballCount(omission_->balls);
  const auto edge = [&](int column) {
    return frame.left() + static_cast<int>(std::lround(double(frame.width()) * column / count));
  };
  for (int number = 1; number <= count; ++number) {
    const int left = edge(number - 1);
    OmissionGroup* group = groups_[number - 1];
    group->setGeometry(left, frame.top(), edge(number) - left, frame.height());
    const Box box = placeGroup(omission_->balls, number, frame.width() * kTwips, frame.height() * kTwips);
    group->setBox(rectOf(pixelsOf(box, QPointF(frame.left() - left, 0))));
  }
}

// One number at a time is reached by the Tab key: the one that was chosen last.
void OmissionChart::focusNumber(int number) {
  const int wanted = std::clamp(number, 1, ballCount(omission_->balls));
  for (OmissionGroup* group : groups_)
    group->setFocusPolicy(group->number() == wanted ? Qt::StrongFocus : Qt::ClickFocus);
  groups_[wanted - 1]->setFocus(Qt::TabFocusReason);
}

void OmissionChart::resizeEvent(QResizeEvent* /*event*/) { placeGroups(); }

void OmissionChart::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(colours().line);
  painter.setBrush(palette().base());
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
  if (omission_) return;
  painter.setPen(colours().faint);
  painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("没有可以统计的开奖记录"));
}

}  // namespace lotmere::ui
