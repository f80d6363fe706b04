// Tables of rows for reading, scrolled smoothly.
#pragma once

#include <QTableView>

namespace lotmere::ui {

// Rows of one height, chosen as wholes; nothing in them can be edited.
class RowTable : public QTableView {
  Q_OBJECT

 public:
  explicit RowTable(QWidget* parent = nullptr);

 protected:
  bool viewportEvent(QEvent* event) override;
};

// One whose newest rows stand at its end.
class EndTable : public RowTable {
  Q_OBJECT

 public:
  explicit EndTable(QWidget* parent = nullptr);

  // Puts the last row in sight. It stays there when rows or the size of the window change, until the person
  // scrolls away.
  void showEnd();

 private:
  bool at_end_ = true;
};

}  // namespace lotmere::ui
