#include "ui/look/ball_delegate.hpp"

#include <QApplication>
#include <QPainter>

#include "ui/look/balls.hpp"

namespace lotmere::ui {

void BallDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const QVariant face = index.data(kBallRole);
  if (!face.isValid()) return QStyledItemDelegate::paint(painter, option, index);
  QStyleOptionViewItem cell = option;
  initStyleOption(&cell, index);
  const QString text = cell.text;
  cell.text.clear();
  const QStyle* style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
  style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
  paintBall(*painter, QRectF(option.rect).adjusted(1, 2, -1, -2), text, static_cast<BallFace>(face.toInt()));
}

}  // namespace lotmere::ui
