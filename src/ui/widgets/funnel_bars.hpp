// A funnel as a picture: a bar for each step, as high as what it had in front of it, its upper part what it
// took away.
#pragma once

#include <QString>
#include <QWidget>
#include <cstdint>
#include <vector>

namespace lotmere::ui {

struct FunnelBar {
  QString name;
  std::int64_t before = 0;
  std::int64_t after = 0;  // 0 to before

  friend bool operator==(const FunnelBar&, const FunnelBar&) = default;
};

class FunnelBars : public QWidget {
  Q_OBJECT

 public:
  explicit FunnelBars(QWidget* parent = nullptr);

  // In the order of the steps. Names that find no room under their bars stand in the tips.
  void showFunnel(std::vector<FunnelBar> bars);
  [[nodiscard]] const std::vector<FunnelBar>& bars() const { return bars_; }
  // The bar at a place of the widget, -1 for none.
  [[nodiscard]] int barAt(QPoint place) const;
  // "总和值：81,396 → 77,541，去掉 3,855 注（4.7%）"
  [[nodiscard]] static QString barText(const FunnelBar& bar);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  // By the mouse, or by Enter on the bar that the arrow keys chose.
  void clicked(int bar);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] double barWidth() const;
  [[nodiscard]] QRectF boxOf(int bar) const;
  void choose(int bar);

  std::vector<FunnelBar> bars_;
  int chosen_ = 0;  // by the keys
};

}  // namespace lotmere::ui
