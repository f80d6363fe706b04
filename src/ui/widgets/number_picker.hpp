// The numbers of an interval, picked in a small window beside its button.
#pragma once

#include <QFrame>
#include <QLabel>

#include "ui/widgets/number_grid.hpp"

namespace lotmere::ui {

class NumberPicker : public QFrame {
  Q_OBJECT

 public:
  explicit NumberPicker(QWidget* parent);

  // Opens beside a button with these members; a click elsewhere or Esc closes it.
  void open(const QString& name, const RedTable& members, const QWidget& beside);
  [[nodiscard]] QString name() const { return title_->text(); }
  // The members as they are set.
  void showMembers(const RedTable& members) { grid_->showMembers(members); }

 Q_SIGNALS:
  // The user changed the numbers of the interval by a click.
  void picked(const QString& name, const std::vector<int>& numbers);

 private:
  QLabel* title_;
  NumberGrid* grid_;
};

}  // namespace lotmere::ui
