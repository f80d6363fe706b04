// The distribution of the numbers (`TDBGrid_FenBu`): a row a draw, a column a number, a ball where the draw
// holds it.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "analysis/distribution.hpp"
#include "ui/widgets/row_table.hpp"

namespace lotmere::ui {

class DistributionModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  void setRows(std::vector<DistributionRow> rows);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::vector<DistributionRow> rows_;
};

class DistributionGrid : public EndTable {
  Q_OBJECT

 public:
  explicit DistributionGrid(QWidget* parent = nullptr);

  // Shows these draws, the last one in sight. It stays there when the window changes its size.
  void showRows(std::vector<DistributionRow> rows);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void fitColumns();

  DistributionModel model_;
};

}  // namespace lotmere::ui
