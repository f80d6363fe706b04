#include "ui/history/entry_strip.hpp"

#include <QApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QLabel>
#include <algorithm>
#include <utility>

#include "base/text.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"
#include "ui/widgets/digit_validator.hpp"
#include "ui/widgets/flow_layout.hpp"

namespace lotmere::ui {
namespace {

constexpr int kBlueBox = 7;
constexpr int kSlideFrom = -48;  // pixels left of its place
constexpr int kSlideStep = 4;
constexpr int kSlideEvery = 15;  // milliseconds

// A box that offers its whole text to be typed over when it is entered, also by the mouse.
class DigitBox : public QLineEdit {
 public:
  explicit DigitBox(int width) {
    setValidator(new DigitValidator(this));
    setInputMethodHints(Qt::ImhDigitsOnly);
    setAlignment(Qt::AlignCenter);
    setFixedWidth(width);
  }

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    selectAll();
    clicked_in_ = event->reason() == Qt::MouseFocusReason;
  }
  // The click that gave the focus put the cursor into the text.
  void mouseReleaseEvent(QMouseEvent* event) override {
    QLineEdit::mouseReleaseEvent(event);
    if (std::exchange(clicked_in_, false) && !hasSelectedText()) selectAll();
  }

 private:
  bool clicked_in_ = false;
};

QDate toQt(Date date) {
  const std::chrono::year_month_day day(date);
  return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
          static_cast<int>(static_cast<unsigned>(day.day()))};
}

Date fromQt(QDate date) {
  return std::chrono::year(date.year()) / date.month() / static_cast<unsigned>(date.day());
}

}  // namespace

EntryStrip::EntryStrip(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  setObjectName(QStringLiteral("entryStrip"));
  frame_ = new QWidget(this);
  frame_->setObjectName(QStringLiteral("entryFrame"));
  date_ = new QDateEdit;
  date_->setObjectName(QStringLiteral("drawDate"));
  date_->setCalendarPopup(true);
  date_->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
  date_->setAccessibleName(QStringLiteral("开奖日期"));
  connect(date_, &QDateEdit::dateChanged, this, [this] { session_.entry_date = date(); });
  session_.entry_date = date();
  makeBoxes();
  place();
  colourNumbers();
  followJobs();
  timer_.setObjectName(QStringLiteral("slideTimer"));
  connect(&timer_, &QTimer::timeout, this, &EntryStrip::slideOn);
}

void EntryStrip::makeBoxes() {
  const int digit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
  for (int i = 0; i <= kBlueBox; ++i) {
    const int digits = i == 0 ? 7 : 2;
    QLineEdit* box = boxes_[i] = new DigitBox(digit * digits + 24);
    if (i > 0) box->setMaxLength(digits);  // a longer period is refused: cut, it would name another draw
    box->setObjectName(QStringLiteral("entryField.%1").arg(i));
    connect(box, &QLineEdit::textEdited, this, [this, i](const QString& text) {
      moved_to_ = 0;
      if (i == 0 || i == kBlueBox || text.size() < 2) return;
      boxes_[i + 1]->setFocus(Qt::TabFocusReason);
      moved_to_ = i + 1;
    });
    connect(box, &QLineEdit::returnPressed, this, [this, i] {
      // The hand that is used to it sends an Enter behind the number that has moved on already.
      if (std::exchange(moved_to_, 0) == i && i > 0) return;
      if (i == kBlueBox)
        Q_EMIT completed();
      else
        boxes_[i + 1]->setFocus(Qt::TabFocusReason);
    });
  }
  boxes_[0]->setAccessibleName(QStringLiteral("期号"));
  boxes_[kBlueBox]->setAccessibleName(QStringLiteral("蓝球"));
  for (int i = 1; i < kBlueBox; ++i) boxes_[i]->setAccessibleName(QStringLiteral("红球 %1").arg(i));
}

void EntryStrip::place() {
  auto* row = new QHBoxLayout(frame_);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(6);
  const auto add = [row](const QString& caption, QWidget* field) {
    row->addWidget(new QLabel(caption));
    row->addWidget(field);
  };
  add(QStringLiteral("期号:"), boxes_[0]);
  row->addSpacing(8);
  add(QStringLiteral("开奖日期:"), date_);
  row->addSpacing(8);
  add(QStringLiteral("红球："), boxes_[1]);
  for (int i = 2; i < kBlueBox; ++i) row->addWidget(boxes_[i]);
  row->addSpacing(8);
  add(QStringLiteral("蓝球:"), boxes_[kBlueBox]);
  row->addSpacing(8);
  setTabOrder(boxes_[0], date_);
  setTabOrder(date_, boxes_[1]);
  frame_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
  auto* outer = new FlowLayout(6, this);
  outer->addWidget(frame_);
}

void EntryStrip::addButton(QWidget* button) { layout()->addWidget(button); }

void EntryStrip::colourNumbers() {
  for (int i = 1; i <= kBlueBox; ++i) {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Active, QPalette::Text,
                     i == kBlueBox ? colours().blue_text : colours().red_text);
    palette.setColor(QPalette::Inactive, QPalette::Text, palette.color(QPalette::Active, QPalette::Text));
    boxes_[i]->setPalette(palette);
    QFont bold = font();
    bold.setBold(true);
    boxes_[i]->setFont(bold);
  }
}

void EntryStrip::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::StyleChange && boxes_.back() != nullptr) colourNumbers();
}

void EntryStrip::followJobs() {
  connect(&session_.desk, &WindowDesk::jobBegun, this, [this] {
    focused_ = QApplication::focusWidget();
    if (focused_ != nullptr && !isAncestorOf(focused_)) focused_ = nullptr;
    setEnabled(false);
  });
  connect(&session_.desk, &WindowDesk::jobEnded, this, [this] {
    setEnabled(true);
    if (focused_ != nullptr) focused_->setFocus();
  });
}

DrawEntry EntryStrip::entry() const {
  DrawEntry entry{utf8(boxes_[0]->text()), {}, utf8(boxes_[kBlueBox]->text())};
  for (int i = 0; i < kRedsPerTicket; ++i) entry.reds[i] = utf8(boxes_[1 + i]->text());
  return entry;
}

Date EntryStrip::date() const { return fromQt(date_->date()); }

void EntryStrip::setDate(Date date) { date_->setDate(toQt(date)); }

void EntryStrip::setPeriod(PeriodNo period) { boxes_[0]->setText(QString::number(period)); }

void EntryStrip::showCounted(const std::vector<int>& reds) {
  const int count = static_cast<int>(reds.size());
  for (int i = 0; i < kRedsPerTicket; ++i) {
    QLineEdit* box = boxes_[1 + i];
    if (i < count)
      box->setText(QString::number(reds[i]));
    else if (std::ranges::count(reds, leadingNumber(utf8(box->text()))) > 0)
      box->clear();
  }
}

void EntryStrip::clearNumbers() {
  for (int i = 1; i <= kBlueBox; ++i) boxes_[i]->clear();
}

void EntryStrip::focusNumber(int box) { boxes_[box]->setFocus(Qt::TabFocusReason); }

void EntryStrip::slide() {
  frame_->move(kSlideFrom, frame_->y());
  timer_.start(kSlideEvery);
}

void EntryStrip::slideOn() {
  if (frame_->x() < 0) {
    frame_->move(std::min(0, frame_->x() + kSlideStep), frame_->y());
    return;
  }
  timer_.stop();
  session_.commands.runner().run([this] { setPeriod(session_.nextPeriod()); });
}

}  // namespace lotmere::ui
