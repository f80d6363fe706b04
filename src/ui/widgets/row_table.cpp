#include "ui/widgets/row_table.hpp"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QHeaderView>
#include <QLocale>
#include <QScrollBar>
#include <algorithm>

namespace lotmere::ui {

RowTable::RowTable(QWidget* parent) : QTableView(parent) {
  verticalHeader()->hide();
  // Rows of one height: the place of each follows from its number, also among 100,000.
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  setHorizontalScrollMode(ScrollPerPixel);
  setVerticalScrollMode(ScrollPerPixel);
  setAlternatingRowColors(true);
  setSelectionBehavior(SelectRows);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setEditTriggers(NoEditTriggers);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  const auto add = [this](const QString& text, QKeySequence::StandardKey keys, void (RowTable::*handler)()) {
    auto* action = new QAction(text, this);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, handler);
    addAction(action);
  };
  add(QStringLiteral("复制(&C)"), QKeySequence::Copy, &RowTable::copyRows);
  add(QStringLiteral("全选(&A)"), QKeySequence::SelectAll, &RowTable::selectAll);
}

void RowTable::showRows(QAbstractItemModel& rows) {
  setModel(new SortedRows(rows, this));
  makeSortable(*horizontalHeader());
  connect(horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
          [this](int column, Qt::SortOrder direction) {
            model()->sort(column, direction);
            scrollToTop();
          });
}

int RowTable::storedRow(int row) const { return static_cast<const SortedRows*>(model())->storedRow(row); }

// By the ranges, which are of whole rows: among a million of them a look at each one would take its time.
std::vector<int> RowTable::selectedRows() const {
  std::vector<int> rows;
  if (selectionModel() == nullptr) return rows;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  std::ranges::sort(rows);
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

void RowTable::copyRows() {
  const std::vector<int> rows = selectedRows();
  if (rows.empty()) return;
  std::vector<int> columns;
  for (int column = 0; column < model()->columnCount(); ++column)
    if (copies(column)) columns.push_back(column);
  QString text;
  for (const int row : rows) {
    for (const int column : columns) {
      if (column != columns.front()) text += QLatin1Char('\t');
      text += model()->index(row, column).data().toString();
    }
    text += QLatin1Char('\n');
  }
  QApplication::clipboard()->setText(text);
  Q_EMIT copied(QStringLiteral("已复制 %1 行").arg(QLocale().toString(qlonglong(rows.size()))));
}

void RowTable::addRowActions(const QList<QAction*>& actions) {
  auto* line = new QAction(this);
  line->setSeparator(true);
  addAction(line);
  addActions(actions);
}

// A style sheet makes the viewport count as transparent, and every step of scrolling would paint all of it
// anew.
bool RowTable::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::Show || event->type() == QEvent::StyleChange)
    viewport()->setAutoFillBackground(true);
  return QTableView::viewportEvent(event);
}

void makeSortable(QHeaderView& header) {
  header.setSortIndicator(-1, Qt::AscendingOrder);
  header.setSortIndicatorClearable(true);
  header.setSortIndicatorShown(true);
  header.setSectionsClickable(true);
}

EndTable::EndTable(QWidget* parent) : RowTable(parent) {
  QScrollBar* bar = verticalScrollBar();
  connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int maximum) {
    if (at_end_) bar->setValue(maximum);
  });
  connect(bar, &QScrollBar::valueChanged, this,
          [this, bar](int value) { at_end_ = value == bar->maximum(); });
}

void EndTable::showEnd() {
  at_end_ = true;
  scrollToBottom();
}

}  // namespace lotmere::ui
