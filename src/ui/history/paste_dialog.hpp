// Draws from a text that was copied somewhere: the text, and below it what was understood,
// before any of it is stored.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

#include "base/dates.hpp"

namespace lotmere::ui {

class PasteDialog : public QDialog {
  Q_OBJECT

 public:
  // `today` is the last day a draw can have. The text may be corrected in its place.
  PasteDialog(const QString& text, Date today, QWidget* parent);

  [[nodiscard]] QString text() const { return text_->toPlainText(); }

 private:
  void understand();

  Date today_;
  QPlainTextEdit* text_;  // pastedText
  QTreeWidget* draws_;    // understoodDraws
  QLabel* summary_;       // understoodSummary
  QPushButton* store_;    // okButton
  QTimer timer_;          // reads once the typing of one moment is over
};

}  // namespace lotmere::ui
