#include "ui/widgets/frozen_grid.hpp"

#include <QHBoxLayout>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>

#include "ui/look/ball_delegate.hpp"

namespace lotmere::ui {
namespace {

constexpr int kRowHeight = 28;

// One of the two panes. Its arrow keys go on in the other one at its inner edge.
class Pane : public EndTable {
 public:
  Pane(QAbstractItemModel& model, int first, int last, QWidget* parent)
      : EndTable(parent), first_(first), last_(last) {
    auto* head = new FilterHeader(this);
    setHorizontalHeader(head);
    makeSortable(*head);
    setModel(&model);
    head->setBoxes(first, last);
    for (int column = 0; column < model.columnCount(); ++column)
      if (column < first || column > last) setColumnHidden(column, true);
    verticalHeader()->setDefaultSectionSize(kRowHeight);
    setItemDelegate(new BallDelegate(this));
  }

  void setNeighbour(Pane* neighbour) { neighbour_ = neighbour; }

 protected:
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override {
    const int column = currentIndex().column();
    if (action == MoveRight && column >= shownFrom(last_, -1) && neighbour_->first_ > last_)
      return goOn(neighbour_->shownFrom(neighbour_->first_, 1));
    if (action == MoveLeft && column <= shownFrom(first_, 1) && neighbour_->last_ < first_)
      return goOn(neighbour_->shownFrom(neighbour_->last_, -1));
    return EndTable::moveCursor(action, modifiers);
  }

  // The current cell follows the focus into this pane.
  void focusInEvent(QFocusEvent* event) override {
    const QModelIndex current = currentIndex();
    if (current.isValid() && (current.column() < first_ || current.column() > last_))
      selectionModel()->setCurrentIndex(current.siblingAtColumn(shownFrom(first_, 1)),
                                        QItemSelectionModel::NoUpdate);
    EndTable::focusInEvent(event);
  }

  // The columns of both panes.
  [[nodiscard]] bool copies(int column) const override {
    const bool mine = column >= first_ && column <= last_;
    return !(mine ? isColumnHidden(column) : neighbour_->isColumnHidden(column));
  }

 private:
  QModelIndex goOn(int column) {
    const QModelIndex next = currentIndex().siblingAtColumn(column);
    neighbour_->setFocus(Qt::OtherFocusReason);
    return next;
  }

  // The first column from `column` on that isn't hidden.
  [[nodiscard]] int shownFrom(int column, int step) const {
    while (isColumnHidden(column) && column > first_ && column < last_) column += step;
    return column;
  }

  int first_;
  int last_;
  Pane* neighbour_ = nullptr;
};

}  // namespace

FrozenGrid::FrozenGrid(QAbstractItemModel& model, int frozen, QWidget* parent)
    : QFrame(parent), rows_(model), frozen_(frozen) {
  auto* left = new Pane(rows_, 0, frozen - 1, this);
  auto* right = new Pane(rows_, frozen, model.columnCount() - 1, this);
  left->setNeighbour(right);
  right->setNeighbour(left);
  left_ = left;
  right_ = right;
  left_head_ = static_cast<FilterHeader*>(left->horizontalHeader());
  right_head_ = static_cast<FilterHeader*>(right->horizontalHeader());
  setFrameShape(StyledPanel);
  setStyleSheet(QStringLiteral(
      "QTableView { border: none; border-radius: 0; } #pane_Left { border-right: 2px solid palette(mid); }"));
  left_->setObjectName(QStringLiteral("leftPane"));
  right_->setObjectName(QStringLiteral("rightPane"));
  right_->setSelectionModel(left_->selectionModel());
  // One stop on the way of Tab: the arrow keys lead from pane to pane.
  right_->setFocusPolicy(Qt::ClickFocus);
  setFocusProxy(left_);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(1, 1, 1, 1);
  layout->setSpacing(0);
  auto* beside = new QVBoxLayout;
  beside->setSpacing(0);
  beside->addWidget(left_);
  beside->addSpacing(right_->horizontalScrollBar()->sizeHint().height());
  layout->addLayout(beside);
  layout->addWidget(right_, 1);
  shareScrolling();
  shareOrder();
  connectFilters(left_head_, right_head_, left_);
  connectFilters(right_head_, left_head_, right_);
  connect(left_head_, &QHeaderView::sectionResized, this, &FrozenGrid::fitLeft);
}

// The right pane leads. The left one has a range of its own that changes a moment earlier or later: what it
// holds in between is nobody's wish.
void FrozenGrid::shareScrolling() {
  left_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  left_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  right_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  const QScrollBar* left = left_->verticalScrollBar();
  QScrollBar* right = right_->verticalScrollBar();
  connect(right, &QScrollBar::rangeChanged, this, &FrozenGrid::syncLeft);
  connect(right, &QScrollBar::valueChanged, this, &FrozenGrid::syncLeft);
  connect(left, &QScrollBar::rangeChanged, this, &FrozenGrid::syncLeft);
  connect(left, &QScrollBar::valueChanged, this, [this, left, right](int value) {
    if (!syncing_ && left->maximum() == right->maximum()) right->setValue(value);
  });
}

// The order of one pane's captions takes the place of the other's.
void FrozenGrid::shareOrder() {
  for (FilterHeader* head : {left_head_, right_head_}) {
    FilterHeader* other = head == left_head_ ? right_head_ : left_head_;
    connect(head, &QHeaderView::sortIndicatorChanged, this,
            [this, other](int column, Qt::SortOrder direction) {
              rows_.sort(column, direction);
              const QSignalBlocker quiet(other);
              other->setSortIndicator(column, direction);
              other->viewport()->update();
              if (rows_.isSorted())
                right_->scrollToTop();
              else
                right_->showEnd();
              syncLeft();
            });
  }
}

void FrozenGrid::syncLeft() {
  syncing_ = true;
  left_->verticalScrollBar()->setValue(right_->verticalScrollBar()->value());
  syncing_ = false;
}

void FrozenGrid::connectFilters(FilterHeader* header, FilterHeader* other, EndTable* pane) {
  connect(pane->horizontalScrollBar(), &QScrollBar::valueChanged, header, &FilterHeader::placeBoxes);
  connect(header, &FilterHeader::edited, this, &FrozenGrid::filterEdited);
  connect(header, &FilterHeader::submitted, this, &FrozenGrid::filterSubmitted);
  connect(header, &FilterHeader::left, pane, [pane] { pane->setFocus(); });
  connect(header, &FilterHeader::passedEnd, this, [this, pane, other](int step) {
    const bool on = (step > 0) == (pane == left_);
    if (!on || !other->focusFilter(step > 0 ? frozen_ : frozen_ - 1)) pane->setFocus();
  });
  connect(header, &FilterHeader::entered, this, [pane, header](int column) {
    QScrollBar* bar = pane->horizontalScrollBar();
    const int from = header->sectionPosition(column);
    const int to = from + header->sectionSize(column) - pane->viewport()->width();
    if (from < bar->value() || to > bar->value()) bar->setValue(from < bar->value() ? from : to);
  });
}

void FrozenGrid::fitLeft() { left_->setFixedWidth(left_head_->length() + 2); }

void FrozenGrid::setColumnWidth(int column, int width) {
  (column < frozen_ ? left_ : right_)->setColumnWidth(column, width);
}

int FrozenGrid::columnWidth(int column) const {
  return (column < frozen_ ? left_ : right_)->columnWidth(column);
}

void FrozenGrid::hideColumn(int column) {
  (column < frozen_ ? left_ : right_)->setColumnHidden(column, true);
}

int FrozenGrid::currentColumn() const { return std::max(0, left_->currentIndex().column()); }

void FrozenGrid::showEnd(int column) {
  const int stored = rows_.rowCount() - 1;
  const QModelIndex newest = rows_.index(stored < 0 ? -1 : rows_.shownRow(stored), column);
  left_->selectionModel()->setCurrentIndex(newest, QItemSelectionModel::NoUpdate);
  if (rows_.isSorted()) {
    right_->scrollTo(newest.siblingAtColumn(frozen_));
  } else {
    right_->showEnd();
    left_->showEnd();
  }
  syncLeft();
}

std::vector<int> FrozenGrid::selectedRows() const {
  std::vector<int> rows = left_->selectedRows();
  for (int& row : rows) row = rows_.storedRow(row);
  return rows;
}

void FrozenGrid::selectFrom(int first) {
  const int count = rows_.rowCount();
  QItemSelection chosen;
  for (int row = first; row < count; ++row) {
    // One range for rows that stand together.
    const int from = row;
    while (row + 1 < count && rows_.shownRow(row + 1) == rows_.shownRow(row) + 1) ++row;
    chosen.select(rows_.index(rows_.shownRow(from), 0),
                  rows_.index(rows_.shownRow(row), rows_.columnCount() - 1));
  }
  if (first < count) left_->selectionModel()->select(chosen, QItemSelectionModel::ClearAndSelect);
}

QString FrozenGrid::filter(int column) const {
  return (column < frozen_ ? left_head_ : right_head_)->filter(column);
}

void FrozenGrid::clearFilters() {
  left_head_->clearFilters();
  right_head_->clearFilters();
}

void FrozenGrid::focusFilter() {
  const int column = currentColumn();
  if (!left_head_->focusFilter(column) && !right_head_->focusFilter(column)) left_head_->focusFilter(0);
}

}  // namespace lotmere::ui
