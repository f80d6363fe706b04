// The area beside the pad (`picTuobiao`): the condition sheet, the omission analysis or the count chart, one at a
// time.
#pragma once

#include <QStackedWidget>
#include <QWidget>

#include "analysis/draw_range.hpp"
#include "ui/condition_sheet.hpp"
#include "ui/count_chart.hpp"
#include "ui/omission_view.hpp"

namespace lotmere::ui {

class AnalysisPane : public QWidget {
  Q_OBJECT

 public:
  // Registers the commands of the analyses. Their views are made when they are first asked for.
  AnalysisPane(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);

  // The pane comes to the front: what stood there is shown as the store stands.
  void showCurrentView();
  // Back to the condition sheet.
  void showSheet();
  [[nodiscard]] ConditionSheetView& sheet() { return *sheet_; }
  // The draws changed: lists of periods and what hangs on draws are made anew when they are next shown.
  void markStale();

 private:
  void addCommand(const char* name, const QString& text, std::function<void()> open);
  QWidget* makeStrip();
  void showOmission(BallColour balls);
  void showCounts(BallColour balls);

  Session& session_;
  QStackedWidget* views_;
  ConditionSheetView* sheet_;
  OmissionView* omission_ = nullptr;
  CountChart* counts_ = nullptr;
  bool periods_stale_ = false;
};

}  // namespace lotmere::ui
