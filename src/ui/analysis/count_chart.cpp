#include "ui/analysis/count_chart.hpp"

#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "ui/analysis/count_bars_3d.hpp"
#include "ui/shell/pause_scope.hpp"

namespace lotmere::ui {
namespace {

// The place that a list stands on, as the engine counts it.
std::optional<std::size_t> placeIn(const QComboBox& list) {
  if (list.currentIndex() < 0) return std::nullopt;
  return static_cast<std::size_t>(list.currentIndex());
}

int indexOf(std::optional<std::size_t> place) { return place ? static_cast<int>(*place) : -1; }

}  // namespace

CountChart::CountChart(Session& session, QWidget* parent)
    : QWidget(parent), session_(session), listed_(new QStringListModel(this)), bars_(new CountBars) {
  setObjectName(QStringLiteral("countChart"));
  bars_->setObjectName(QStringLiteral("countBars"));
  makeStrip();
  charts_ = new QStackedLayout;
  charts_->addWidget(bars_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  layout->addWidget(strip_);
  layout->addLayout(charts_, 1);
  connect(bars_, &CountBars::doubleClicked, this, &CountChart::backWanted);
}

QComboBox* CountChart::makePeriodList(int index) {
  auto* list = new QComboBox;
  list->setObjectName(QStringLiteral("countPeriod.%1").arg(index));
  list->setModel(listed_);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list->setMinimumContentsLength(9);
  // Thousands of rows: a list with a scroll bar, and one row measured for all.
  list->setStyleSheet(QStringLiteral("combobox-popup: 0"));
  list->setMaxVisibleItems(16);
  auto* rows = new QListView;
  rows->setUniformItemSizes(true);
  list->setView(rows);
  connect(list, &QComboBox::currentIndexChanged, this,
          [this] { session_.commands.runner().run([this] { showCounts(); }); });
  return list;
}

void CountChart::makeStrip() {
  strip_ = new QWidget;
  strip_->setObjectName(QStringLiteral("countStrip"));
  balls_ = new QComboBox;
  balls_->setObjectName(QStringLiteral("countBalls"));
  balls_->setAccessibleName(QStringLiteral("次数统计"));
  balls_->addItems({QStringLiteral("红球号码统计"), QStringLiteral("蓝球号码统计")});
  from_ = makePeriodList(0);
  from_->setAccessibleName(QStringLiteral("起始期号"));
  to_ = makePeriodList(1);
  to_->setAccessibleName(QStringLiteral("截止期号"));
  in_space_ = new QCheckBox(QStringLiteral("3D显示"));
  in_space_->setObjectName(QStringLiteral("inSpace"));
  auto* back = new QPushButton(QStringLiteral("设置过滤条件"));
  back->setObjectName(QStringLiteral("backToConditions"));
  back->setShortcut(QKeySequence::Back);
  back->setToolTip(QStringLiteral("回到过滤条件（%1），双击图表也可以")
                       .arg(back->shortcut().toString(QKeySequence::NativeText)));
  auto* layout = new QHBoxLayout(strip_);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(balls_);
  layout->addSpacing(8);
  layout->addWidget(new QLabel(QStringLiteral("统 计")));
  layout->addWidget(from_);
  layout->addWidget(new QLabel(QStringLiteral("～")));
  layout->addWidget(to_);
  layout->addWidget(new QLabel(QStringLiteral("期各号码开出次数")));
  layout->addSpacing(8);
  layout->addWidget(in_space_);
  layout->addStretch();
  layout->addWidget(back);
  connect(balls_, &QComboBox::currentIndexChanged, this,
          [this] { session_.commands.runner().run([this] { showCounts(); }); });
  connect(in_space_, &QCheckBox::toggled, this, &CountChart::showRows);
  connect(back, &QPushButton::clicked, this, &CountChart::backWanted);
}

void CountChart::checkOpenGl() {
  const bool can = hasOpenGl();
  in_space_->setEnabled(can);
  in_space_->setToolTip(can ? QStringLiteral("立体柱形图，按住鼠标右键可以旋转")
                            : QStringLiteral("此电脑的屏幕不支持 OpenGL，不能显示立体图"));
}

void CountChart::open(BallColour balls) {
  checkOpenGl();
  {
    const QSignalBlocker quiet(balls_);
    balls_->setCurrentIndex(static_cast<int>(balls));
  }
  if (!periods_known_) loadPeriods();
  showCounts();
}

void CountChart::loadPeriods() {
  periods_ = session_.store.run(loadChartPeriods);
  periods_known_ = true;
  QStringList periods;
  periods.reserve(static_cast<qsizetype>(periods_.periods.size()));
  for (const PeriodNo period : periods_.periods) periods.append(QString::number(period));
  {
    const QSignalBlocker quiet_from(from_);
    const QSignalBlocker quiet_to(to_);
    listed_->setStringList(periods);
    from_->setCurrentIndex(indexOf(periods_.from));
    to_->setCurrentIndex(indexOf(periods_.to));
  }
  if (isVisible()) showCounts();
}

void CountChart::showCounts() {
  const PauseScope pause(*strip_);
  const auto count_draws = balls_->currentIndex() == 0 ? countRedDraws : countBlueDraws;
  const PeriodNo from = periods_.period(placeIn(*from_));
  const PeriodNo to = periods_.period(placeIn(*to_));
  rows_ = session_.store.run([&](Store& store) { return count_draws(store, session_.desk, from, to); });
  showRows();
}

void CountChart::showRows() {
  const QString axis_title = QStringLiteral("开 出 次 数");
  const auto balls = static_cast<BallColour>(balls_->currentIndex());
  if (!in_space_->isChecked()) {
    bars_->showRows(balls, rows_, axis_title);
    charts_->setCurrentWidget(bars_);
    return;
  }
  if (bars_3d_ == nullptr) {
    bars_3d_ = new CountBars3D;
    charts_->addWidget(bars_3d_);
    connect(bars_3d_, &CountBars3D::doubleClicked, this, &CountChart::backWanted);
  }
  bars_3d_->showRows(balls, rows_, axis_title);
  charts_->setCurrentWidget(bars_3d_);
}

}  // namespace lotmere::ui
