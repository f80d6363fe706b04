// The condition sheet: most conditions at once on one page that scrolls.
#pragma once

#include <QComboBox>
#include <QGridLayout>
#include <QScrollArea>
#include <array>
#include <deque>

#include "panels/combination_list.hpp"
#include "panels/own_pages.hpp"
#include "panels/sheet.hpp"
#include "ui/conditions/condition_clicks.hpp"
#include "ui/conditions/panel_box.hpp"
#include "ui/widgets/number_picker.hpp"

namespace lotmere::ui {

class ConditionSheetView : public QScrollArea {
  Q_OBJECT

 public:
  // Empty until it is reloaded.
  ConditionSheetView(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);

  // Everything on it is shown anew at the next open(): draws, settings or the user changed.
  void markStale() { stale_ = true; }
  // The sheet comes to the front.
  void open();
  // Shows the settings again on a sheet that isn't stale.
  void showSettings();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void panelReload();
  void showPanels();
  // A heading, and cells in as many columns as find room.
  struct Section {
    QGridLayout* grid;
    std::vector<QWidget*> cells;
  };
  Section& addSection(const QString& title);
  void place(Section& section);
  PanelBox* addPanel(Section& section, const QString& list, const QString& box, const Condition& condition,
                     std::function<void()> show = {});
  void useTurns(const std::vector<int>& turns, bool used);
  void makeSlots();
  void makeCombinations();
  void makeDivisions();
  void showSlotTip(int slot);
  void buildCombinations();
  void showCombinations();
  void showDivision();
  void pickNumbers(int place);

  Session& session_;
  ConditionClicks& clicks_;
  QWidget* page_;  // conditionSheet
  std::deque<Section> sections_;
  int columns_ = 0;
  std::array<PanelBox*, kSlotCount> slots_{};  // slot 1 is empty
  std::array<PanelBox*, kIntervalCount> intervals_{};
  std::array<PanelBox*, 4> relatives_{};
  std::array<PanelBox*, 2> heat_{};
  std::array<PanelBox*, kTurnCount> shapes_{};
  CheckList* combinations_ = nullptr;  // combinationDraws
  QComboBox* periods_ = nullptr;       // combinationPeriods
  std::array<PanelBox*, kLargestDivision> division_{};
  std::array<QPushButton*, kLargestDivision> pickers_{};
  CombinationTexts combination_texts_;  // of the draw chosen
  std::vector<DivisionPanel> division_panels_;
  int shown_division_ = kSmallestDivision;
  NumberPicker* picker_;
  bool stale_ = true;
};

}  // namespace lotmere::ui
