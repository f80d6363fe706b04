// The progress control of a download (`myJinDuCTL`): a text, a bar with two labels, a stop button.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include "ui/shell/progress_view.hpp"
#include "ui/shell/window_desk.hpp"

namespace lotmere::ui {

class ProgressControl : public QFrame, public ProgressView {
  Q_OBJECT
  Q_PROPERTY(int minimum READ minimum WRITE setMinimum)
  Q_PROPERTY(int maximum READ maximum WRITE setMaximum)
  Q_PROPERTY(int value READ value WRITE setValue)
  Q_PROPERTY(QString tipTxt READ tipTxt WRITE setTipTxt)
  Q_PROPERTY(bool stopEnabled READ stopEnabled WRITE setStopEnabled)
  Q_PROPERTY(bool stopped READ stopped)

 public:
  // Hidden until a job begins. Pressing stop also asks the job of `desk` to stop.
  ProgressControl(WindowDesk& desk, QWidget* parent);

  // The ends of the bar. An end that would pass the other one is cut to it.
  [[nodiscard]] int minimum() const { return minimum_; }
  void setMinimum(int minimum);
  [[nodiscard]] int maximum() const { return maximum_; }
  void setMaximum(int maximum);
  // Kept as it is set, shown cut to the ends.
  [[nodiscard]] int value() const { return value_; }
  void setValue(int value);
  [[nodiscard]] QString tipTxt() const { return tip_->text(); }
  void setTipTxt(const QString& text) { tip_->setText(text); }
  [[nodiscard]] bool stopEnabled() const { return stop_->isEnabled(); }
  void setStopEnabled(bool enabled) { stop_->setEnabled(enabled); }
  // Whether stop was pressed since the last job began; a pressed button can't be used again.
  [[nodiscard]] bool stopped() const { return stopped_; }

  void begin(std::int64_t maximum, bool can_stop) override;
  void advance(std::int64_t value) override;
  void end() override;

 private:
  void showValue();
  void place();

  QLabel* tip_;
  QProgressBar* bar_;
  QLabel* all_;
  QLabel* done_;
  QPushButton* stop_;
  int minimum_ = 0;
  int maximum_ = 100;
  int value_ = 0;
  bool stopped_ = false;
  int depth_ = 0;
};

}  // namespace lotmere::ui
