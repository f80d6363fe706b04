#include "ui/conditions/conditions_page.hpp"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "conditions/own_sets.hpp"
#include "panels/pages.hpp"
#include "panels/summary.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {
namespace {

constexpr int kPadWidth = 330;
constexpr int kTabsWidth = 138;
constexpr int kCountDelay = 15;    // milliseconds behind a click, which is painted first
constexpr int kCountAgain = 100;   // milliseconds, while a command runs
constexpr int kCountUnseen = 200;  // milliseconds

int tabOfKind(PageKind kind) {
  const auto pages = conditionPages();
  const auto page = std::ranges::find(pages, kind, &ConditionPage::kind);
  return static_cast<int>(page - pages.begin()) + 1;
}

// The count of the picked numbers under the pad, without the empty lines of the text.
QString compact(const QString& text) {
  return text.trimmed().replace(QStringLiteral("\n\n"), QStringLiteral("\n"));
}

}  // namespace

ConditionsPage::ConditionsPage(Session& session, MakePane make_pane, QWidget* parent)
    : QWidget(parent),
      session_(session),
      clicks_(session),
      answers_(session.desk),
      make_pane_(std::move(make_pane)) {
  count_timer_.setSingleShot(true);
  unseen_timer_.setSingleShot(true);
  unseen_timer_.setInterval(kCountUnseen);
  connect(&unseen_timer_, &QTimer::timeout, this, [this] { survivors_->setText(shown(kCountingText)); });
  connect(&count_timer_, &QTimer::timeout, this, &ConditionsPage::countSurvivors);
  connect(&session_.settings, &Settings::changed, this, &ConditionsPage::settingChanged);
  connect(&session_.settings, &Settings::refused, this, &ConditionsPage::showAgain);
  connect(&session_.commands.runner(), &CommandRunner::begins, this, &ConditionsPage::dropCount);
  addCommands();
}

void ConditionsPage::makeContents() {
  pad_ = new NumberPad(session_, this);
  pad_->setFixedWidth(kPadWidth);
  count_ = new QLabel;
  count_->setObjectName(QStringLiteral("Text_ChoseNumberTip"));
  pages_ = new QStackedWidget(this);
  pane_ = make_pane_(pages_);
  sheet_ = new ConditionSheetView(session_, clicks_, pane_);
  pane_->setFirstView(sheet_, [this] { sheet_->open(); });
  panels_ = new PanelPage(session_, clicks_, pages_);
  places_ = new PlacePageView(session_, clicks_, pages_);
  groups_ = new GroupPageView(session_, clicks_, pages_);
  match_ = new MatchPageView(session_, clicks_, pages_);
  shrink_ = new ShrinkPageView(session_, clicks_, pages_);
  summary_ = new QPlainTextEdit;
  summary_->setObjectName(QStringLiteral("Text_TiaoJianList"));
  summary_->setReadOnly(true);
  summary_->document()->setDocumentMargin(14);
  for (QWidget* page :
       std::initializer_list<QWidget*>{pane_, panels_, places_, groups_, match_, shrink_, summary_})
    pages_->addWidget(page);
  auto* left = new QVBoxLayout;
  left->setSpacing(8);
  left->addWidget(pad_, 1);
  left->addWidget(count_);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->setSpacing(12);
  layout->addLayout(left);
  layout->addWidget(makeTabs());
  survivors_ = new QLabel;
  survivors_->setObjectName(QStringLiteral("Label_liveCount"));
  auto* right = new QVBoxLayout;
  right->setSpacing(8);
  right->addWidget(pages_, 1);
  right->addWidget(survivors_);
  layout->addLayout(right, 1);
  connect(pad_, &NumberPad::counted, this, [this](const QString& text) { count_->setText(compact(text)); });
}

void ConditionsPage::settingChanged() {
  if (pages_ == nullptr) return;
  // The other pages are loaded whenever they are shown; the sheet is large and keeps what it has until it is
  // stale.
  if (!isVisible() || pages_->currentWidget() != pane_) sheet_->markStale();
  if (pages_->currentWidget() == summary_) showTabSettings();
  count_timer_.start(kCountDelay);
}

void ConditionsPage::showAgain() {
  if (pages_ == nullptr) return;
  pad_->reload();
  showTabSettings();
}

void ConditionsPage::markStale() {
  if (pane_ == nullptr) return;
  sheet_->markStale();
  pane_->markStale();
}

QWidget* ConditionsPage::makeTabs() {
  QStringList captions;
  for (const ConditionPage& page : conditionPages()) captions.append(shown(page.caption));
  captions_.setStringList(captions);
  tabs_ = new QListView(this);
  tabs_->setObjectName(QStringLiteral("TabStrip_TiaoJian"));
  tabs_->setModel(&captions_);
  tabs_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tabs_->setFixedWidth(kTabsWidth);
  tabs_->setSpacing(2);
  tabs_->setAccessibleName(QStringLiteral("过滤条件"));
  tabs_->setCurrentIndex(captions_.index(0));
  connect(tabs_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& index) {
            session_.commands.runner().run([this, &index] { showTab(index.row() + 1); });
            markTab();  // a running command has refused it
          });
  return tabs_;
}

void ConditionsPage::addCommands() {
  Commands& commands = session_.commands;
  const auto add_tab = [&](const ActionText& text, int tab) {
    commands.add(text, [this, tab] { bringTab(tab); });
  };
  add_tab({"mnu_TiaojianChoseNumber", QStringLiteral("设置条件(&S)..."),
           QKeySequence(QStringLiteral("Ctrl+T")), QStringLiteral("选取号码，设置条件")},
          tabOfKind(PageKind::picks));
  add_tab(
      {"mnu_TiaojianShuosui", QStringLiteral("缩水设置(&K)..."), {}, QStringLiteral("缩水的类型和智能优化")},
      tabOfKind(PageKind::shrink));
  add_tab({"mnu_TiaojianView", QStringLiteral("查看设置情况(&V)"), QKeySequence(QStringLiteral("Ctrl+L")),
           QStringLiteral("全部设置一览")},
          tabOfKind(PageKind::summary));
  for (int tab = tabOfKind(PageKind::value); tab < tabOfKind(PageKind::shrink); ++tab)
    add_tab({tabCommand(tab).c_str(), shown(conditionPage(tab).caption)}, tab);
  commands.add({"huanyuan", QStringLiteral("还原默认值(&H)"), {}, QStringLiteral("全部条件回到默认值")},
               [this] { restoreDefaults(); });
}

void ConditionsPage::showTab(int tab) {
  tab_ = tab;
  if (pages_ == nullptr) return;
  markTab();
  loadTab();
}

void ConditionsPage::markTab() {
  const QSignalBlocker quiet(tabs_->selectionModel());
  tabs_->setCurrentIndex(captions_.index(tab_ - 1));
  tabs_->viewport()->update();
}

void ConditionsPage::bringTab(int tab) {
  // The tab that stood there before isn't shown on the way: showing one may store something.
  tab_ = tab;
  tab_loaded_ = false;
  Q_EMIT wanted();
  markTab();
  if (!tab_loaded_) loadTab();
}

void ConditionsPage::showTabSettings() {
  switch (conditionPage(tab_).kind) {
    case PageKind::picks:
      return sheet_->showSettings();
    case PageKind::places:
      return places_->load();
    case PageKind::groups:
      return groups_->load();
    case PageKind::history_match:
      return match_->showSettings();
    case PageKind::shrink:
      return shrink_->load();
    case PageKind::summary:
      return summary_->setPlainText(shown(summaryText(session_.settings.set())));
    default:
      return panels_->open(tab_);
  }
}

QWidget* ConditionsPage::pageOfTab() const {
  switch (conditionPage(tab_).kind) {
    case PageKind::picks:
      return pane_;
    case PageKind::places:
      return places_;
    case PageKind::groups:
      return groups_;
    case PageKind::history_match:
      return match_;
    case PageKind::shrink:
      return shrink_;
    case PageKind::summary:
      return summary_;
    default:
      return panels_;
  }
}

void ConditionsPage::loadTab() {
  tab_loaded_ = true;
  QWidget* page = pageOfTab();
  if (page == pane_)
    pane_->showCurrentView();
  else if (page == match_)
    match_->open();
  else
    showTabSettings();
  pages_->setCurrentWidget(page);
}

void ConditionsPage::open() {
  if (pages_ == nullptr) makeContents();
  forgetTickets();
  pad_->open();
  loadTab();
  count_timer_.start(kCountDelay);
}

void ConditionsPage::forgetCount() {
  unseen_timer_.stop();
  answers_.drop();
}

void ConditionsPage::forgetTickets() {
  forgetCount();
  table_ = std::make_shared<Table>();
}

void ConditionsPage::dropCount() {
  if (!answers_.isBusy()) return;
  forgetCount();
  count_timer_.start(kCountDelay);
}

void ConditionsPage::countSurvivors() {
  if (!isVisible()) return forgetCount();
  if (session_.commands.runner().isRunning()) return count_timer_.start(kCountAgain);
  if (!unseen_timer_.isActive()) unseen_timer_.start();
  const auto read = [table = table_, date = session_.entry_date](Store& store, Course& course) {
    if (!table->read) {
      table->tickets = loadLiveTickets(store, [&] { return course.stopRequested(); });
      table->read = !course.stopRequested();
    }
    return LiveCount::Question{table->tickets, {}, loadDrawTable(store), nextPeriod(store, date)};
  };
  answers_.ask(session_.store,
               [this, read, set = session_.settings.set(), live = live_](
                   Store& store, Course& reading) -> AnswerThread::Question {
                 LiveCount::Question question = read(store, reading);
                 question.set = set;
                 return [this, live, question = std::move(question)](Course& course) -> AnswerThread::Answer {
                   const auto result = live->count(question, course);
                   if (!result) return {};
                   return [this, text = liveText(*result)] {
                     unseen_timer_.stop();
                     survivors_->setText(shown(text));
                   };
                 };
               });
}

void ConditionsPage::restoreDefaults() {
  if (!agreesToDefaults(session_.desk)) return;
  bringTab(1);
  if (!session_.settings.restoreDefaults()) return;
  markStale();
  pane_->showFirstView();
  pad_->reload();
  session_.desk.tell("完成，过滤条件已经还原为默认值！");
  Q_EMIT defaultsRestored();
}

}  // namespace lotmere::ui
