// The tip that closes by itself.
#pragma once

#include <QDialog>
#include <QPushButton>
#include <QTimer>

namespace lotmere::ui {

class TipDialog : public QDialog {
  Q_OBJECT

 public:
  TipDialog(const QString& text, const QString& title, QWidget* parent);

 private:
  void tick();
  void showCounter();

  int counter_ = 10;  // seconds left
  QPushButton* ok_;
  QTimer timer_{this};
};

}  // namespace lotmere::ui
