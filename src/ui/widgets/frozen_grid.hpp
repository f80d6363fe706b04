// A wide table in two panes: the first columns stay at the left, the others scroll beside them. Both panes
// show the same rows at the same height and share the selection. A click on a caption sorts them.
#pragma once

#include <QAbstractItemModel>
#include <QFrame>
#include <vector>

#include "ui/widgets/filter_header.hpp"
#include "ui/widgets/row_table.hpp"

namespace lotmere::ui {

class FrozenGrid : public QFrame {
  Q_OBJECT

 public:
  // `model` has all its columns and outlives the grid; the first `frozen` of them make the left pane.
  FrozenGrid(QAbstractItemModel& model, int frozen, QWidget* parent = nullptr);

  [[nodiscard]] EndTable& left() const { return *left_; }
  [[nodiscard]] EndTable& right() const { return *right_; }

  void setColumnWidth(int column, int width);
  // 0 for a hidden one.
  [[nodiscard]] int columnWidth(int column) const;
  void hideColumn(int column);

  // The column of the current cell; 0 with none.
  [[nodiscard]] int currentColumn() const;
  // Puts the last row of the model in sight, its cell in `column` being the current one. In the stored order
  // the end stays in sight when the window changes its size.
  void showEnd(int column);

  // The rows of the model that are chosen, in the order in which they are shown.
  [[nodiscard]] std::vector<int> selectedRows() const;
  // Chooses the rows of the model from `first` on.
  void selectFrom(int first);

  [[nodiscard]] QString filter(int column) const;
  void clearFilters();
  // The box of the current column, or the first one.
  void focusFilter();

 Q_SIGNALS:
  void filterEdited();
  void filterSubmitted();

 private:
  void shareScrolling();
  void shareOrder();
  void connectFilters(FilterHeader* header, FilterHeader* other, EndTable* pane);
  void fitLeft();
  void syncLeft();

  SortedRows rows_;
  int frozen_;
  EndTable* left_;
  EndTable* right_;
  FilterHeader* left_head_;
  FilterHeader* right_head_;
  bool syncing_ = false;
};

}  // namespace lotmere::ui
