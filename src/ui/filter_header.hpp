// The head of a table with a row of boxes below the captions, in which a person types what the column has to
// begin with.
#pragma once

#include <QHeaderView>
#include <QLineEdit>
#include <QMap>

namespace lotmere::ui {

class FilterHeader : public QHeaderView {
  Q_OBJECT

 public:
  explicit FilterHeader(QWidget* parent = nullptr);

  // A box for each column from `first` to `last`, named FilterText_<column>. Before the model has columns to
  // place them over they stay hidden, as do those of hidden columns.
  void make_Boxes(int first, int last);
  // What stands in the box of a column; empty for a column without one.
  [[nodiscard]] QString filter(int column) const;
  // Empties the boxes without a signal.
  void clear_Filters();
  // False for a column without a box, or a hidden one.
  bool focus_Filter(int column);

  [[nodiscard]] QSize sizeHint() const override;
  void place_Boxes();

 Q_SIGNALS:
  void edited();
  void submitted();           // Enter
  void left();                // Esc or the arrow down
  void entered(int column);   // the box has the focus, so its column should be in sight
  void passed_End(int step);  // Tab behind the last box (1) or before the first one (-1)

 protected:
  void updateGeometries() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool press(int column, int key);

  QMap<int, QLineEdit*> boxes_;  // by column
};

}  // namespace lotmere::ui
