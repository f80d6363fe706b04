// The condition page: the number pad, and beside it everything that can be set.
#pragma once

#include <QLabel>
#include <QPlainTextEdit>
#include <QStackedWidget>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "advice/live_count.hpp"
#include "panels/pages.hpp"
#include "ui/conditions/backtest_view.hpp"
#include "ui/conditions/condition_clicks.hpp"
#include "ui/conditions/condition_facts.hpp"
#include "ui/conditions/condition_list.hpp"
#include "ui/conditions/condition_sheet.hpp"
#include "ui/conditions/editor_page.hpp"
#include "ui/conditions/funnel_pane.hpp"
#include "ui/conditions/group_page.hpp"
#include "ui/conditions/match_page.hpp"
#include "ui/conditions/number_pad.hpp"
#include "ui/conditions/place_page.hpp"
#include "ui/conditions/set_tools.hpp"
#include "ui/conditions/shrink_page.hpp"
#include "ui/shell/answer_thread.hpp"
#include "ui/shell/session.hpp"
#include "ui/widgets/front_pane.hpp"

namespace lotmere::ui {

class ConditionsPage : public QWidget {
  Q_OBJECT

 public:
  // Makes the pane beside the pad, whose first view is the condition sheet.
  using MakePane = std::function<FrontPane*(QWidget* parent)>;

  // Registers its commands, one for each of its pages among them. What stands on it is made when it first
  // comes to the front, so that it costs the start nothing.
  ConditionsPage(Session& session, MakePane make_pane, QWidget* parent = nullptr);

  // The page comes to the front: the marks for the coming draw are made, everything is shown as it is stored.
  void open();
  // Stands the user before the number pad.
  void showPad() { showTab(1); }
  // The settings, the user or the draws changed elsewhere.
  void markStale();

  // The menu of the sets with names.
  [[nodiscard]] QMenu* makeSetMenu(QWidget* menu_parent) { return sets_.makeMenu(menu_parent); }

  // Keeps the set of a file under a name.
  void importSet(const QString& file) { sets_.importFile(file); }

  // The commands of the pages of single conditions, by tab, for the menus.
  [[nodiscard]] static std::string tabCommand(int tab) { return "conditions.page." + std::to_string(tab); }

 Q_SIGNALS:
  // A menu command asks for this page to stand in front.
  void wanted();
  void defaultsRestored();

 private:
  void addCommands();
  void makeContents();
  void makeList();
  // Undo, sets and back-test over the pages.
  QWidget* makeTools();
  void showBackTest();
  // A draw in the editor of a condition that it failed.
  void showDraw(const QString& step, int period);
  // Shows the page of a tab, 1 to 44, with the condition of a switch in front (0: any); the editor of that
  // condition alone with tab 0.
  void showTab(int tab, UsageId usage = 0);
  // The list shows which row is in front.
  void markTab();
  // The same as a command that may be given from another page.
  void bringTab(int tab);
  void loadTab();
  [[nodiscard]] PageKind kindOfTab() const;
  [[nodiscard]] bool isBackTestShown() const;
  [[nodiscard]] QWidget* pageOfTab() const;
  void showTabSettings();
  void showFront();
  // A change was refused.
  void showAgain();
  void restoreDefaults();
  void settingChanged();
  // What is told about the conditions changed.
  void factsChanged();
  // A box of the list was clicked.
  void switchRow(const ConditionRow& row, bool on);
  // The page of the condition of a step of the funnel.
  void showStep(const QString& name);
  // Asks for the count; the tickets of the table are read once, by the first.
  void countSurvivors();
  // What the count under way rests on is about to change: it is dropped, and taken anew behind that.
  void dropCount();
  // Ends what is under way.
  void forgetCount();
  // The tickets changed, or may have.
  void forgetTickets();

  Session& session_;
  ConditionClicks clicks_;
  ConditionFacts facts_;
  QTimer count_timer_;   // counts once the clicks of one moment are over
  QTimer unseen_timer_;  // a count that takes longer says that it is under way
  // The tickets of the table as they were read; the work thread alone looks into it.
  struct Table {
    bool read = false;
    std::shared_ptr<const LiveTickets> tickets;
  };
  std::shared_ptr<Table> table_ = std::make_shared<Table>();
  std::shared_ptr<LiveCount> live_ = std::make_shared<LiveCount>();  // only the thread below works on it
  AnswerThread answers_;
  NumberPad* pad_ = nullptr;
  FunnelPane* funnel_ = nullptr;
  QLabel* count_ = nullptr;  // pickSummary
  ConditionList* list_ = nullptr;
  BackTestView* back_test_ = nullptr;
  QPushButton* back_test_button_ = nullptr;
  QStackedWidget* pages_ = nullptr;
  std::map<QWidget*, QWidget*> areas_;  // of the pages that scroll
  MakePane make_pane_;
  SetTools sets_;
  FrontPane* pane_ = nullptr;
  ConditionSheetView* sheet_ = nullptr;
  EditorPage* editors_ = nullptr;
  PlacePageView* places_ = nullptr;
  GroupPageView* groups_ = nullptr;
  MatchPageView* match_ = nullptr;
  ShrinkPageView* shrink_ = nullptr;
  QPlainTextEdit* summary_ = nullptr;  // settingsSummary
  int tab_ = 1;
  UsageId usage_ = 0;
  bool tab_loaded_ = false;  // since the tab was last chosen by a command
};

}  // namespace lotmere::ui
