#include "ui/history/distribution_grid.hpp"

#include <QHeaderView>
#include <QPainter>
#include <QResizeEvent>
#include <algorithm>
#include <utility>

#include "ui/look/ball_delegate.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kNarrowest = 22;  // a number column, with room for a two-digit caption
constexpr int kWidest = 34;
constexpr int kPeriodPadding = 16;
constexpr int kFootLines = 4;

bool isBlue(int column) { return column > kRedCount; }

int numberOf(int column) { return isBlue(column) ? column - kRedCount : column; }

QString twoDigits(int number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); }

// Balls, and a line between the reds and the blues.
class CellDelegate : public BallDelegate {
 public:
  using BallDelegate::BallDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (index.column() == 0 || index.data(kBallRole).isValid())
      BallDelegate::paint(painter, option, index);
    else
      paintFigure(painter, option, index);
    if (index.column() == kRedCount)
      painter->fillRect(option.rect.right() - 1, option.rect.top(), 2, option.rect.height() + 1,
                        colours().faint);
  }

 private:
  // From edge to edge: a cell of a number has room for "4.3", but not for the usual margins as well.
  void paintFigure(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QString text = std::exchange(cell.text, QString());
    cell.widget->style()->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    const bool chosen = option.state.testFlag(QStyle::State_Selected);
    painter->setPen(cell.palette.color(chosen ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(option.rect, static_cast<int>(Qt::AlignCenter), text);
  }
};

}  // namespace

void DistributionModel::setRows(std::vector<DistributionRow> rows, Trend trend) {
  beginResetModel();
  rows_ = std::move(rows);
  trend_ = std::move(trend);
  endResetModel();
}

void DistributionModel::setExtras(const Extras& extras) {
  beginResetModel();
  extras_ = extras;
  endResetModel();
}

int DistributionModel::blueColumn(int row) const {
  for (int column = kRedCount + 1; column < kDistributionColumns; ++column)
    if (rows_[row].drawn[column - 1]) return column;
  return 0;
}

int DistributionModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : drawCount() + (extras_.foot && !rows_.empty() ? kFootLines : 0);
}

int DistributionModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kDistributionColumns + (extras_.statistic >= 0 ? 1 : 0);
}

QVariant DistributionModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const int column = index.column();
  if (index.row() >= drawCount()) return footData(index.row() - drawCount(), column, role);
  const DistributionRow& row = rows_[index.row()];
  const bool trended = index.row() < std::ssize(trend_.draws);
  if (column == kDistributionColumns) {
    if (role == Qt::TextAlignmentRole) return static_cast<int>(Qt::AlignCenter);
    if (role != Qt::DisplayRole || !trended) return {};
    return trendStatistics()[extras_.statistic].figure(trend_.draws[index.row()]);
  }
  if (column == 0) {
    if (role == Qt::DisplayRole) return row.period;
    return role == Qt::BackgroundRole ? QVariant(colours().identity) : QVariant();
  }
  switch (role) {
    case Qt::DisplayRole:
      if (row.drawn[column - 1]) return twoDigits(numberOf(column));
      return extras_.gaps && trended ? QVariant(trend_.gaps[index.row()][column - 1]) : QVariant();
    case kBallRole:
      if (!row.drawn[column - 1]) return {};
      return static_cast<int>(isBlue(column) ? BallFace::blue : BallFace::red);
    case Qt::ForegroundRole:
      if (extras_.gaps && !row.drawn[column - 1]) return colours().faint;
      return isBlue(column) ? QVariant(colours().blue_text) : QVariant();
    case Qt::TextAlignmentRole:
      return static_cast<int>(Qt::AlignCenter);
    default:
      return {};
  }
}

QVariant DistributionModel::footData(int line, int column, int role) const {
  if (role == Qt::BackgroundRole) return colours().identity;
  if (role == Qt::TextAlignmentRole && column > 0) return static_cast<int>(Qt::AlignCenter);
  if (role == Qt::ToolTipRole && column > 0) return footData(line, 0, Qt::DisplayRole);
  if (role != Qt::DisplayRole || column == kDistributionColumns) return {};
  constexpr const char* captions[kFootLines] = {"出现次数", "平均遗漏", "最大遗漏", "最大连出"};
  if (column == 0) return QString::fromUtf8(captions[line]);
  const TrendFoot& foot = trend_.foot[column - 1];
  if (line == 1) return QString::number(foot.average_gap, 'f', foot.average_gap < 10 ? 1 : 0);
  return line == 0 ? foot.hits : line == 2 ? foot.largest_gap : foot.longest_run;
}

QVariant DistributionModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  if (section == kDistributionColumns)
    return role == Qt::DisplayRole ? shown(trendStatistics()[extras_.statistic].name) : QVariant();
  if (role == Qt::DisplayRole) return section == 0 ? QStringLiteral("期号") : twoDigits(numberOf(section));
  if (role == Qt::ForegroundRole && section > 0)
    return isBlue(section) ? colours().blue_text : colours().red_text;
  return {};
}

DistributionGrid::DistributionGrid(QWidget* parent) : EndTable(parent) {
  setObjectName(QStringLiteral("distributionGrid"));
  setStyleSheet(QStringLiteral("QHeaderView::section { padding: 4px 0; }"));
  setModel(&model_);
  setItemDelegate(new CellDelegate(this));
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setMinimumSectionSize(kNarrowest);
  horizontalHeader()->setHighlightSections(false);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
}

void DistributionGrid::setExtras(const DistributionModel::Extras& extras) {
  model_.setExtras(extras);
  fitColumns();
  showEnd();
}

// The line goes from ball to ball and leaves their faces free.
void DistributionGrid::paintEvent(QPaintEvent* event) {
  EndTable::paintEvent(event);
  if (!model_.extras().line || model_.drawCount() == 0) return;
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colours().blue_ball, 1.5));
  const int first = std::max(1, rowAt(0));
  const int below = rowAt(viewport()->height() - 1);
  const int last = below < 0 ? model_.drawCount() - 1 : std::min(below + 1, model_.drawCount() - 1);
  for (int row = first; row <= last; ++row) {
    const int from = model_.blueColumn(row - 1);
    const int to = model_.blueColumn(row);
    if (from == 0 || to == 0) continue;
    const QRectF cell = visualRect(model_.index(row - 1, from));
    QLineF way(cell.center(), QRectF(visualRect(model_.index(row, to))).center());
    const double radius = std::min(cell.width(), cell.height()) / 2;
    const double share = radius / way.length();
    painter.drawLine(way.pointAt(share), way.pointAt(1 - share));
  }
}

void DistributionGrid::showRows(std::vector<DistributionRow> rows, Trend trend) {
  model_.setRows(std::move(rows), std::move(trend));
  fitColumns();
  selectionModel()->setCurrentIndex(model_.index(model_.rowCount() - 1, 0), QItemSelectionModel::NoUpdate);
  showEnd();
}

void DistributionGrid::resizeEvent(QResizeEvent* event) {
  fitColumns();
  EndTable::resizeEvent(event);
}

// As wide as the window allows, so that the balls grow with it.
void DistributionGrid::fitColumns() {
  const int period = std::max(fontMetrics().horizontalAdvance(QStringLiteral("2000000")),
                              fontMetrics().horizontalAdvance(QStringLiteral("出现次数"))) +
                     kPeriodPadding;
  const bool has_statistic = model_.extras().statistic >= 0;
  const QString caption = model_.headerData(kDistributionColumns, Qt::Horizontal, Qt::DisplayRole).toString();
  const int statistic = has_statistic ? fontMetrics().horizontalAdvance(caption) + kPeriodPadding : 0;
  const int width = std::clamp((viewport()->width() - period - statistic) / kCodeCount, kNarrowest, kWidest);
  if (has_statistic) setColumnWidth(kDistributionColumns, statistic);
  setColumnWidth(0, period);
  for (int column = 1; column < kDistributionColumns; ++column) setColumnWidth(column, width);
  verticalHeader()->setDefaultSectionSize(width + 4);
}

}  // namespace lotmere::ui
