// The head of a table with a row of boxes below the captions, in which a user types what the column has to
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

  // Gives each column from `first` to `last` a box, named FilterText_<column>, which is made once its column
  // comes into sight. Hidden columns have none.
  void setBoxes(int first, int last);
  // What stands in the box of a column; empty for a column without one.
  [[nodiscard]] QString filter(int column) const;
  // Empties the boxes without a signal.
  void clearFilters();
  // False for a column without a box, or a hidden one.
  bool focusFilter(int column);

  [[nodiscard]] QSize sizeHint() const override;
  void placeBoxes();

 Q_SIGNALS:
  void edited();
  void submitted();          // Enter
  void left();               // Esc or the arrow down
  void entered(int column);  // the box has the focus, so its column should be in sight
  void passedEnd(int step);  // Tab behind the last box (1) or before the first one (-1)

 protected:
  void updateGeometries() override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] QLineEdit* box(int column);
  [[nodiscard]] int rowHeight() const;
  bool press(int column, int key);

  int first_ = 0;
  int last_ = -1;
  QMap<int, QLineEdit*> boxes_;  // those that were in sight, by column
};

}  // namespace lotmere::ui
