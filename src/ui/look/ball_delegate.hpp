// Cells of a table that show the numbers of a draw as balls.
#pragma once

#include <QStyledItemDelegate>

namespace lotmere::ui {

// What a model gives for a cell that is a ball: its BallFace as a number. The text of the ball is the cell's.
inline constexpr int kBallRole = Qt::UserRole + 1;

// Paints such cells as balls over the cell's ground and leaves every other cell as it is.
class BallDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace lotmere::ui
