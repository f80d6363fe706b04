#include "ui/conditions/group_balls.hpp"

#include <QHelpEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QToolTip>
#include <algorithm>

#include "game/game.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kBall = 27;
constexpr int kGap = 3;
constexpr int kMostColumns = 17;

int columnsFor(int width) { return std::clamp((width + kGap) / (kBall + kGap), 6, kMostColumns); }

}  // namespace

GroupBalls::GroupBalls(QWidget* parent) : QWidget(parent) {
  setAccessibleName(QStringLiteral("号码的分组"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void GroupBalls::showGroups(const NumberGroups& groups) {
  groups_ = groups;
  int most = 0;
  for (int n = 1; n <= kRedCount; ++n) most = std::max(most, groups[static_cast<std::size_t>(n)]);
  QStringList texts;
  for (int group = 0; group <= most; ++group) {
    QStringList numbers;
    for (int n = 1; n <= kRedCount; ++n)
      if (groups[static_cast<std::size_t>(n)] == group) numbers.append(shown(formatBall(n)));
    texts.append(numbers.join(QLatin1Char(' ')));
  }
  setAccessibleDescription(texts.join(QStringLiteral("；")));
  update();
}

void GroupBalls::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const int columns = columnsFor(width());
  setFixedHeight((kRedCount + columns - 1) / columns * (kBall + kGap));
}

QRectF GroupBalls::boxOf(int number) const {
  const int columns = columnsFor(width());
  const int column = (number - 1) % columns, row = (number - 1) / columns;
  return QRectF(QRect(column * (kBall + kGap), row * (kBall + kGap), kBall, kBall));
}

void GroupBalls::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setFont(font());
  for (int n = 1; n <= kRedCount; ++n) {
    const int group = groups_[static_cast<std::size_t>(n)];
    if (group < 0)
      paintBall(painter, boxOf(n), shown(formatBall(n)), BallFace::plain);
    else
      paintBall(painter, boxOf(n), shown(formatBall(n)), groupColour(group));
  }
}

bool GroupBalls::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  for (int n = 1; n <= kRedCount; ++n) {
    if (!boxOf(n).contains(help->pos())) continue;
    const int group = groups_[static_cast<std::size_t>(n)];
    QStringList mates;
    for (int other = 1; other <= kRedCount && group >= 0; ++other)
      if (groups_[static_cast<std::size_t>(other)] == group) mates.append(shown(formatBall(other)));
    if (!mates.isEmpty())
      QToolTip::showText(help->globalPos(), QStringLiteral("同组：") + mates.join(QLatin1Char(' ')), this);
    return true;
  }
  QToolTip::hideText();
  return true;
}

}  // namespace lotmere::ui
