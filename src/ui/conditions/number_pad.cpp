#include "ui/conditions/number_pad.hpp"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "base/text.hpp"
#include "game/game.hpp"
#include "reduction/hints.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kColumns = 7;
constexpr int kTallestButton = 56;

bool isBlue(int code) { return code > kBlueCodeBase; }

BallFace faceOf(const PadButton& button) {
  if (!button.isEnabled()) return BallFace::locked;
  switch (button.state()) {
    case PickState::tuo:
      return BallFace::tuo;
    case PickState::dan:
      return BallFace::dan;
    case PickState::none:
      break;
  }
  return button.isLowChance() ? BallFace::low_chance : BallFace::plain;
}

QString stateName(PickState state) {
  switch (state) {
    case PickState::tuo:
      return QStringLiteral("拖码");
    case PickState::dan:
      return QStringLiteral("胆码");
    case PickState::none:
      break;
  }
  return QStringLiteral("未选");
}

// A ball of the legend.
class LegendBall : public QWidget {
 public:
  explicit LegendBall(BallFace face, bool crossed) : face_(face), crossed_(crossed) { setFixedSize(22, 22); }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    paintBall(painter, QRectF(rect()).adjusted(1, 1, -1, -1), QStringLiteral("08"), face_, crossed_);
  }

 private:
  BallFace face_;
  bool crossed_;
};

}  // namespace

PadButton::PadButton(int code, QWidget* parent) : QAbstractButton(parent), code_(code) {
  setText(shown(formatBall(code % kBlueCodeBase)));
  setObjectName(QStringLiteral("padBall.%1").arg(code, 2, 10, QLatin1Char('0')));
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setMaximumHeight(kTallestButton);
  showState(PickState::none, false);
}

void PadButton::showState(PickState state, bool low_chance) {
  state_ = state;
  low_chance_ = low_chance;
  setAccessibleName(QStringLiteral("%1球 %2 %3%4")
                        .arg(isBlue(code_) ? QStringLiteral("蓝") : QStringLiteral("红"), text(),
                             stateName(state), low_chance ? QStringLiteral(" 几率较低") : QString()));
  update();
}

void PadButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const double shrink = isDown() ? 3 : 2;
  const double size = std::min({width(), height(), 52}) - 2 * shrink;
  const QRectF ball(width() / 2.0 - size / 2, height() / 2.0 - size / 2, size, size);
  paintBall(painter, ball, text(), faceOf(*this), low_chance_);
  if (hasFocus() || underMouse()) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), hasFocus() ? 2 : 1));
    painter.drawEllipse(ball.adjusted(-1, -1, 1, 1));
  }
}

NumberPad::NumberPad(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  buttons_.setExclusive(false);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(10);
  layout->addWidget(makeHalf(false), 5);
  layout->addWidget(makeHalf(true), 3);
  layout->addWidget(makeLegend());
  connect(&buttons_, &QButtonGroup::idClicked, this,
          [this](int code) { session_.commands.runner().run([this, code] { click(code); }); });
}

QWidget* NumberPad::makeHalf(bool blue) {
  auto* frame = new QWidget(this);
  frame->setObjectName(blue ? QStringLiteral("bluePad") : QStringLiteral("redPad"));
  auto* title = new QLabel(blue ? QStringLiteral("蓝球") : QStringLiteral("红球"));
  QFont bold = title->font();
  bold.setBold(true);
  title->setFont(bold);
  auto* strip = new QTabBar;
  strip->setObjectName(blue ? QStringLiteral("blueTabs") : QStringLiteral("redTabs"));
  strip->addTab(QStringLiteral("拖码"));
  strip->addTab(QStringLiteral("胆码"));
  (blue ? blue_strip_ : red_strip_) = strip;
  connect(strip, &QTabBar::currentChanged, this, [this, blue](int index) {
    session_.commands.runner().run(
        [&] { session_.desk.tell(padTabText(index == 0 ? PadTab::tuo : PadTab::dan, blue)); });
  });
  QAction* clear_numbers =
      session_.commands.add({blue ? "clsH" : "clsQ",
                             blue ? QStringLiteral("清空蓝球") : QStringLiteral("清空红球"),
                             {},
                             blue ? QStringLiteral("取消全部蓝球") : QStringLiteral("取消全部红球")},
                            [this, blue] { clear(blue); });
  auto* head = new QHBoxLayout;
  head->addWidget(title);
  head->addWidget(strip);
  head->addStretch();
  head->addWidget(session_.commands.makeButton(blue ? "clearBlues" : "clearReds", QStringLiteral("清 空"),
                                               clear_numbers));
  auto* grid = new QGridLayout;
  grid->setSpacing(2);
  const int count = blue ? kBlueCount : kRedCount;
  for (int n = 1; n <= count; ++n) {
    const int code = blue ? kBlueCodeBase + n : n;
    auto* button = new PadButton(code, frame);
    buttons_.addButton(button, code);
    grid->addWidget(button, (n - 1) / kColumns, (n - 1) % kColumns);
  }
  auto* layout = new QVBoxLayout(frame);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(6);
  layout->addLayout(head);
  layout->addLayout(grid, 1);
  return frame;
}

QWidget* NumberPad::makeLegend() {
  struct Entry {
    const char* name;
    BallFace face;
    bool crossed;
    QString text;
  };
  const Entry entries[] = {{"legendPlain", BallFace::plain, false, QStringLiteral("未选")},
                           {"legendTuo", BallFace::tuo, false, QStringLiteral("拖码")},
                           {"legendDan", BallFace::dan, false, QStringLiteral("胆码")},
                           {"legendUnlikely", BallFace::low_chance, true, QStringLiteral("几率较低")}};
  auto* legend = new QWidget;
  auto* layout = new QHBoxLayout(legend);
  layout->setContentsMargins(0, 0, 0, 0);
  for (const Entry& entry : entries) {
    auto* ball = new LegendBall(entry.face, entry.crossed);
    ball->setObjectName(QString::fromUtf8(entry.name));
    layout->addWidget(ball);
    layout->addWidget(new QLabel(entry.text));
    layout->addSpacing(2);
  }
  layout->addStretch();
  return legend;
}

void NumberPad::open() {
  hint_period_ = session_.nextPeriod();
  marked_ = session_.store.run([period = hint_period_](Store& store) {
    hintGaiLv(store, period);
    return lowChanceNumbers(store);
  });
  reload();
}

void NumberPad::reload() {
  const NumberSelection selection = selectionOf(session_.settings.set());
  for (QAbstractButton* each : buttons_.buttons()) {
    auto* button = static_cast<PadButton*>(each);
    const int code = button->code();
    const int number = code % kBlueCodeBase;
    button->setEnabled(lotmere::isEnabled(selection, code));
    button->showState(isBlue(code) ? selection.blue[number] : selection.red[number], marked_.holds(code));
  }
  Q_EMIT counted(shown(combosText(countCombos(selection))));
}

void NumberPad::click(int code) {
  const QTabBar* strip = isBlue(code) ? blue_strip_ : red_strip_;
  const PadTab tab = strip->currentIndex() == 0 ? PadTab::tuo : PadTab::dan;
  NumberSelection selection = selectionOf(session_.settings.set());
  if (clickNumber(selection, session_.desk, code, tab, marked_, hint_period_))
    session_.settings.change([&](ConditionSet& set) { putSelection(set, selection); });
  reload();
}

void NumberPad::clear(bool blue) {
  session_.settings.change(blue ? clearBlues : clearReds);
  reload();
}

}  // namespace lotmere::ui
