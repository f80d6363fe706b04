#include "ui/look/flat_style.hpp"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

void drawMark(const QStyleOption& option, QPainter& painter, bool round) {
  const bool on = option.state.testFlag(QStyle::State_On);
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const QPalette& palette = option.palette;
  const double size = std::min(option.rect.width(), option.rect.height()) - 1.0;
  const QRectF box(option.rect.center().x() - size / 2 + 0.5, option.rect.center().y() - size / 2 + 0.5, size,
                   size);
  const QColor strong =
      enabled ? palette.color(QPalette::Highlight) : palette.color(QPalette::Disabled, QPalette::Text);
  const bool lit =
      on || option.state.testFlag(QStyle::State_MouseOver) || option.state.testFlag(QStyle::State_HasFocus);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(lit ? strong : colours().faint, 1));
  painter.setBrush(on && !round ? strong : palette.color(QPalette::Base));
  if (round)
    painter.drawEllipse(box);
  else
    painter.drawRoundedRect(box, 3, 3);
  if (on && round) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(strong);
    painter.drawEllipse(box.center(), size * 0.27, size * 0.27);
  } else if (on) {
    QPainterPath tick(QPointF(box.left() + size * 0.24, box.top() + size * 0.53));
    tick.lineTo(box.left() + size * 0.43, box.top() + size * 0.72);
    tick.lineTo(box.left() + size * 0.77, box.top() + size * 0.31);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette.color(QPalette::HighlightedText), std::max(1.6, size / 8), Qt::SolidLine,
                        Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(tick);
  }
  painter.restore();
}

// Upright where the least row stands on top.
void drawSortMark(const QStyleOptionHeader& option, QPainter& painter) {
  if (option.sortIndicator == QStyleOptionHeader::None) return;
  const QRectF box = QRectF(option.rect).adjusted(0.5, 1, -0.5, -1);
  const bool upright = option.sortIndicator == QStyleOptionHeader::SortDown;  // what Qt calls ascending
  const double tip = upright ? box.top() : box.bottom();
  const double foot = upright ? box.bottom() : box.top();
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(option.palette.color(QPalette::Highlight));
  painter.drawPolygon(QPolygonF{{box.center().x(), tip}, {box.right(), foot}, {box.left(), foot}});
  painter.restore();
}

}  // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStringLiteral("Fusion")) { setObjectName(QStringLiteral("flat")); }

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
  switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
      return drawMark(*option, *painter, false);
    case PE_IndicatorRadioButton:
      return drawMark(*option, *painter, true);
    case PE_IndicatorHeaderArrow:
      if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option))
        drawSortMark(*header, *painter);
      return;
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

// Narrow columns have no room beside their captions.
QRect FlatStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
  if (element != SE_HeaderArrow) return QProxyStyle::subElementRect(element, option, widget);
  constexpr QSize mark{9, 7};
  return {option->rect.center().x() - mark.width() / 2, option->rect.top(), mark.width(), mark.height()};
}

int FlatStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  return metric == PM_HeaderMarkSize ? 0 : QProxyStyle::pixelMetric(metric, option, widget);
}

}  // namespace lotmere::ui
