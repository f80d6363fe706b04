// The 33 reds coloured by the group that they belong to.
#pragma once

#include <QWidget>

#include "advice/number_groups.hpp"

namespace lotmere::ui {

class GroupBalls : public QWidget {
  Q_OBJECT

 public:
  explicit GroupBalls(QWidget* parent = nullptr);

  void showGroups(const NumberGroups& groups);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
  // As many rows as the width asks for.
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] QRectF boxOf(int number) const;

  NumberGroups groups_{};
};

}  // namespace lotmere::ui
