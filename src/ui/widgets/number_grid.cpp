#include "ui/widgets/number_grid.hpp"

#include <QAbstractButton>
#include <QGridLayout>
#include <QPainter>

#include "base/text.hpp"
#include "game/game.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {
namespace {

class MemberButton : public QAbstractButton {
 public:
  MemberButton(int number, QWidget* parent) : QAbstractButton(parent) {
    setText(shown(formatBall(number)));
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
  }
  [[nodiscard]] QSize sizeHint() const override { return {36, 36}; }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    const QRectF ball = QRectF(rect()).adjusted(2, 2, -2, -2);
    paintBall(painter, ball, text(),
              isChecked()   ? BallFace::tuo
              : isEnabled() ? BallFace::plain
                            : BallFace::locked);
    if (!hasFocus() && !underMouse()) return;
    const double size = std::min(ball.width(), ball.height());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), hasFocus() ? 2 : 1));
    painter.drawEllipse(ball.center(), size / 2 + 0.5, size / 2 + 0.5);
  }
};

}  // namespace

NumberGrid::NumberGrid(const QString& name, int columns, QWidget* parent) : QWidget(parent) {
  buttons_.setExclusive(false);
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(2);
  for (int n = 1; n <= kRedCount; ++n) {
    auto* button = new MemberButton(n, this);
    button->setObjectName(QStringLiteral("%1.%2").arg(name, button->text()));
    buttons_.addButton(button, n);
    grid->addWidget(button, (n - 1) / columns, (n - 1) % columns);
  }
  connect(&buttons_, &QButtonGroup::idClicked, this, &NumberGrid::numberClicked);
}

void NumberGrid::showMembers(const RedTable& members) {
  for (int n = 1; n <= kRedCount; ++n) buttons_.button(n)->setChecked(members[n] != 0);
}

std::vector<int> NumberGrid::members() const {
  std::vector<int> numbers;
  for (int n = 1; n <= kRedCount; ++n)
    if (buttons_.button(n)->isChecked()) numbers.push_back(n);
  return numbers;
}

}  // namespace lotmere::ui
