#include "ui/analysis/omission_view.hpp"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScopeGuard>
#include <QVBoxLayout>

#include "analysis/omission_text.hpp"
#include "base/text.hpp"
#include "store/periods.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"
#include "ui/shell/pause_scope.hpp"
#include "ui/widgets/digit_validator.hpp"

namespace lotmere::ui {
namespace {

// The colour that a text of the legend explains.
class LegendMark : public QWidget {
 public:
  explicit LegendMark(QColor Colours::*colour) : colour_(colour) { setFixedSize(12, 12); }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours().*colour_);
    painter.drawRoundedRect(rect(), 2, 2);
  }

 private:
  QColor Colours::*colour_;
};

}  // namespace

OmissionView::OmissionView(Session& session, QWidget* parent)
    : QWidget(parent),
      session_(session),
      chart_(new OmissionChart),
      bar_(new JobBar(session.desk, "omissionProgress")) {
  setObjectName(QStringLiteral("omissionView"));
  auto* place = new QWidget;
  auto* stack = new QGridLayout(place);
  stack->setContentsMargins(0, 0, 0, 0);
  stack->addWidget(chart_, 0, 0);
  stack->addWidget(bar_, 0, 0, Qt::AlignCenter);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  makeStrip();
  layout->addWidget(strip_);
  layout->addWidget(makeLegend());
  layout->addWidget(place, 1);
  connect(chart_, &OmissionChart::numberClicked, this,
          [this](int number) { session_.commands.runner().run([this, number] { tellReport(number); }); });
}

void OmissionView::makeStrip() {
  balls_ = new QComboBox;
  balls_->setObjectName(QStringLiteral("omissionBalls"));
  balls_->setAccessibleName(QStringLiteral("遗漏分析"));
  balls_->addItems({QStringLiteral("红球号码遗漏分析"), QStringLiteral("蓝球号码遗漏分析")});
  period_ = new QComboBox;
  period_->setObjectName(QStringLiteral("omissionPeriod"));
  period_->setEditable(true);
  period_->setInsertPolicy(QComboBox::NoInsert);
  period_->setCompleter(nullptr);
  period_->setMinimumContentsLength(9);
  period_->lineEdit()->setValidator(new DigitValidator(period_));
  auto* until = new QLabel(QStringLiteral("截止(&Q)"));
  until->setBuddy(period_);
  auto* refresh = new QPushButton(QStringLiteral("刷 新"));
  refresh->setObjectName(QStringLiteral("refreshOmission"));
  refresh->setShortcut(Qt::Key_F9);
  refresh->setToolTip(QStringLiteral("重新统计（F9）"));
  auto* back = new QPushButton(QStringLiteral("设置过滤条件"));
  back->setObjectName(QStringLiteral("backToConditions"));
  back->setShortcut(QKeySequence::Back);
  back->setToolTip(
      QStringLiteral("回到过滤条件（%1）").arg(back->shortcut().toString(QKeySequence::NativeText)));
  strip_ = new QWidget;
  auto* layout = new QHBoxLayout(strip_);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(balls_);
  layout->addSpacing(8);
  layout->addWidget(until);
  layout->addWidget(period_);
  layout->addWidget(new QLabel(QStringLiteral("期")));
  layout->addWidget(refresh);
  layout->addStretch();
  layout->addWidget(back);
  connect(balls_, &QComboBox::currentIndexChanged, this, &OmissionView::analyseChoice);
  connect(period_, &QComboBox::activated, this, &OmissionView::analyseChoice);
  connect(period_->lineEdit(), &QLineEdit::returnPressed, this, &OmissionView::analyseChoice);
  connect(refresh, &QPushButton::clicked, this,
          [this] { session_.commands.runner().run([this] { showOmission(); }); });
  connect(back, &QPushButton::clicked, this, &OmissionView::backWanted);
}

QWidget* OmissionView::makeLegend() {
  struct Entry {
    const char* name;
    QString text;
    QColor Colours::*colour;
  };
  const Entry entries[] = {{"legendCurrentGap", QStringLiteral("-当前遗漏值"), &Colours::running_gap},
                           {"legendAverageGap", QStringLiteral("-历史记录平均值"), &Colours::long_gap},
                           {"legendLargestGap", QStringLiteral("-历史记录中最大值"), &Colours::largest_gap}};
  auto* legend = new QWidget;
  auto* layout = new QHBoxLayout(legend);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  for (const Entry& entry : entries) {
    auto* label = new QLabel(entry.text);
    label->setObjectName(QString::fromUtf8(entry.name));
    layout->addWidget(new LegendMark(entry.colour));
    layout->addWidget(label);
    layout->addSpacing(14);
  }
  layout->addStretch();
  layout->addWidget(new QLabel(QStringLiteral("当前遗漏值超过平均值时为红色；点击一组查看详情")));
  return legend;
}

void OmissionView::open(BallColour balls) {
  const QSignalBlocker quiet(balls_);
  balls_->setCurrentIndex(static_cast<int>(balls));
  showOmission();
}

// Enter on a listed period comes twice, from the list and from its line: the second time it stands in the
// chart.
void OmissionView::analyseChoice() {
  const Omission* current = chart_->omission();
  if (current != nullptr && static_cast<int>(current->balls) == balls_->currentIndex() &&
      QString::number(current->period) == period_->currentText())
    return;
  session_.commands.runner().run([this] { showOmission(); });
}

void OmissionView::showOmission() {
  if (period_->currentText().isEmpty()) loadOmissionPeriods();
  const auto period = chosenPeriod();
  if (!period) return showChoice();
  const auto analyse = balls_->currentIndex() == 0 ? analyseRedOmission : analyseBlueOmission;
  const PauseScope pause(*strip_);
  const auto follow = qScopeGuard([this] { showChoice(); });
  const ProgressPlace place(session_.desk, *bar_);
  auto omission = session_.store.run([&](Store& store) { return analyse(store, session_.desk, *period); });
  if (omission)
    chart_->showOmission(std::make_shared<const Omission>(std::move(*omission)));
  else if (period_->count() == 0)
    chart_->clear();
}

// What the list holds is a period, whatever its number; what is typed has to look like one. An empty history
// has none.
std::optional<PeriodNo> OmissionView::chosenPeriod() {
  const QString text = period_->currentText();
  if (period_->findText(text) >= 0) return text.toInt();
  if (text.isEmpty()) return session_.store.run(latestPeriod);
  return readPeriod(session_.desk, utf8(text));
}

void OmissionView::showChoice() {
  const Omission* current = chart_->omission();
  if (current == nullptr) return;
  const QSignalBlocker quiet(balls_);
  balls_->setCurrentIndex(static_cast<int>(current->balls));
  const QString period = QString::number(current->period);
  period_->setCurrentIndex(period_->findText(period));
  period_->setEditText(period);
}

void OmissionView::loadOmissionPeriods() {
  QStringList periods;
  const auto stored = session_.store.run(lotmere::loadOmissionPeriods);
  for (const PeriodNo period : stored) periods.append(QString::number(period));
  period_->clear();
  period_->addItems(periods);
}

void OmissionView::tellReport(int number) { session_.desk.tell(omissionReport(*chart_->omission(), number)); }

}  // namespace lotmere::ui
