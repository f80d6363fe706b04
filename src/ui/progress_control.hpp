// The progress control of a download (`myJinDuCTL`): a text, a bar with two labels, a stop button.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include "ui/progress_view.hpp"
#include "ui/window_desk.hpp"

namespace lotmere::ui {

class ProgressControl : public QFrame, public ProgressView {
  Q_OBJECT
  Q_PROPERTY(int minJindu READ minJindu WRITE set_MinJindu)
  Q_PROPERTY(int maxJindu READ maxJindu WRITE set_MaxJindu)
  Q_PROPERTY(int ValueJindu READ ValueJindu WRITE set_ValueJindu)
  Q_PROPERTY(QString tipTxt READ tipTxt WRITE set_TipTxt)
  Q_PROPERTY(bool StopEnabled READ StopEnabled WRITE set_StopEnabled)
  Q_PROPERTY(bool Tingzhi READ Tingzhi)

 public:
  // Hidden until a job begins. Pressing stop also asks the job of `desk` to stop.
  ProgressControl(WindowDesk& desk, QWidget* parent);

  // The ends of the bar. An end that would pass the other one is cut to it.
  [[nodiscard]] int minJindu() const { return minimum_; }
  void set_MinJindu(int minimum);
  [[nodiscard]] int maxJindu() const { return maximum_; }
  void set_MaxJindu(int maximum);
  // Kept as it is set, shown cut to the ends.
  [[nodiscard]] int ValueJindu() const { return value_; }
  void set_ValueJindu(int value);
  [[nodiscard]] QString tipTxt() const { return tip_->text(); }
  void set_TipTxt(const QString& text) { tip_->setText(text); }
  [[nodiscard]] bool StopEnabled() const { return stop_->isEnabled(); }
  void set_StopEnabled(bool enabled) { stop_->setEnabled(enabled); }
  // Whether stop was pressed since the last job began; a pressed button can't be used again.
  [[nodiscard]] bool Tingzhi() const { return stopped_; }

  void begin(std::int64_t maximum, bool can_stop) override;
  void advance(std::int64_t value) override;
  void end() override;

 private:
  void show_Value();
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
