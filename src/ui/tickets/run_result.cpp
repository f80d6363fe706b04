#include "ui/tickets/run_result.hpp"

#include <QHeaderView>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr const char* kPrizes[] = {"没有奖", "一等奖", "二等奖", "三等奖", "四等奖", "五等奖", "六等奖"};

QString percent(std::int64_t part, std::int64_t whole) {
  return whole == 0 ? QString()
                    : QStringLiteral("%1%").arg(
                          100.0 * static_cast<double>(part) / static_cast<double>(whole), 0, 'f', 1);
}

}  // namespace

StepRows::StepRows(QWidget* parent) : QWidget(parent) { setAccessibleName(QStringLiteral("各步余下的注数")); }

void StepRows::showFunnel(std::int64_t start, const std::vector<FunnelRow>& funnel) {
  rows_.clear();
  if (start > 0) rows_.push_back({"过滤前", start, start, 0});
  std::ranges::copy_if(funnel, std::back_inserter(rows_),
                       [](const FunnelRow& row) { return row.after < row.before; });
  QStringList texts;
  for (const FunnelRow& row : rows_)
    texts.append(QStringLiteral("%1 余 %2").arg(shown(row.name), grouped(row.after)));
  setAccessibleDescription(texts.join(QLatin1Char('\n')));
  setMinimumHeight(sizeHint().height());
  update();
}

int StepRows::rowHeight() const { return fontMetrics().height() + 8; }

QSize StepRows::sizeHint() const { return {360, rowHeight() * static_cast<int>(rows_.size())}; }

void StepRows::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const int high = rowHeight();
  const int name_width = fontMetrics().horizontalAdvance(QStringLiteral("大小尾七分组容错"));
  const int figure_width = fontMetrics().horizontalAdvance(QStringLiteral("17,721,088 "));
  const double room = std::max(20, width() - name_width - 2 * figure_width - 12);
  const double whole =
      rows_.empty() ? 1 : static_cast<double>(std::max<std::int64_t>(1, rows_.front().before));
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const FunnelRow& row = rows_[i];
    const int top = static_cast<int>(i) * high;
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(0, top, name_width, high), Qt::AlignVCenter,
                     fontMetrics().elidedText(shown(row.name), Qt::ElideRight, name_width));
    const double before = room * static_cast<double>(row.before) / whole,
                 after = room * static_cast<double>(row.after) / whole;
    const double bar = top + high / 2.0 - 4;
    painter.fillRect(QRectF(name_width, bar, std::max(1.0, before), 8),
                     row.after < row.before ? colours().removed : colours().kept);
    painter.fillRect(QRectF(name_width, bar, after, 8), colours().kept);
    const int figures = width() - 2 * figure_width;
    painter.drawText(QRect(figures, top, figure_width, high), Qt::AlignVCenter | Qt::AlignRight,
                     grouped(row.after));
    if (row.after < row.before) {
      painter.setPen(colours().faint);
      painter.drawText(QRect(figures + figure_width, top, figure_width, high),
                       Qt::AlignVCenter | Qt::AlignRight,
                       QStringLiteral("−") + grouped(row.before - row.after));
    }
  }
}

RunResultView::RunResultView(QWidget* parent)
    : QWidget(parent),
      head_(new QLabel),
      rows_(new StepRows),
      promise_(new QLabel),
      prizes_(new QTableWidget(0, 3)),
      cost_(new QLabel) {
  head_->setObjectName(QStringLiteral("runHead"));
  rows_->setObjectName(QStringLiteral("runSteps"));
  promise_->setObjectName(QStringLiteral("runPromise"));
  prizes_->setObjectName(QStringLiteral("runPrizes"));
  cost_->setObjectName(QStringLiteral("runCost"));
  QFont large = head_->font();
  large.setPointSizeF(large.pointSizeF() + 2);
  large.setBold(true);
  head_->setFont(large);
  for (QLabel* label : {head_, promise_, cost_}) label->setWordWrap(true);
  cost_->setForegroundRole(QPalette::PlaceholderText);
  prizes_->setAccessibleName(QStringLiteral("余下号码的保证"));
  prizes_->setHorizontalHeaderLabels(
      {QStringLiteral("最好的奖"), QStringLiteral("占开奖的比例"), QStringLiteral("平均中的注数")});
  prizes_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  prizes_->setSelectionMode(QAbstractItemView::NoSelection);
  prizes_->setFocusPolicy(Qt::NoFocus);
  prizes_->setShowGrid(false);
  prizes_->verticalHeader()->hide();
  prizes_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(10, 10, 10, 8);
  column->setSpacing(10);
  for (QWidget* part : std::initializer_list<QWidget*>{head_, rows_, promise_, prizes_, cost_})
    column->addWidget(part);
  column->addStretch();
  auto* area = new QScrollArea;
  area->setWidget(page);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(area);
  clear();
}

void RunResultView::clear() {
  head_->setText(QStringLiteral("过滤缩水以后，这里显示每个条件去掉多少注，余下的号码保证什么。"));
  rows_->showFunnel(0, {});
  for (QWidget* part : std::initializer_list<QWidget*>{promise_, prizes_, cost_}) part->hide();
}

void RunResultView::showFunnel(const std::vector<FunnelRow>& funnel, double seconds, bool stored) {
  clear();
  if (funnel.empty()) return;
  const std::int64_t start = funnel.front().before;
  QStringList numbers{grouped(start)};
  if (funnel.size() > 1 && funnel[funnel.size() - 1].before != start)
    numbers.append(grouped(funnel.back().before));
  if (stored || funnel.back().after != funnel.back().before) numbers.append(grouped(funnel.back().after));
  numbers.removeDuplicates();
  head_->setText(QStringLiteral("%1 注%2").arg(numbers.join(QStringLiteral(" → ")),
                                               stored ? QStringLiteral("　用时 %1 秒").arg(seconds, 0, 'f', 1)
                                                      : QStringLiteral("，余下的太多，没有存储")));
  rows_->showFunnel(start, funnel);
}

void RunResultView::showGuarantee(const Guarantee& guarantee, const std::string& promise) {
  promise_->setText(shown(promise));
  std::vector<std::size_t> tiers;
  for (std::size_t tier = 1; tier <= kPrizeTiers; ++tier)
    if (guarantee.best[tier] > 0) tiers.push_back(tier);
  if (guarantee.best[0] > 0) tiers.push_back(0);
  prizes_->setRowCount(static_cast<int>(tiers.size()));
  for (int row = 0; row < prizes_->rowCount(); ++row) {
    const std::size_t tier = tiers[static_cast<std::size_t>(row)];
    const double mean = tier == 0 || guarantee.draws == 0 ? 0
                                                          : static_cast<double>(guarantee.won[tier - 1]) /
                                                                static_cast<double>(guarantee.draws);
    const QString cells[] = {QString::fromUtf8(kPrizes[tier]), percent(guarantee.best[tier], guarantee.draws),
                             tier == 0 ? QString() : QString::number(mean, 'f', 2)};
    for (int column = 0; column < 3; ++column) {
      auto* item = new QTableWidgetItem(cells[column]);
      item->setTextAlignment(Qt::AlignCenter);
      prizes_->setItem(row, column, item);
    }
  }
  prizes_->setFixedHeight(prizes_->horizontalHeader()->sizeHint().height() +
                          prizes_->rowCount() * prizes_->verticalHeader()->defaultSectionSize() + 4);
  cost_->setText(
      QStringLiteral("把过滤缩水前的 %1 注逐一当作开奖号码；余下 %2 注，成本 %3 元。")
          .arg(grouped(guarantee.draws), grouped(guarantee.held), grouped(kTicketPrice * guarantee.held)));
  for (QWidget* part : std::initializer_list<QWidget*>{promise_, prizes_, cost_}) part->show();
}

}  // namespace lotmere::ui
