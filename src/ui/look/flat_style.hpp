// Check and radio marks that stand out on light and dark grounds alike; everything else is the base style's.
#pragma once

#include <QProxyStyle>

namespace lotmere::ui {

class FlatStyle : public QProxyStyle {
  Q_OBJECT

 public:
  FlatStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  // The mark of a sorted column stands over its caption.
  QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
};

}  // namespace lotmere::ui
