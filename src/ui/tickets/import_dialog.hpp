// How the lines of a ticket file are read.
#pragma once

#include <QButtonGroup>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <optional>

#include "files/import.hpp"
#include "ui/shell/session.hpp"

namespace lotmere::ui {

class ImportDialog : public QDialog {
  Q_OBJECT

 public:
  ImportDialog(Session& session, ImportFormat proposed, QWidget* parent);

  // What was accepted; nothing before.
  [[nodiscard]] const std::optional<ImportChoice>& choice() const { return choice_; }

 private:
  void acceptChoice();

  WindowDesk& desk_;
  QButtonGroup formats_;
  QLabel* period_label_;
  QLineEdit* period_;
  std::optional<ImportChoice> choice_;
};

}  // namespace lotmere::ui
