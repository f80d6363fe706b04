// The pages of `TabStrip_TiaoJian` that show one or several lists: single conditions, pairs of counts, the
// four intervals, shapes. One page serves all tabs of its kinds.
#pragma once

#include <QLabel>
#include <QWidget>
#include <vector>

#include "panels/pages.hpp"
#include "ui/conditions/condition_clicks.hpp"

namespace lotmere::ui {

class PanelPage : public QWidget {
  Q_OBJECT

 public:
  PanelPage(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);

  // Shows the page of a tab (1 to 44) as it is set. Its kind is value, counts, intervals or shapes.
  void open(int tab);

 private:
  void showPanels(const std::vector<ConditionPanel>& panels);

  Session& session_;
  ConditionClicks& clicks_;
  std::vector<PanelBox*> panels_;
  QLabel* tip_;
};

}  // namespace lotmere::ui
