// The count chart: how often each number came in a span of periods.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QStackedLayout>
#include <QStringListModel>
#include <QWidget>

#include "analysis/counts.hpp"
#include "ui/analysis/count_bars.hpp"
#include "ui/shell/session.hpp"

namespace lotmere::ui {

class CountBars3D;

// The functions that work on the store are to be called inside a command; they throw SQLite::Exception.
class CountChart : public QWidget {
  Q_OBJECT

 public:
  explicit CountChart(Session& session, QWidget* parent = nullptr);

  // The view comes to the front for reds or blues, counted anew.
  void open(BallColour balls);
  // Counts the chosen balls in the chosen span and shows that.
  void showCounts();
  // Offers the stored periods, the newest ten draws chosen; a chart in front is counted anew, any other one
  // when it is opened.
  void loadPeriods();

 Q_SIGNALS:
  // The user goes back to the condition panels, also by a double click on the chart.
  void backWanted();

 private:
  void makeStrip();
  [[nodiscard]] QComboBox* makePeriodList(int index);
  void checkOpenGl();
  void showRows();

  Session& session_;
  ChartPeriods periods_;
  bool periods_known_ = false;
  std::vector<CountRow> rows_;
  QStringListModel* listed_;  // of both period lists
  QWidget* strip_ = nullptr;
  QComboBox* balls_ = nullptr;     // countBalls
  QComboBox* from_ = nullptr;      // countPeriod(0)
  QComboBox* to_ = nullptr;        // countPeriod(1)
  QCheckBox* in_space_ = nullptr;  // inSpace
  QStackedLayout* charts_ = nullptr;
  CountBars* bars_;
  CountBars3D* bars_3d_ = nullptr;  // made when it is asked for
};

}  // namespace lotmere::ui
