// The omission analysis: how long each number stayed away, up to a chosen period.
#pragma once

#include <QComboBox>
#include <QWidget>

#include "analysis/omission.hpp"
#include "ui/analysis/omission_chart.hpp"
#include "ui/shell/job_bar.hpp"
#include "ui/shell/session.hpp"

namespace lotmere::ui {

// The functions that work on the store are to be called inside a command; they throw SQLite::Exception.
class OmissionView : public QWidget {
  Q_OBJECT

 public:
  explicit OmissionView(Session& session, QWidget* parent = nullptr);

  // The view comes to the front for reds or blues, analysed anew.
  void open(BallColour balls);
  // Analyses the chosen balls up to the chosen period, which writes work columns, and shows the figures. What
  // can't be analysed is told and leaves the page as it was.
  void showOmission();
  // Offers the newest periods, the newest one chosen; what is shown stays until showOmission().
  void loadOmissionPeriods();

 Q_SIGNALS:
  // The user goes back to the condition panels.
  void backWanted();

 private:
  void makeStrip();
  QWidget* makeLegend();
  void analyseChoice();
  // Puts the lists on what the chart shows.
  [[nodiscard]] std::optional<PeriodNo> chosenPeriod();
  void showChoice();
  void tellReport(int number);

  Session& session_;
  QWidget* strip_ = nullptr;
  QComboBox* balls_ = nullptr;   // omissionBalls
  QComboBox* period_ = nullptr;  // omissionPeriod
  OmissionChart* chart_;
  JobBar* bar_;
};

}  // namespace lotmere::ui
