// The funnel at the foot of the condition page: where the tickets start, what each condition takes away, what
// is left behind the filters and behind the shrink.
#pragma once

#include <QLabel>
#include <QWidget>

#include "advice/live_count.hpp"
#include "ui/widgets/funnel_bars.hpp"

namespace lotmere::ui {

class FunnelPane : public QWidget {
  Q_OBJECT

 public:
  explicit FunnelPane(QWidget* parent = nullptr);

  void showResult(const LiveCount::Result& result);
  // A count takes its time; the picture stays until it is there.
  void showCounting();

 Q_SIGNALS:
  // A user chose the bar of a step, "总和值".
  void stepWanted(const QString& name);

 private:
  QLabel* start_;
  FunnelBars* bars_;
  QLabel* end_;
  QLabel* line_;  // liveCount
};

}  // namespace lotmere::ui
