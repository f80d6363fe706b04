#include "ui/main/main_window.hpp"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QScreen>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QVBoxLayout>

#include "history/draw_stats.hpp"
#include "history/status.hpp"
#include "panels/pages.hpp"
#include "start/transfer.hpp"
#include "ui/analysis/analysis_pane.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"
#include "ui/main/help_texts.hpp"
#include "ui/users/first_run_dialog.hpp"
#include "ui/users/login_dialog.hpp"
#include "ui/users/users_dialog.hpp"
#include "users/login.hpp"

namespace lotmere::ui {
namespace {

constexpr int kTabCount = 3;  // that always stand; one more while the other page is in front
constexpr QSize kSize{1240, 780};
constexpr QSize kFrame{16, 48};  // of a window that has its title above it
constexpr const char* kDownloadTip = "正在下载，请稍候．．．";
constexpr const char* kEverythingFilter = "Lotmere 全部数据 (*.lotmere);;全部文件 (*)";

// The text beside the bar while store and profiles are written or read.
class TipScope {
 public:
  explicit TipScope(ProgressControl& control) : control_(control) {
    control_.setTipTxt(QStringLiteral("正在处理，请稍候．．．"));
  }
  TipScope(const TipScope&) = delete;
  TipScope& operator=(const TipScope&) = delete;
  ~TipScope() { control_.setTipTxt(QString::fromUtf8(kDownloadTip)); }

 private:
  ProgressControl& control_;
};

}  // namespace

MainWindow::MainWindow(Session& session)
    : session_(session),
      main_caption_(QStringLiteral("Lotmere 双色球")),
      body_(new QWidget(this)),
      tabs_(new QTabBar(body_)),
      pages_(new QStackedWidget(body_)),
      progress_(nullptr),
      // Made in their place: a widget that moves to another parent is dressed anew with everything in it.
      history_(new HistoryPage(session, pages_)),
      conditions_(new ConditionsPage(
          session, [&session](QWidget* parent) { return new AnalysisPane(session, parent); }, pages_)),
      tickets_(new TicketPage(session, pages_)),
      other_(new OtherPage(session, pages_)),
      opener_(session, *this, fileWays()) {
  setObjectName(QStringLiteral("mainWindow"));
  setWindowTitle(main_caption_);
  if (const QScreen* shown_on = screen(); shown_on != nullptr)
    resize(kSize.boundedTo(shown_on->availableSize() - kFrame));
  session_.desk.setWindow(this);
  pages_->setObjectName(QStringLiteral("pages"));
  for (QWidget* page : {static_cast<QWidget*>(history_), static_cast<QWidget*>(conditions_),
                        static_cast<QWidget*>(tickets_), static_cast<QWidget*>(other_)})
    pages_->addWidget(page);
  history_->setObjectName(QStringLiteral("historyPage"));
  conditions_->setObjectName(QStringLiteral("conditionsPage"));
  tickets_->setObjectName(QStringLiteral("ticketPage"));
  other_->setObjectName(QStringLiteral("otherPage"));
  addCommands();
  makeTop();
  makeMenus();
  makeStatusBar();
  progress_ = new ProgressControl(session_.desk, this);
  progress_->setObjectName(QStringLiteral("progress"));
  progress_->setTipTxt(QString::fromUtf8(kDownloadTip));
  history_->setProgress(*progress_);
  connectPages();
  history_->loadEntry();
  history_->refreshHistoryView();
  updateStatus();
  restoreGeometry(session_.remembered.place());
  qApp->installEventFilter(this);
}

void MainWindow::addCommands() {
  session_.commands.add({"program.exit", QStringLiteral("退出(&X)"), QKeySequence::Quit},
                        [this] { close(); });
  session_.commands.add({"users.switch", QStringLiteral("切换用户(&S)")}, [this] { switchUser(); });
  session_.commands.add({"users.manage", QStringLiteral("密码和用户(&P)...")}, [this] {
    UsersDialog dialog(session_, shown(session_.store.run(currentUser)), this);
    session_.desk.runDialog(dialog);
  });
  session_.commands.add({"help.steps", QStringLiteral("如何使用？(&H)"), QKeySequence::HelpContents},
                        [this] { session_.desk.tell(utf8(stepsText()), Tone::information, "如何使用？"); });
  session_.commands.add({"store.save", QStringLiteral("保存全部数据(&B)...")}, [this] { saveStore(); });
  session_.commands.add({"store.restore", QStringLiteral("读入全部数据(&L)...")}, [this] { restoreStore(); });
  session_.commands.add({"help.about", QStringLiteral("关于(&T)...")}, [this] { tellAbout(); });
  session_.commands.add({"window.look", QStringLiteral("深色／浅色外观(&A)")},
                        [this] { toggleAppearance(); });
}

void MainWindow::saveStore() {
  const QString proposed =
      QStringLiteral("Lotmere-%1.lotmere").arg(QString::fromStdString(formatDate(session_.clock.today())));
  const QString file = session_.desk.chooseNewFile(QStringLiteral("保存全部数据"),
                                                   QString::fromUtf8(kEverythingFilter), proposed);
  if (file.isEmpty()) return;
  const TipScope tip(*progress_);
  const ProgressPlace place(session_.desk, *progress_);
  const Outcome saved = session_.store.run(
      [&](Store& store) { return saveEverything(store, session_.home, session_.desk, file.toStdString()); });
  if (saved == Outcome::done) session_.desk.tell(utf8(QStringLiteral("全部数据已保存到 %1。").arg(file)));
}

void MainWindow::restoreStore() {
  const QString file =
      session_.desk.chooseFile(QStringLiteral("读入全部数据"), QString::fromUtf8(kEverythingFilter));
  if (!file.isEmpty()) restoreFrom(file);
}

FileWays MainWindow::fileWays() {
  return {.draws =
              [this](const QString& file) {
                showPage(Page::history);
                history_->importFile(file);
              },
          .tickets =
              [this](const QString& file, ImportFormat format) {
                showPage(Page::tickets);
                tickets_->importFrom(file, format);
              },
          .conditions = [this](const QString& file) { conditions_->importSet(file); },
          .everything = [this](const QString& file) { restoreFrom(file); }};
}

void MainWindow::restoreFrom(const QString& file) {
  {
    const TipScope tip(*progress_);
    const ProgressPlace place(session_.desk, *progress_);
    const Outcome read = session_.desk.work().run(
        [&] { return prepareRestore(session_.home, session_.desk, file.toStdString()); });
    if (read != Outcome::done) return;
  }
  session_.desk.tell("全部数据已读入，窗口将重新打开。");
  endProgram();
}

void MainWindow::makeTop() {
  tabs_->setObjectName(QStringLiteral("pageTabs"));
  tabs_->setExpanding(false);
  for (const char* caption : {"历史数据", "过滤条件", "投注号码"}) tabs_->addTab(QString::fromUtf8(caption));
  for (int i = 0; i < kTabCount; ++i) tabs_->setTabToolTip(i, QStringLiteral("Alt+%1").arg(i + 1));
  tabs_->setTabVisible(tabs_->addTab(QString()), false);
  QFont large = tabs_->font();
  large.setPointSizeF(large.pointSizeF() + 1.5);
  tabs_->setFont(large);
  auto* top = new QWidget(body_);
  top->setObjectName(QStringLiteral("topStrip"));
  auto* row = new QHBoxLayout(top);
  row->setContentsMargins(12, 4, 12, 0);
  row->addWidget(tabs_);
  row->addStretch();
  row->addWidget(session_.commands.makeButton("draws.openPage", QStringLiteral("详细开奖情况查询"),
                                              session_.commands.action("draws.openPage")));
  row->addWidget(session_.commands.makeButton("stepsButton", QStringLiteral("如何使用？"),
                                              session_.commands.action("help.steps")));
  auto* column = new QVBoxLayout(body_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(top);
  column->addWidget(pages_, 1);
  setCentralWidget(body_);
}

void MainWindow::addMenu(const char* name, const QString& title, std::initializer_list<const char*> entries) {
  QMenu* menu = menuBar()->addMenu(title);
  menu->setObjectName(QString::fromUtf8(name));
  for (const char* entry : entries) {
    if (entry == nullptr)
      menu->addSeparator();
    else
      menu->addAction(session_.commands.action(entry));
  }
}

void MainWindow::makeMenus() {
  addMenu("fileMenu", QStringLiteral("文件(&F)"), {"file.open", nullptr, "program.exit"});
  addMenu("editMenu", QStringLiteral("编辑(&I)"), {"conditions.undo", "conditions.redo"});
  addMenu("drawMenu", QStringLiteral("1.历史数据(&D)"),
          {"draws.download", "draws.import", "draws.paste", "draws.enter", nullptr, "draws.showTrend",
           "draws.showData", nullptr, "draws.showAll", "draws.showLatest", nullptr, "draws.listAddress",
           "draws.pageAddress"});
  addMenu("conditionMenu", QStringLiteral("2.过滤条件(&T)"),
          {"conditions.edit", "conditions.shrink", nullptr, "conditions.backtest", nullptr,
           "conditions.reset", "conditions.show"});
  addConditionMenus();
  addMenu("ticketMenu", QStringLiteral("3.生成投注号(&N)"),
          {"tickets.init", "tickets.run", "tickets.generate", nullptr, "tickets.undo", "tickets.redo",
           nullptr, "tickets.export", "tickets.import", nullptr, "tickets.clear", "tickets.check"});
  addMenu("otherMenu", QStringLiteral("其它(&E)"),
          {"intervals.divide", "help.rules", "help.definitions", nullptr, "store.save", "store.restore",
           nullptr, "window.look", "help.steps", "help.about"});
  addMenu("userMenu", QStringLiteral("用户(&U)"), {"users.switch", "users.manage"});
  user_menu_ = findChild<QMenu*>(QStringLiteral("userMenu"));
}

void MainWindow::addConditionMenus() {
  auto* menu = findChild<QMenu*>(QStringLiteral("conditionMenu"));
  QAction* before = session_.commands.action("conditions.shrink");
  QMenu* group = nullptr;
  PageKind kind = PageKind::picks;
  menu->insertMenu(before, conditions_->makeSetMenu(menu));
  const auto pages = conditionPages();
  for (int tab = 1; tab <= static_cast<int>(pages.size()); ++tab) {
    const ConditionPage& page = pages[static_cast<std::size_t>(tab - 1)];
    if (page.kind == PageKind::picks || page.kind == PageKind::shrink || page.kind == PageKind::summary)
      continue;
    // Long series have a menu of their own.
    if (page.kind != kind) {
      group = page.kind == PageKind::value    ? new QMenu(QStringLiteral("数值条件"), menu)
              : page.kind == PageKind::counts ? new QMenu(QStringLiteral("个数条件"), menu)
              : page.kind == PageKind::shapes ? new QMenu(QStringLiteral("组合形式"), menu)
                                              : nullptr;
      if (group != nullptr) menu->insertMenu(before, group);
    }
    kind = page.kind;
    QAction* action = session_.commands.action(ConditionsPage::tabCommand(tab).c_str());
    if (group != nullptr)
      group->addAction(action);
    else
      menu->insertAction(before, action);
  }
}

void MainWindow::makeStatusBar() {
  statusBar()->setObjectName(QStringLiteral("statusBar"));
  statusBar()->setSizeGripEnabled(false);
  for (int i = 0; i < 3; ++i) {
    panels_[i] = new QLabel;
    panels_[i]->setObjectName(QStringLiteral("statusPanel.%1").arg(i + 1));
    panels_[i]->setTextFormat(Qt::PlainText);
    // The passing messages of the middle one take the room that there is.
    if (i == 1) panels_[i]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar()->addWidget(panels_[i], i == 1 ? 1 : 0);
  }
}

void MainWindow::connectPages() {
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    session_.commands.runner().run([this, index] { showPage(static_cast<Page>(index)); });
    // Refused while a command runs: the strip goes on showing where the user is.
    const QSignalBlocker quiet(tabs_);
    tabs_->setCurrentIndex(static_cast<int>(page_));
  });
  for (int i = 0; i < kTabCount; ++i) {
    auto* go = session_.commands.add({("page." + std::to_string(i + 1)).c_str(), tabs_->tabText(i),
                                      QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + i))},
                                     [this, i] { showPage(static_cast<Page>(i)); });
    addAction(go);
  }
  connect(history_, &HistoryPage::wanted, this, [this] { showPage(Page::history); });
  connect(conditions_, &ConditionsPage::wanted, this, [this] { showPage(Page::conditions); });
  connect(tickets_, &TicketPage::wanted, this, [this] { showPage(Page::tickets); });
  connect(other_, &OtherPage::wanted, this, [this] { showPage(Page::other); });
  connect(other_, &OtherPage::intervalsChanged, conditions_, &ConditionsPage::markStale);
  connect(tickets_, &TicketPage::numbersWanted, this, [this] {
    conditions_->showPad();
    showPage(Page::conditions);
  });
  connect(conditions_, &ConditionsPage::defaultsRestored, this, [this] {
    showPage(Page::history);
    recountIntervals();
  });
  connect(&session_.settings, &Settings::replaced, this, [this] {
    conditions_->markStale();
    recountIntervals();
  });
  connect(history_, &HistoryPage::historyChanged, this, [this] {
    updateStatus();
    conditions_->markStale();
  });
  connect(this, &MainWindow::quietEndWanted, this, &MainWindow::endQuietly, Qt::QueuedConnection);
  connect(&session_.desk, &WindowDesk::jobBegun, this, [this] { setBusy(true); });
  connect(&session_.desk, &WindowDesk::jobEnded, this, [this] { setBusy(false); });
  connect(&session_.desk, &WindowDesk::statusChanged, panels_[1], &QLabel::setText);
  connect(
      &session_.commands.runner(), &CommandRunner::finished, this,
      [this] {
        // The next command may have begun meanwhile.
        if (!session_.commands.runner().isRunning() && std::exchange(close_wanted_, false)) close();
      },
      Qt::QueuedConnection);
}

void MainWindow::showPage(Page page) {
  {
    const QSignalBlocker quiet(tabs_);
    constexpr int other = static_cast<int>(Page::other);
    if (page == Page::other) tabs_->setTabText(other, other_->title());
    tabs_->setTabVisible(other, page == Page::other);
    tabs_->setCurrentIndex(static_cast<int>(page));
  }
  if (page == page_) return;
  const Page left = std::exchange(page_, page);
  pages_->setCurrentIndex(static_cast<int>(page));
  if (page == Page::conditions) conditions_->open();
  if (page == Page::tickets) tickets_->refreshTickets();
  if (left == Page::other) recountDivided();
}

void MainWindow::recountDivided() {
  const auto recount = [this](Store& store) { return lotmere::recountDivided(store, session_.desk); };
  if (session_.store.run(recount)) history_->refreshHistoryView();
}

void MainWindow::recountIntervals() {
  const auto recount = [this](Store& store) { return recountDue(store, session_.desk); };
  if (session_.store.run(recount)) history_->refreshHistoryView();
}

HistoryStatus MainWindow::readStatus() {
  return session_.store.run([today = session_.clock.today(), date = session_.entry_date](Store& store) {
    return updateHistoryStatus(store, today, date);
  });
}

void MainWindow::updateStatus() {
  const HistoryStatus status = readStatus();
  panels_[0]->setText(shown(status.history));
  panels_[0]->setToolTip(shown(status.missing));
  panels_[2]->setText(shown(status.next_draw));
  QPalette palette = panels_[0]->palette();
  palette.setColor(QPalette::WindowText, status.incomplete ? colours().warning : colours().good);
  panels_[0]->setPalette(palette);
}

bool MainWindow::chooseMode() {
  if (session_.store.run(userMode) == UserMode::unchosen) {
    FirstRunDialog dialog(this);
    if (!session_.desk.runDialog(dialog)) return false;
    session_.store.run([mode = dialog.mode()](Store& store) { return chooseUserMode(store, mode); });
  }
  user_menu_->menuAction()->setVisible(session_.store.run(userMode) == UserMode::multi);
  return true;
}

bool MainWindow::logIn() {
  if (session_.store.run(userMode) != UserMode::multi) return true;
  LoginDialog dialog(session_, this);
  if (!session_.desk.runDialog(dialog)) return false;
  showUser();
  return true;
}

void MainWindow::showUser() {
  session_.settings.reload();
  setWindowTitle(shown(userCaption(session_.store.run(currentUser), utf8(main_caption_))));
  tickets_->refreshTickets();
  conditions_->markStale();
}

void MainWindow::switchUser() {
  if (asUser(session_, saveCurrentUser) != Outcome::done) return;
  LoginDialog dialog(session_, this);
  if (!session_.desk.runDialog(dialog)) {
    if (dialog.programEnds()) endProgram();
    return;
  }
  showUser();
  showPage(Page::history);
  recountIntervals();
}

void MainWindow::checkHistory() {
  updateStatus();
  if (ending_ || !readStatus().outdated) return;
  session_.commands.runner().run([this] { history_->offerDraws(); });
}

void MainWindow::setBusy(bool busy) {
  if (busy) focus_ = QApplication::focusWidget();
  session_.commands.setBusy(busy);
  tabs_->setEnabled(!busy);
  if (!busy && focus_ != nullptr && focus_->isVisible()) focus_->setFocus();
}

void MainWindow::toggleAppearance() {
  applyAppearance(*qApp, currentAppearance() == Appearance::light ? Appearance::dark : Appearance::light);
  session_.remembered.setLook(currentAppearance());
  updateStatus();
}

void MainWindow::tellAbout() {
  const QString text =
      QStringLiteral(
          "Lotmere 双色球 %1\r\n\r\n双色球选号、过滤、缩水工具。\r\n自由软件，许可证是 GPL 第 3 "
          "版或更新的版本。\r\n\r\n"
          "数据所在的文件夹：\r\n%2")
          .arg(QApplication::applicationVersion(), QString::fromStdString(session_.home.folder.string()));
  session_.desk.tell(utf8(text), Tone::information, "关于");
}

void MainWindow::comeToFront() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

// A field would take Ctrl+E for a key of its own, which leads to the end of its line.
bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_E && key->modifiers() == Qt::ControlModifier) {
      event->ignore();
      return true;
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

void MainWindow::endProgram() {
  ending_ = true;
  close_wanted_ = session_.commands.runner().isRunning();
  if (!close_wanted_) close();
}

void MainWindow::endQuietly() {
  close_wanted_ = session_.commands.runner().isRunning();
  if (!close_wanted_) close();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  // The question comes first: the job goes on meanwhile, and where the user stays. Else it ends at its next
  // block and stores what it keeps.
  CommandRunner& runner = session_.commands.runner();
  if (!ending_ && runner.isRunning()) {
    event->ignore();
    if (!session_.desk.jobRunning()) {
      close_wanted_ = true;
    } else if (!close_wanted_ && session_.desk.ask(kExitQuestion)) {
      close_wanted_ = end_agreed_ = true;
      if (session_.desk.jobRunning()) session_.desk.course().requestStop();
    }
    return;
  }
  if (!ending_)
    runner.run([this] {
      runGuarded(session_.desk, [this] { recountDivided(); });
      const bool asks = !session_.desk.isEnding() && !end_agreed_;
      if (!asks) asUser(session_, leaveProgram);
      ending_ = !asks || asUser(session_, exitProgram) == Outcome::done;
    });
  event->setAccepted(ending_);
  if (!ending_) return;
  session_.remembered.setPlace(saveGeometry());
  history_->remember();
}

}  // namespace lotmere::ui
