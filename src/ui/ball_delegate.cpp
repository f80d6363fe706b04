#include "ui/ball_delegate.hpp"

#include <QApplication>
#include <QPainter>

#include "ui/balls.hpp"

namespace lotmere::ui {

void BallDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const QVariant face = index.data(kBallRole);
  if (!face.isValid()) {
    QStyledItemDelegate::paint(painter, option, index);
    return;
  }
  QStyleOptionViewItem cell = option;
  initStyleOption(&cell, index);
  const QString text = std::exchange(cell.text, QString());
  const QStyle* style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
  style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
  painter->setFont(cell.font);
  paint_Ball(*painter, QRectF(option.rect).adjusted(1, 1, -1, -1), text, static_cast<BallFace>(face.toInt()));
}

}  // namespace lotmere::ui
