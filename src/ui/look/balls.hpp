// Lottery balls as vector pictures.
#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;

namespace lotmere::ui {

enum class BallFace {
  red,         // a red of a draw
  blue,        // a blue of a draw
  tuo,         // picked as 拖码
  dan,         // picked as 胆码
  plain,       // not picked
  low_chance,  // not picked, and marked as unlikely
  locked       // doesn't react
};

// The largest circle in the middle of the box, with the text in it (may be empty). `crossed`: the text is
// underlined and struck through, as that of a number marked as unlikely.
void paintBall(QPainter& painter, const QRectF& box, const QString& text, BallFace face,
               bool crossed = false);

// The same with a colour of its own, for numbers in groups.
void paintBall(QPainter& painter, const QRectF& box, const QString& text, const QColor& body);

}  // namespace lotmere::ui
