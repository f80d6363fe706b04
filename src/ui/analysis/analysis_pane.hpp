// The area beside the pad (`picTuobiao`): the condition sheet as its first view, the omission analysis or the
// count chart, one at a time.
#pragma once

#include <QPushButton>
#include <QStackedWidget>
#include <QWidget>

#include "analysis/draw_range.hpp"
#include "ui/analysis/count_chart.hpp"
#include "ui/analysis/omission_view.hpp"
#include "ui/shell/session.hpp"
#include "ui/widgets/front_pane.hpp"

namespace lotmere::ui {

class AnalysisPane : public FrontPane {
  Q_OBJECT

 public:
  // Registers the commands of the analyses. Their views are made when they are first asked for.
  explicit AnalysisPane(Session& session, QWidget* parent = nullptr);

  void setFirstView(QWidget* view, std::function<void()> open) override;
  void showCurrentView() override;
  void showFirstView() override;
  void markStale() override { periods_stale_ = true; }

 private:
  void addCommand(const char* name, const QString& text, std::function<void()> open);
  QWidget* makeStrip();
  void showOmission(BallColour balls);
  void showCounts(BallColour balls);
  // The button of the view in front.
  void markButtons();

  Session& session_;
  QStackedWidget* views_;
  QWidget* first_ = nullptr;
  std::function<void()> open_first_;
  OmissionView* omission_ = nullptr;
  CountChart* counts_ = nullptr;
  QList<QPushButton*> buttons_;         // omission and counts of the reds, then of the blues
  BallColour balls_ = BallColour::red;  // that were asked for last
  bool periods_stale_ = false;
};

}  // namespace lotmere::ui
