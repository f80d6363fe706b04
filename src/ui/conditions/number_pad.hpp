// The number pad: a ball for each red and blue, picked as 拖码 or 胆码 by a click, with the marks of the
// numbers that are unlikely for the coming draw.
#pragma once

#include <QAbstractButton>
#include <QButtonGroup>
#include <QTabBar>
#include <QWidget>

#include "tickets/selection.hpp"
#include "ui/shell/session.hpp"

namespace lotmere::ui {

// One number of the pad.
class PadButton : public QAbstractButton {
  Q_OBJECT

 public:
  // `code` 1 to 33 or 101 to 116.
  explicit PadButton(int code, QWidget* parent = nullptr);

  [[nodiscard]] int code() const { return code_; }
  [[nodiscard]] PickState state() const { return state_; }
  [[nodiscard]] bool isLowChance() const { return low_chance_; }
  void showState(PickState state, bool low_chance);

  [[nodiscard]] QSize sizeHint() const override { return {44, 44}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {32, 32}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int code_;
  PickState state_ = PickState::none;
  bool low_chance_ = false;
};

class NumberPad : public QWidget {
  Q_OBJECT

 public:
  explicit NumberPad(Session& session, QWidget* parent = nullptr);

  // Makes the marks for the coming period and shows them with the selection.
  void open();
  // Shows the selection as it is set.
  void reload();

 Q_SIGNALS:
  // The summary of the selection as it is now.
  void counted(const QString& summary);

 private:
  QWidget* makeHalf(bool blue);
  QWidget* makeLegend();
  void click(int code);
  void clear(bool blue);

  Session& session_;
  QButtonGroup buttons_;
  QTabBar* red_strip_ = nullptr;   // redTabs
  QTabBar* blue_strip_ = nullptr;  // blueTabs
  PeriodNo hint_period_ = 0;       // that the marks were made for
  LowChanceNumbers marked_;        // none before the pad is opened
};

}  // namespace lotmere::ui
