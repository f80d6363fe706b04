// Draws from a text that was copied somewhere (`frmPasteDraws`): the text, and below it what was understood,
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
  QPlainTextEdit* text_;  // Text_pasted
  QTreeWidget* draws_;    // List_understood
  QLabel* summary_;       // Label_understood
  QPushButton* store_;    // cmdOK
  QTimer timer_;          // reads once the typing of one moment is over
};

}  // namespace lotmere::ui
