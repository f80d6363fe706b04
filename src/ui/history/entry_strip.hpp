// The strip in which a draw is typed by hand.
#pragma once

#include <QDateEdit>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <array>
#include <vector>

#include "history/entry.hpp"
#include "ui/shell/session.hpp"

namespace lotmere::ui {

class EntryStrip : public QWidget {
  Q_OBJECT

 public:
  // The date field is the session's entry date, at once and at every change. While a job runs the strip can't
  // be used.
  explicit EntryStrip(Session& session, QWidget* parent = nullptr);

  // Puts a button behind the boxes.
  void addButton(QWidget* button);

  [[nodiscard]] DrawEntry entry() const;
  [[nodiscard]] Date date() const;
  void setDate(Date date);
  void setPeriod(PeriodNo period);
  // Shows the reds that were read in the first boxes. What a box behind them holds stays to be corrected,
  // unless it is one of these reds.
  void showCounted(const std::vector<int>& reds);
  // Empties the boxes of the numbers.
  void clearNumbers();
  // 0 for the period, 1 to 6 for the reds, 7 for the blue.
  void focusNumber(int box);
  // The frame comes in from the left, to show that it wants another look; then the period is proposed anew.
  void slide();

 Q_SIGNALS:
  // Enter in the last box.
  void completed();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void place();
  void makeBoxes();
  void colourNumbers();
  void followJobs();
  void slideOn();

  Session& session_;
  QWidget* frame_;
  QDateEdit* date_;
  std::array<QLineEdit*, 8> boxes_{};  // 0 the period, 1 to 6 the reds, 7 the blue
  int moved_to_ = 0;  // the box that the second digit of the one before led to, until something is typed
  QTimer timer_;
  QPointer<QWidget> focused_;  // had the focus when a job began
};

}  // namespace lotmere::ui
