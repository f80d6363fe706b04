// The distribution of the numbers: a row a draw, a column a number, a ball where the draw
// holds it.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "analysis/distribution.hpp"
#include "analysis/trend.hpp"
#include "ui/widgets/row_table.hpp"

namespace lotmere::ui {

class DistributionModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  // The trend is that of the same draws.
  void setRows(std::vector<DistributionRow> rows, Trend trend);
  // What stands beside the balls; nothing of it at first.
  struct Extras {
    bool gaps = false;   // running gaps in the empty cells
    bool line = false;   // that joins the blues
    bool foot = false;   // hits and gaps of each number in rows below the draws
    int statistic = -1;  // a column with this one of trendStatistics()
  };
  void setExtras(const Extras& extras);
  [[nodiscard]] const Extras& extras() const { return extras_; }
  [[nodiscard]] int drawCount() const { return static_cast<int>(rows_.size()); }
  // The column of the blue of a draw; 0 with none.
  [[nodiscard]] int blueColumn(int row) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  [[nodiscard]] QVariant footData(int line, int column, int role) const;

  std::vector<DistributionRow> rows_;
  Trend trend_;
  Extras extras_;
};

class DistributionGrid : public EndTable {
  Q_OBJECT

 public:
  explicit DistributionGrid(QWidget* parent = nullptr);

  // Shows these draws, the last one in sight. It stays there when the window changes its size.
  void showRows(std::vector<DistributionRow> rows, Trend trend);
  void setExtras(const DistributionModel::Extras& extras);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void fitColumns();

  DistributionModel model_;
};

}  // namespace lotmere::ui
