#include "ui/widgets/row_table.hpp"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>

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
}

// A style sheet makes the viewport count as transparent, and every step of scrolling would paint all of it
// anew.
bool RowTable::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::Show || event->type() == QEvent::StyleChange)
    viewport()->setAutoFillBackground(true);
  return QTableView::viewportEvent(event);
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
