// Tables of rows for reading, scrolled smoothly. Each copies its chosen rows, and those that show a model by
// showRows() sort them by a click on a caption.
#pragma once

#include <QTableView>
#include <vector>

#include "ui/widgets/sorted_rows.hpp"

namespace lotmere::ui {

// Rows of one height, chosen as wholes; nothing in them can be edited. The menu of a row has copying in front
// and then the actions of the table (QWidget::actions()).
class RowTable : public QTableView {
  Q_OBJECT

 public:
  explicit RowTable(QWidget* parent = nullptr);

  // Shows the rows of a model. A click on a caption sorts them by that column, a
  // second one the other way round, a third one brings the stored order back.
  void showRows(QAbstractItemModel& rows);
  // Behind showRows(): from a row of the table to the one of its model.
  [[nodiscard]] int storedRow(int row) const;

  // The rows that are chosen, in the order in which they are shown.
  [[nodiscard]] std::vector<int> selectedRows() const;
  // Puts the chosen rows on the clipboard as they are shown, as a spreadsheet takes them: tabs between the
  // columns in sight, a line feed behind each row. With no row chosen nothing happens.
  void copyRows();
  // The actions in a menu of a row behind those that the table has already, with a line in front.
  void addRowActions(const QList<QAction*>& actions);

 Q_SIGNALS:
  // Behind a copy, what came of it: "已复制 3 行".
  void copied(const QString& text);

 protected:
  bool viewportEvent(QEvent* event) override;
  // Whether a column is copied: one that is in sight.
  [[nodiscard]] virtual bool copies(int column) const { return !isColumnHidden(column); }
};

// Lets the captions of a table, whose model can be sorted, ask for an order.
void makeSortable(QHeaderView& header);

// One whose newest rows stand at its end.
class EndTable : public RowTable {
  Q_OBJECT

 public:
  explicit EndTable(QWidget* parent = nullptr);

  // Puts the last row in sight. It stays there when rows or the size of the window change, until the user
  // scrolls away.
  void showEnd();

 private:
  bool at_end_ = true;
};

}  // namespace lotmere::ui
