// The main window (`Form_main`): places the pages, the menus and the status line.
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QStackedWidget>
#include <QTabBar>

#include "ui/conditions_page.hpp"
#include "ui/history_page.hpp"
#include "ui/other_page.hpp"
#include "ui/progress_control.hpp"
#include "ui/session.hpp"
#include "ui/ticket_page.hpp"

namespace lotmere::ui {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // The pages are filled as the store stands.
  explicit MainWindow(Session& session);

  // In the order of the tab strip; the last one has no tab.
  enum class Page { history, conditions, tickets, other };
  // Brings a page to the front and does what the page needs then.
  void show_Page(Page page);
  [[nodiscard]] Page current_Page() const { return page_; }

  // The steps of the start that stand behind the shown window, in their order. False: the program ends, as
  // the person asked for.
  [[nodiscard]] bool choose_Mode();
  [[nodiscard]] bool log_In();
  // The counts of the draws follow the intervals, which the login, an older version or a kill may have left
  // behind.
  void recount_Intervals();
  // Offers the download where a draw is missing.
  void check_History();

  // Closes without asking.
  void end_Program();
  // The same where the system wants it: behind the command that runs, which is asked to stop, and with the user's
  // settings saved. The desk is ending.
  void end_Quietly();

 Q_SIGNALS:
  // The window is to end as end_Quietly() does, once the event loop runs.
  void quiet_EndWanted();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void add_Commands();
  void make_Menus();
  void add_ConditionMenus();
  void make_Top();
  void make_StatusBar();
  void connect_Pages();
  void add_Menu(const char* name, const QString& title, std::initializer_list<const char*> entries);

  // The same where the user has divided the intervals on the page that they leave, and is told.
  void recount_Divided();
  void update_Status();
  void show_User();
  void switch_User();
  void set_Busy(bool busy);
  void toggle_Appearance();
  void save_Store();
  // Behind a restore the program ends; what is to come is put in place by the start that follows.
  void restore_Store();

  Session& session_;
  const QString main_caption_;
  QWidget* body_;
  QTabBar* tabs_;              // TabStrip_Top
  QStackedWidget* pages_;      // Pic_Main
  ProgressControl* progress_;  // myJinDuCTL1
  HistoryPage* history_;
  ConditionsPage* conditions_;
  TicketPage* tickets_;
  OtherPage* other_;
  QMenu* user_menu_ = nullptr;
  QLabel* panels_[3]{};
  QPointer<QWidget> focus_;  // that a job took the focus from
  Page page_ = Page::history;
  bool ending_ = false;        // nothing is asked or saved any more
  bool close_wanted_ = false;  // once the command that runs is over
};

}  // namespace lotmere::ui
