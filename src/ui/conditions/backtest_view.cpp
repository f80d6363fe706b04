#include "ui/conditions/backtest_view.hpp"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>

#include "advice/backtest_text.hpp"
#include "base/text.hpp"
#include "catalogue/catalogue.hpp"
#include "ui/look/ball_delegate.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kCounts[] = {50, 100, 200, 500, 0};  // draws to choose from; 0: all
constexpr int kUsualCount = 1;
constexpr int kStripHeight = 30;
constexpr double kWidestStroke = 24;
constexpr int kWorst = 3;  // failing that many conditions or more is one colour

QColor colourOf(std::size_t failed) {
  switch (std::min<std::size_t>(failed, kWorst)) {
    case 0:
      return colours().good;
    case 1:
      return QColor(0xE3B341);
    case 2:
      return QColor(0xE0863C);
    default:
      return QColor(0xC9504A);
  }
}

QString failedNames(const DrawVerdict& draw) {
  QStringList names;
  for (std::size_t step = 0; step < filterSteps().size(); ++step)
    if (draw.failed[step]) names.append(shown(filterSteps()[step].plainName()));
  return names.join(QStringLiteral("、"));
}

}  // namespace

void VerdictModel::show(std::shared_ptr<const JudgedDraws> judged) {
  beginResetModel();
  judged_ = std::move(judged);
  endResetModel();
}

const DrawVerdict& VerdictModel::verdict(int row) const {
  return judged_->test.draws[judged_->test.draws.size() - 1 - static_cast<std::size_t>(row)];
}

int VerdictModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || judged_ == nullptr ? 0 : static_cast<int>(judged_->test.draws.size());
}

int VerdictModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : column_count; }

QVariant VerdictModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || judged_ == nullptr) return {};
  const DrawVerdict& draw = verdict(index.row());
  const int column = index.column();
  if (column >= first_ball && column < failed_column) {
    const PastDraw& drawn = judged_->draws[judged_->draws.size() - 1 - static_cast<std::size_t>(index.row())];
    const int place = column - first_ball;
    const bool blue = place == kRedsPerTicket;
    if (role == Qt::DisplayRole)
      return shown(
          formatBall(blue ? drawn.numbers.blue : drawn.numbers.reds[static_cast<std::size_t>(place)]));
    if (role == kBallRole) return static_cast<int>(blue ? BallFace::blue : BallFace::red);
    return {};
  }
  if (role == Qt::DisplayRole) {
    if (column == period_column) return draw.period;
    if (column == failed_column) return static_cast<int>(draw.failed.count());
    return draw.failed.none() ? QStringLiteral("全部符合") : failedNames(draw);
  }
  if (role == Qt::ForegroundRole && column >= failed_column && draw.passed) return colours().good;
  if (role == Qt::ToolTipRole && column == names_column) return failedNames(draw);
  if (role == Qt::TextAlignmentRole && column == failed_column) return static_cast<int>(Qt::AlignCenter);
  return {};
}

QVariant VerdictModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  if (section == period_column) return QStringLiteral("期号");
  if (section == failed_column) return QStringLiteral("不符");
  if (section == names_column) return QStringLiteral("没有通过的条件（双击打开）");
  return section == failed_column - 1 ? QStringLiteral("蓝") : QStringLiteral("红%1").arg(section);
}

VerdictStrip::VerdictStrip(QWidget* parent) : QWidget(parent) {
  setFixedHeight(kStripHeight);
  setAccessibleName(QStringLiteral("各期符合的情形，左旧右新"));
}

void VerdictStrip::show(std::shared_ptr<const JudgedDraws> judged) {
  judged_ = std::move(judged);
  update();
}

double VerdictStrip::strokeWidth() const {
  return std::min(kWidestStroke, width() / static_cast<double>(judged_->test.draws.size()));
}

void VerdictStrip::paintEvent(QPaintEvent* /*event*/) {
  if (judged_ == nullptr || judged_->test.draws.empty()) return;
  QPainter painter(this);
  const auto& draws = judged_->test.draws;
  const double stroke = strokeWidth();
  for (std::size_t i = 0; i < draws.size(); ++i) {
    const double left = static_cast<double>(i) * stroke;
    painter.fillRect(QRectF(left, 0, stroke > 3 ? stroke - 1 : stroke, height()),
                     colourOf(draws[i].failed.count()));
  }
}

bool VerdictStrip::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || judged_ == nullptr || judged_->test.draws.empty())
    return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const auto i = static_cast<std::size_t>(help->pos().x() / strokeWidth());
  if (i >= judged_->test.draws.size()) return true;
  const DrawVerdict& draw = judged_->test.draws[i];
  const QString names = failedNames(draw);
  QToolTip::showText(
      help->globalPos(),
      QStringLiteral("%1 期：%2").arg(draw.period).arg(names.isEmpty() ? QStringLiteral("全部符合") : names),
      this);
  return true;
}

BackTestView::BackTestView(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent),
      session_(session),
      clicks_(clicks),
      answers_(session.desk),
      count_(new QComboBox),
      tolerance_(new QSpinBox),
      sentence_(new QLabel),
      strip_(new VerdictStrip),
      model_(new VerdictModel(this)),
      table_(new RowTable),
      figures_(new QLabel) {
  for (QLabel* label : {sentence_, figures_}) label->setWordWrap(true);
  sentence_->setObjectName(QStringLiteral("backTestSentence"));
  figures_->setObjectName(QStringLiteral("backTestFigures"));
  figures_->setForegroundRole(QPalette::PlaceholderText);
  strip_->setObjectName(QStringLiteral("backTestStrip"));
  table_->setObjectName(QStringLiteral("backTestDraws"));
  table_->setAccessibleName(QStringLiteral("各期不符合的条件"));
  table_->showRows(*model_);
  table_->setItemDelegate(new BallDelegate(table_));
  table_->setShowGrid(false);
  table_->verticalHeader()->hide();
  QHeaderView* header = table_->horizontalHeader();
  header->setStretchLastSection(true);
  header->setMinimumSectionSize(28);
  header->resizeSection(VerdictModel::period_column,
                        fontMetrics().horizontalAdvance(QStringLiteral("2026096")) + 20);
  for (int i = VerdictModel::first_ball; i < VerdictModel::failed_column; ++i) header->resizeSection(i, 34);
  header->resizeSection(VerdictModel::failed_column, 50);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->setSpacing(8);
  layout->addWidget(makeHead());
  layout->addWidget(sentence_);
  layout->addWidget(strip_);
  layout->addWidget(figures_);
  layout->addWidget(table_, 1);
  connect(table_, &RowTable::copied, &session_.desk, &WindowDesk::statusChanged);
  connect(table_, &QTableView::doubleClicked, this, &BackTestView::openDraw);
  auto* open_row = new QAction(QStringLiteral("打开没有通过的条件(&O)"), table_);
  open_row->setObjectName(QStringLiteral("openFailed"));
  connect(open_row, &QAction::triggered, this, [this] { openDraw(table_->currentIndex()); });
  table_->addRowActions({open_row});
}

void BackTestView::openDraw(const QModelIndex& row) {
  if (!row.isValid()) return;
  const DrawVerdict& draw = model_->verdict(table_->storedRow(row.row()));
  for (std::size_t step = 0; step < filterSteps().size(); ++step)
    if (draw.failed[step]) {
      Q_EMIT drawWanted(shown(filterSteps()[step].plainName()), draw.period);
      return;
    }
}

QWidget* BackTestView::makeHead() {
  auto* head = new QWidget;
  auto* row = new QHBoxLayout(head);
  row->setContentsMargins(0, 0, 0, 0);
  count_->setObjectName(QStringLiteral("backTestCount"));
  count_->setAccessibleName(QStringLiteral("回测的期数"));
  for (const int count : kCounts)
    count_->addItem(count == 0 ? QStringLiteral("全部") : QStringLiteral("最近 %1 期").arg(count), count);
  count_->setCurrentIndex(kUsualCount);
  tolerance_->setObjectName(QStringLiteral("setTolerance"));
  tolerance_->setAccessibleName(shown(kSetToleranceName));
  tolerance_->setRange(0, kMostSetTolerance);
  tolerance_->setToolTip(QStringLiteral("一注号码最多可以不符合几个条件；过滤时也照此执行"));
  row->addWidget(new QLabel(QStringLiteral("回测")));
  row->addWidget(count_);
  row->addSpacing(12);
  row->addWidget(new QLabel(shown(kSetToleranceName)));
  row->addWidget(tolerance_);
  row->addStretch();
  for (const auto& [failed, text] :
       {std::pair{0, "全部符合"}, {1, "错一个"}, {2, "错两个"}, {3, "三个以上"}}) {
    auto* label =
        new QLabel(QStringLiteral("<span style='color:%1'>■</span> %2")
                       .arg(colourOf(static_cast<std::size_t>(failed)).name(), QString::fromUtf8(text)));
    row->addWidget(label);
  }
  connect(count_, &QComboBox::activated, this, &BackTestView::open);
  connect(tolerance_, &QSpinBox::valueChanged, this, [this](int value) {
    clicks_.change([=](ConditionSet& set) { set.cells.set(kSetToleranceCell, value); });
  });
  return head;
}

void BackTestView::open() {
  {
    const QSignalBlocker quiet(tolerance_);
    tolerance_->setValue(session_.settings.set().cells.value(kSetToleranceCell));
  }
  if (model_->rowCount() == 0) sentence_->setText(QStringLiteral("正在回测．．．"));
  const int chosen = count_->currentData().toInt();
  answers_.ask(
      session_.store,
      [this, chosen, set = session_.settings.set()](Store& store, Course&) -> AnswerThread::Question {
        return [this, chosen, set, draws = loadDrawTable(store)](Course& course) -> AnswerThread::Answer {
          const std::size_t last = chosen == 0 ? draws.all().size() : static_cast<std::size_t>(chosen);
          auto test = backTest(set, draws, last, course);
          if (!test) return {};
          const auto judged = draws.all().last(test->draws.size());
          return [this, shared = std::make_shared<const JudgedDraws>(JudgedDraws{
                            *std::move(test), {judged.begin(), judged.end()}})] { showTest(shared); };
        };
      });
}

void BackTestView::showTest(std::shared_ptr<const JudgedDraws> judged) {
  const auto lines = backTestLines(judged->test);
  // The verdict beside what chance gives stands in front; the figures that it rests on follow.
  sentence_->setText(shown(lines.front()) + QLatin1Char(' ') + shown(lines.back()));
  QStringList figures;
  for (std::size_t i = 1; i + 1 < lines.size(); ++i) figures.append(shown(lines[i]));
  figures_->setText(figures.join(QLatin1Char('\n')));
  strip_->show(judged);
  model_->show(std::move(judged));
}

}  // namespace lotmere::ui
