// The draws of the history page, a row a draw and a column for each of drawColumns().
#pragma once

#include <QAbstractTableModel>
#include <QFontMetrics>
#include <vector>

#include "history/search.hpp"
#include "store/periods.hpp"
#include "store/store.hpp"

namespace lotmere::ui {

inline constexpr int kFirstRedColumn = 2;
inline constexpr int kBlueColumn = 8;
inline constexpr int kIdentityColumns = 9;  // period, date and the seven numbers

class HistoryModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit HistoryModel(QObject* parent = nullptr);

  // The fields of one column: numbers or texts, whichever its kind is.
  struct Field {
    std::vector<int> numbers;
    std::vector<QString> texts;
  };
  struct Rows {
    std::vector<Field> fields;  // a column each
    int count = 0;
  };
  // Reads the draws of a range that meet a condition. Throws SQLite::Exception when the store refuses.
  [[nodiscard]] static Rows read(Store& store, PeriodRange range, const SearchCondition& condition = {});
  // Shows rows in the place of those it had, and returns how many there are.
  int show(Rows rows);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // The columns of the reds and the blue, which are shown as two digits.
  [[nodiscard]] static bool isNumberOfDraw(int column) {
    return column >= kFirstRedColumn && column <= kBlueColumn;
  }
  // The columns that only the statistics use.
  [[nodiscard]] static bool isWorkColumn(int column);
  [[nodiscard]] PeriodNo period(int row) const { return fields_.front().numbers[row]; }
  // In pixels, with room for the caption.
  [[nodiscard]] int columnWidth(int column, const QFontMetrics& metrics) const;

 private:
  [[nodiscard]] QString text(int row, int column) const;
  [[nodiscard]] QVariant ballFace(int row, int column) const;

  std::vector<Field> fields_;
  int rows_ = 0;
};

}  // namespace lotmere::ui
