#include "ui/main/splash.hpp"

#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include "ui/look/balls.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kPatience = 300;  // milliseconds
constexpr int kLook = 20;

}  // namespace

Splash::Splash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
  setObjectName(QStringLiteral("splash"));
  setFixedSize(420, 220);
  if (const QScreen* screen = QApplication::primaryScreen())
    move(screen->availableGeometry().center() - rect().center());
}

void Splash::showNow() {
  show();
  // What is painted in front of the first exposure is lost.
  QElapsedTimer waited;
  waited.start();
  while (!windowHandle()->isExposed() && waited.elapsed() < kPatience)
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents, kLook);
  repaint();
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void Splash::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  painter.setPen(colours().line);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  constexpr int balls[] = {2, 8, 12, 13, 17, 26, 7};
  constexpr double size = 40;
  for (int i = 0; i < 7; ++i) {
    const QRectF box(width() / 2.0 + (i - 3.5) * (size + 8) + 4, 56, size, size);
    paintBall(painter, box, QStringLiteral("%1").arg(balls[i], 2, 10, QLatin1Char('0')),
              i == 6 ? BallFace::blue : BallFace::red);
  }
  QFont name = font();
  name.setPointSizeF(20);
  painter.setFont(name);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(QRect(0, 112, width(), 40), Qt::AlignCenter, QStringLiteral("Lotmere 双色球"));
  painter.setFont(font());
  painter.setPen(colours().faint);
  painter.drawText(QRect(0, 160, width(), 28), Qt::AlignCenter, QStringLiteral("正在启动．．．"));
}

}  // namespace lotmere::ui
