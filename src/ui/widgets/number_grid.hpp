// The 33 reds as buttons that are in a set or not.
#pragma once

#include <QButtonGroup>
#include <QWidget>

#include "game/metrics.hpp"

namespace lotmere::ui {

class NumberGrid : public QWidget {
  Q_OBJECT

 public:
  // Each button is named `name` and its two digits: "groupNumber.05".
  NumberGrid(const QString& name, int columns, QWidget* parent = nullptr);

  // 1 for each number of the set. Nothing is written back.
  void showMembers(const RedTable& members);
  [[nodiscard]] std::vector<int> members() const;

 Q_SIGNALS:
  // The user pressed a number, which is in the set now or no longer.
  void numberClicked(int number);

 private:
  QButtonGroup buttons_;
};

}  // namespace lotmere::ui
