// Paints the cells of a table that hold a ball.
#pragma once

#include <QStyledItemDelegate>

namespace lotmere::ui {

// What a model answers for a cell that is shown as a ball: its BallFace as a whole number. Any other cell is
// shown as text.
inline constexpr int kBallRole = Qt::UserRole + 1;

class BallDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace lotmere::ui
