// The main window: places the pages, the menus and the status line.
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QStackedWidget>
#include <QTabBar>

#include "history/status.hpp"
#include "ui/conditions/conditions_page.hpp"
#include "ui/history/history_page.hpp"
#include "ui/main/file_opener.hpp"
#include "ui/main/other_page.hpp"
#include "ui/shell/progress_control.hpp"
#include "ui/shell/session.hpp"
#include "ui/tickets/ticket_page.hpp"

namespace lotmere::ui {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // The pages are filled as the store stands.
  explicit MainWindow(Session& session);

  // In the order of the tab strip; the last one has no tab.
  enum class Page { history, conditions, tickets, other };
  // Brings a page to the front and does what the page needs then.
  void showPage(Page page);
  [[nodiscard]] Page currentPage() const { return page_; }

  // The steps of the start that stand behind the shown window, in their order. False: the program ends, as
  // the user asked for.
  [[nodiscard]] bool chooseMode();
  [[nodiscard]] bool logIn();
  // The counts of the draws follow the intervals, which the login, an older version or a kill may have left
  // behind.
  void recountIntervals();
  // Offers the download where a draw is missing.
  void checkHistory();

  // Asks what to do with files that somebody named; more than one are refused.
  void openFiles(const QStringList& files) { opener_.open(files); }

  // Somebody started the program a second time.
  void comeToFront();

  // Closes without asking.
  void endProgram();
  // The same where the system wants it: behind the command that runs, which is asked to stop, and with the
  // user's settings saved. The desk is ending.
  void endQuietly();

 Q_SIGNALS:
  // The window is to end as endQuietly() does, once the event loop runs.
  void quietEndWanted();

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void addCommands();
  void makeMenus();
  void addConditionMenus();
  void makeTop();
  void makeStatusBar();
  void connectPages();
  void addMenu(const char* name, const QString& title, std::initializer_list<const char*> entries);

  // The same where the user has divided the intervals on the page that they leave, and is told.
  void recountDivided();
  [[nodiscard]] HistoryStatus readStatus();
  void updateStatus();
  void showUser();
  void switchUser();
  void setBusy(bool busy);
  void toggleAppearance();
  void tellAbout();
  void saveStore();
  // Behind a restore the program ends; what is to come is put in place by the start that follows.
  void restoreStore();
  void restoreFrom(const QString& file);
  // The ways of what a file can hold.
  [[nodiscard]] FileWays fileWays();

  Session& session_;
  const QString main_caption_;
  QWidget* body_;
  QTabBar* tabs_;              // pageTabs
  QStackedWidget* pages_;      // pages
  ProgressControl* progress_;  // progress
  HistoryPage* history_;
  ConditionsPage* conditions_;
  TicketPage* tickets_;
  OtherPage* other_;
  FileOpener opener_;
  QMenu* user_menu_ = nullptr;
  QLabel* panels_[3]{};
  QPointer<QWidget> focus_;  // that a job took the focus from
  Page page_ = Page::history;
  bool ending_ = false;        // nothing is asked or saved any more
  bool close_wanted_ = false;  // once the command that runs is over
  bool end_agreed_ = false;    // to the end of the program, while a job ran
};

}  // namespace lotmere::ui
