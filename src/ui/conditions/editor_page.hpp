// The editors of one condition, or of several that belong together.
#pragma once

#include <QGridLayout>
#include <QScrollArea>
#include <vector>

#include "ui/conditions/condition_editor.hpp"

namespace lotmere::ui {

class EditorPage : public QScrollArea {
  Q_OBJECT

 public:
  EditorPage(Session& session, ConditionClicks& clicks, ConditionFacts& facts, QWidget* parent = nullptr);

  // Shows the page of a tab (of the kind value, counts, intervals or shapes) as it is set; with tab 0 the
  // condition of the switch by itself.
  void open(int tab, UsageId usage);
  // The settings or the facts changed.
  void refresh();
  // The numbers of a draw and its values of the conditions that stand here.
  void showDraw(PeriodNo period);
  // What stands on it.
  [[nodiscard]] std::vector<const Condition*> conditions() const;

 protected:
  // Two beside each other where there is room.
  void resizeEvent(QResizeEvent* event) override;

 private:
  Session& session_;
  QGridLayout* grid_;
  std::vector<ConditionEditor*> editors_;
  int columns_ = 2;
};

}  // namespace lotmere::ui
