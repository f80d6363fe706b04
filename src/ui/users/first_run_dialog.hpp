// The question of the first run: one user or several.
#pragma once

#include <QDialog>

#include "users/user_table.hpp"

namespace lotmere::ui {

class FirstRunDialog : public QDialog {
  Q_OBJECT

 public:
  explicit FirstRunDialog(QWidget* parent);

  // The chosen mode; rejected, the program ends and the question comes again at the next start.
  [[nodiscard]] UserMode mode() const { return mode_; }

 private:
  UserMode mode_ = UserMode::single;
};

}  // namespace lotmere::ui
