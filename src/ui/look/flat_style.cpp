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
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

}  // namespace lotmere::ui
