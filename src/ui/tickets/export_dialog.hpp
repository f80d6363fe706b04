// What a ticket file holds and how its lines are written.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <array>

#include "files/export.hpp"

namespace lotmere::ui {

class ExportDialog : public QDialog {
  Q_OBJECT

 public:
  // Shows these switches at first.
  ExportDialog(const ExportSwitches& switches, QWidget* parent);

  // Compound bets have no switches.
  [[nodiscard]] ExportSwitches switches() const;
  [[nodiscard]] bool compound() const;

 private:
  void showContent();

  std::array<QCheckBox*, 4> boxes_{};
  QComboBox* format_;
};

}  // namespace lotmere::ui
