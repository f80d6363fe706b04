#include "ui/look/balls.hpp"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QRadialGradient>

#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

struct Paint {
  QColor body;
  QColor text;
  bool shaded;  // a solid ball; else a flat disc with a rim
};

Paint paintOf(BallFace face) {
  const QPalette palette = QApplication::palette();
  switch (face) {
    case BallFace::red:
      return {colours().red_ball, Qt::white, true};
    case BallFace::blue:
      return {colours().blue_ball, Qt::white, true};
    case BallFace::tuo:
      return {colours().tuo, Qt::white, true};
    case BallFace::dan:
      return {colours().dan, Qt::white, true};
    case BallFace::plain:
      return {colours().plain, palette.color(QPalette::WindowText), false};
    case BallFace::low_chance:
      return {colours().low_chance, colours().faint, false};
    case BallFace::locked:
      break;
  }
  return {palette.color(QPalette::Window), palette.color(QPalette::Disabled, QPalette::WindowText), false};
}

void paintAs(QPainter& painter, const QRectF& box, const QString& text, const Paint& paint, bool crossed) {
  const double size = std::min(box.width(), box.height());
  const QRectF ball(box.center().x() - size / 2, box.center().y() - size / 2, size, size);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (paint.shaded) {
    QRadialGradient light(ball.left() + size * 0.36, ball.top() + size * 0.3, size * 0.75);
    light.setColorAt(0, paint.body.lighter(128));
    light.setColorAt(0.55, paint.body);
    light.setColorAt(1, paint.body.darker(116));
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    painter.drawEllipse(ball);
  } else {
    painter.setPen(QPen(colours().line, std::max(1.0, size / 36)));
    painter.setBrush(paint.body);
    painter.drawEllipse(ball.adjusted(0.5, 0.5, -0.5, -0.5));
  }
  if (!text.isEmpty()) {
    QFont font = painter.font();
    font.setPixelSize(std::max(7, static_cast<int>(size * 0.46)));
    font.setBold(paint.shaded);
    font.setUnderline(crossed);
    font.setStrikeOut(crossed);
    painter.setFont(font);
    painter.setPen(paint.text);
    painter.drawText(ball, Qt::AlignCenter, text);
  }
  painter.restore();
}

}  // namespace

void paintBall(QPainter& painter, const QRectF& box, const QString& text, BallFace face, bool crossed) {
  paintAs(painter, box, text, paintOf(face), crossed);
}

void paintBall(QPainter& painter, const QRectF& box, const QString& text, const QColor& body) {
  paintAs(painter, box, text, {body, body.lightness() > 175 ? QColor(Qt::black) : QColor(Qt::white), true},
          false);
}

}  // namespace lotmere::ui
