// The rows of a table in the order that a person asked for by a click on a caption.
#pragma once

#include <QAbstractTableModel>
#include <vector>

namespace lotmere::ui {

// Shows the rows of another model, stored or in the order of a column. The other model changes by resets and
// by changes of data alone; the order outlasts both. What is chosen, and the current cell, go with their
// rows.
class SortedRows : public QAbstractTableModel {
  Q_OBJECT

 public:
  // Where `stored` goes first, nothing is left to show.
  explicit SortedRows(QAbstractItemModel& stored, QObject* parent = nullptr);

  // A column whose texts are all numbers is sorted by their values, any other one by its texts; empty fields
  // are the least. Equal rows keep their stored order, whichever way the others go. -1 is the stored order.
  void sort(int column, Qt::SortOrder direction = Qt::AscendingOrder) override;
  [[nodiscard]] bool isSorted() const { return column_ >= 0; }

  // From a row as it is shown to the one of the other model, and back.
  [[nodiscard]] int storedRow(int row) const { return isSorted() ? stored_rows_[row] : row; }
  [[nodiscard]] int shownRow(int stored) const { return isSorted() ? shown_rows_[stored] : stored; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void arrange();
  void passChange(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles);

  const QAbstractItemModel* stored_;
  int column_ = -1;
  Qt::SortOrder direction_ = Qt::AscendingOrder;
  std::vector<int> stored_rows_;  // by row shown
  std::vector<int> shown_rows_;   // by row stored
};

}  // namespace lotmere::ui
