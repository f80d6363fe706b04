#include "ui/history/distribution_grid.hpp"

#include <QHeaderView>
#include <QPainter>
#include <QResizeEvent>
#include <algorithm>

#include "ui/look/ball_delegate.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kNarrowest = 22;  // a number column, with room for a two-digit caption
constexpr int kWidest = 34;
constexpr int kPeriodPadding = 16;

bool isBlue(int column) { return column > kRedCount; }

int numberOf(int column) { return isBlue(column) ? column - kRedCount : column; }

QString twoDigits(int number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); }

// Balls, and a line between the reds and the blues.
class CellDelegate : public BallDelegate {
 public:
  using BallDelegate::BallDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    BallDelegate::paint(painter, option, index);
    if (index.column() == kRedCount)
      painter->fillRect(option.rect.right() - 1, option.rect.top(), 2, option.rect.height() + 1,
                        colours().faint);
  }
};

}  // namespace

void DistributionModel::setRows(std::vector<DistributionRow> rows) {
  beginResetModel();
  rows_ = std::move(rows);
  endResetModel();
}

int DistributionModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int DistributionModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kDistributionColumns;
}

QVariant DistributionModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const DistributionRow& row = rows_[index.row()];
  const int column = index.column();
  if (column == 0) {
    if (role == Qt::DisplayRole) return row.period;
    return role == Qt::BackgroundRole ? QVariant(colours().identity) : QVariant();
  }
  switch (role) {
    case Qt::DisplayRole:
      return row.drawn[column - 1] ? twoDigits(numberOf(column)) : QVariant();
    case kBallRole:
      if (!row.drawn[column - 1]) return {};
      return static_cast<int>(isBlue(column) ? BallFace::blue : BallFace::red);
    case Qt::ForegroundRole:
      return isBlue(column) ? QVariant(colours().blue_text) : QVariant();
    case Qt::TextAlignmentRole:
      return static_cast<int>(Qt::AlignCenter);
    default:
      return {};
  }
}

QVariant DistributionModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= kDistributionColumns) return {};
  if (role == Qt::DisplayRole) return section == 0 ? QStringLiteral("期号") : twoDigits(numberOf(section));
  if (role == Qt::ForegroundRole && section > 0)
    return isBlue(section) ? colours().blue_text : colours().red_text;
  return {};
}

DistributionGrid::DistributionGrid(QWidget* parent) : EndTable(parent) {
  setObjectName(QStringLiteral("TDBGrid_FenBu"));
  setStyleSheet(QStringLiteral("QHeaderView::section { padding: 4px 0; }"));
  setModel(&model_);
  setItemDelegate(new CellDelegate(this));
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setMinimumSectionSize(kNarrowest);
  horizontalHeader()->setHighlightSections(false);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
}

void DistributionGrid::showRows(std::vector<DistributionRow> rows) {
  model_.setRows(std::move(rows));
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
  const int period = fontMetrics().horizontalAdvance(QStringLiteral("2000000")) + kPeriodPadding;
  const int width = std::clamp((viewport()->width() - period) / kCodeCount, kNarrowest, kWidest);
  setColumnWidth(0, period);
  for (int column = 1; column < kDistributionColumns; ++column) setColumnWidth(column, width);
  verticalHeader()->setDefaultSectionSize(width + 4);
}

}  // namespace lotmere::ui
