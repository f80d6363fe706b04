#include "ui/conditions/conditions_page.hpp"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

#include "conditions/own_sets.hpp"
#include "panels/pages.hpp"
#include "panels/summary.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {
namespace {

constexpr int kPadWidth = 290;
constexpr int kScrollBar = 14;
constexpr int kListWidth = 400;
constexpr int kCountDelay = 15;    // milliseconds behind a click, which is painted first
constexpr int kCountAgain = 100;   // milliseconds, while a command runs
constexpr int kCountUnseen = 200;  // milliseconds

int tabOfKind(PageKind kind) {
  const auto pages = conditionPages();
  const auto page = std::ranges::find(pages, kind, &ConditionPage::kind);
  return static_cast<int>(page - pages.begin()) + 1;
}

// A condition is called the same in the menu, in the list and on its page.
QString nameOfTab(int tab) {
  const ConditionPage& page = conditionPage(tab);
  return page.conditions.size() == 1 ? shown(page.conditions.front()->name) : shown(page.caption);
}

// A page that can be reached in full on a small screen.
QScrollArea* scrolled(QWidget* page) {
  auto* area = new QScrollArea;
  area->setWidget(page);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  return area;
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
      facts_(session),
      answers_(session.desk),
      make_pane_(std::move(make_pane)),
      sets_(session) {
  count_timer_.setSingleShot(true);
  unseen_timer_.setSingleShot(true);
  unseen_timer_.setInterval(kCountUnseen);
  connect(&unseen_timer_, &QTimer::timeout, this, [this] { funnel_->showCounting(); });
  connect(&count_timer_, &QTimer::timeout, this, &ConditionsPage::countSurvivors);
  connect(&session_.settings, &Settings::changed, this, &ConditionsPage::settingChanged);
  connect(&session_.settings, &Settings::refused, this, &ConditionsPage::showAgain);
  connect(&session_.settings, &Settings::replaced, this, &ConditionsPage::showAgain);
  connect(&session_.commands.runner(), &CommandRunner::begins, this, &ConditionsPage::dropCount);
  connect(&facts_, &ConditionFacts::known, this, &ConditionsPage::factsChanged);
  addCommands();
}

void ConditionsPage::makeContents() {
  pad_ = new NumberPad(session_, this);
  pad_->setFixedWidth(kPadWidth);
  count_ = new QLabel;
  count_->setObjectName(QStringLiteral("pickSummary"));
  pages_ = new QStackedWidget(this);
  pane_ = make_pane_(pages_);
  sheet_ = new ConditionSheetView(session_, clicks_, pane_);
  pane_->setFirstView(sheet_, [this] { sheet_->open(); });
  editors_ = new EditorPage(session_, clicks_, facts_, pages_);
  places_ = new PlacePageView(session_, clicks_, pages_);
  groups_ = new GroupPageView(session_, clicks_, pages_);
  match_ = new MatchPageView(session_, clicks_, pages_);
  shrink_ = new ShrinkPageView(session_, clicks_, pages_);
  back_test_ = new BackTestView(session_, clicks_, pages_);
  connect(back_test_, &BackTestView::drawWanted, this, &ConditionsPage::showDraw);
  summary_ = new QPlainTextEdit;
  summary_->setObjectName(QStringLiteral("settingsSummary"));
  summary_->setReadOnly(true);
  summary_->document()->setDocumentMargin(14);
  for (QWidget* page :
       std::initializer_list<QWidget*>{pane_, places_, groups_, match_, shrink_, back_test_}) {
    QScrollArea* area = scrolled(page);
    areas_[page] = area;
    pages_->addWidget(area);
  }
  for (QWidget* page : std::initializer_list<QWidget*>{editors_, summary_}) pages_->addWidget(page);
  auto* side = new QWidget;
  auto* left = new QVBoxLayout(side);
  left->setContentsMargins(0, 0, 0, 0);
  left->setSpacing(8);
  left->addWidget(pad_, 1);
  left->addWidget(count_);
  left->addStretch();
  makeList();
  funnel_ = new FunnelPane;
  auto* split = new QSplitter;
  split->setObjectName(QStringLiteral("conditionSplitter"));
  split->setChildrenCollapsible(false);
  split->addWidget(list_);
  auto* right = new QWidget;
  auto* column = new QVBoxLayout(right);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(4);
  column->addWidget(makeTools());
  column->addWidget(pages_, 1);
  split->addWidget(right);
  split->setStretchFactor(0, 2);
  split->setStretchFactor(1, 3);
  split->setSizes({kListWidth, 2 * kListWidth});
  auto* middle = new QHBoxLayout;
  middle->setSpacing(6);
  QScrollArea* pad_area = scrolled(side);
  pad_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  pad_area->setFixedWidth(kPadWidth + kScrollBar);
  middle->addWidget(pad_area);
  middle->addWidget(split, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 8, 12, 6);
  layout->setSpacing(8);
  layout->addLayout(middle, 1);
  layout->addWidget(funnel_);
  connect(funnel_, &FunnelPane::stepWanted, this, &ConditionsPage::showStep);
  connect(pad_, &NumberPad::counted, this, [this](const QString& text) { count_->setText(compact(text)); });
}

QWidget* ConditionsPage::makeTools() {
  auto* tools = new QWidget;
  auto* row = new QHBoxLayout(tools);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch();
  row->addWidget(sets_.makeUndoButton());
  auto* sets = new QPushButton(QStringLiteral("方案"));
  sets->setObjectName(QStringLiteral("setsButton"));
  sets->setMenu(sets_.makeMenu(sets));
  row->addWidget(sets);
  back_test_button_ = session_.commands.makeButton("backTestButton", QStringLiteral("回测"),
                                                   session_.commands.action("conditions.backtest"));
  back_test_button_->setCheckable(true);
  row->addWidget(back_test_button_);
  return tools;
}

void ConditionsPage::showBackTest() {
  Q_EMIT wanted();
  back_test_->open();
  pages_->setCurrentWidget(areas_.at(back_test_));
  back_test_button_->setChecked(true);
}

void ConditionsPage::showDraw(const QString& step, int period) {
  showStep(step);
  if (pages_->currentWidget() == editors_) editors_->showDraw(period);
}

void ConditionsPage::factsChanged() {
  if (pages_ == nullptr || !isVisible()) return;
  list_->refresh();
  if (pages_->currentWidget() == editors_) editors_->refresh();
}

void ConditionsPage::switchRow(const ConditionRow& row, bool on) {
  clicks_.change(
      [&](ConditionSet& set) {
        if (row.kind == RowKind::match)
          set.match.used = on;
        else
          set.use(row.condition->usage, on);
      },
      [this] { showFront(); });
}

void ConditionsPage::showStep(const QString& name) {
  const std::string step = utf8(name);
  for (const ConditionGroup& group : conditionGroups())
    for (const ConditionRow& row : group.rows)
      if (row.step == step && isTicked(session_.settings.set(), row))
        return session_.commands.runner().run(
            [&] { showTab(row.tab, row.condition == nullptr ? 0 : row.condition->usage); });
}

void ConditionsPage::settingChanged() {
  if (pages_ == nullptr) return;
  // The other pages are loaded whenever they are shown; the sheet is large and keeps what it has until it is
  // stale.
  if (!isVisible() || pages_->currentWidget() != areas_.at(pane_)) sheet_->markStale();
  if (pages_->currentWidget() == summary_) showTabSettings();
  if (isBackTestShown()) back_test_->open();
  facts_.workOut(editors_->conditions());
  factsChanged();
  count_timer_.start(kCountDelay);
}

void ConditionsPage::showAgain() {
  if (pages_ == nullptr) return;
  pad_->reload();
  showFront();
}

void ConditionsPage::markStale() {
  if (pane_ == nullptr) return;
  facts_.forget();
  sheet_->markStale();
  pane_->markStale();
}

void ConditionsPage::makeList() {
  list_ = new ConditionList(session_, facts_, this);
  connect(list_, &ConditionList::wanted, this, [this](int tab, int usage) {
    session_.commands.runner().run([&] { showTab(tab, usage); });
    markTab();  // a running command has refused it
  });
  connect(list_, &ConditionList::boxClicked, this, &ConditionsPage::switchRow);
}

void ConditionsPage::addCommands() {
  Commands& commands = session_.commands;
  const auto add_tab = [&](const ActionText& text, int tab) {
    commands.add(text, [this, tab] { bringTab(tab); });
  };
  add_tab({"conditions.edit", QStringLiteral("设置条件(&S)..."), QKeySequence(QStringLiteral("Ctrl+T")),
           QStringLiteral("选取号码，设置条件")},
          tabOfKind(PageKind::picks));
  add_tab(
      {"conditions.shrink", QStringLiteral("缩水设置(&K)..."), {}, QStringLiteral("缩水的类型和智能优化")},
      tabOfKind(PageKind::shrink));
  add_tab({"conditions.show", QStringLiteral("查看设置情况(&V)"), QKeySequence(QStringLiteral("Ctrl+L")),
           QStringLiteral("全部设置一览")},
          tabOfKind(PageKind::summary));
  for (int tab = tabOfKind(PageKind::value); tab < tabOfKind(PageKind::shrink); ++tab)
    add_tab({tabCommand(tab).c_str(), nameOfTab(tab)}, tab);
  commands.add({"conditions.backtest",
                QStringLiteral("回测全部条件(&B)"),
                {},
                QStringLiteral("整套条件在最近各期的表现，与随机对照")},
               [this] {
                 if (pages_ != nullptr && isBackTestShown())
                   showTab(tab_, usage_);
                 else
                   showBackTest();
               });
  commands.add(
      {"conditions.reset", QStringLiteral("还原默认值(&H)"), {}, QStringLiteral("全部条件回到默认值")},
      [this] { restoreDefaults(); });
}

void ConditionsPage::showTab(int tab, UsageId usage) {
  tab_ = tab;
  usage_ = usage;
  if (pages_ == nullptr) return;
  markTab();
  loadTab();
}

void ConditionsPage::markTab() { list_->mark(tab_, usage_); }

void ConditionsPage::bringTab(int tab) {
  // The tab that stood there before isn't shown on the way: showing one may store something.
  tab_ = tab;
  usage_ = 0;
  tab_loaded_ = false;
  Q_EMIT wanted();
  markTab();
  if (!tab_loaded_) loadTab();
}

PageKind ConditionsPage::kindOfTab() const { return tab_ == 0 ? PageKind::value : conditionPage(tab_).kind; }

void ConditionsPage::showFront() {
  if (isBackTestShown())
    back_test_->open();
  else
    showTabSettings();
}

void ConditionsPage::showTabSettings() {
  switch (kindOfTab()) {
    case PageKind::picks:
      return sheet_->showSettings();
    case PageKind::places:
      return places_->load();
    case PageKind::groups:
      if (usage_ != 0) groups_->choose(usage_ - usageOfGroup(0));
      return groups_->load();
    case PageKind::history_match:
      return match_->showSettings();
    case PageKind::shrink:
      return shrink_->load();
    case PageKind::summary:
      return summary_->setPlainText(shown(summaryText(session_.settings.set())));
    default:
      editors_->open(tab_, usage_);
      return facts_.workOut(editors_->conditions());
  }
}

QWidget* ConditionsPage::pageOfTab() const {
  switch (kindOfTab()) {
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
      return editors_;
  }
}

bool ConditionsPage::isBackTestShown() const { return pages_->currentWidget() == areas_.at(back_test_); }

void ConditionsPage::loadTab() {
  tab_loaded_ = true;
  back_test_button_->setChecked(false);
  QWidget* page = pageOfTab();
  if (page == pane_)
    pane_->showCurrentView();
  else if (page == match_)
    match_->open();
  else
    showTabSettings();
  const auto area = areas_.find(page);
  pages_->setCurrentWidget(area == areas_.end() ? page : area->second);
}

void ConditionsPage::open() {
  if (pages_ == nullptr) makeContents();
  forgetTickets();
  facts_.forget();
  pad_->open();
  loadTab();
  facts_.workOut(editors_->conditions());
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
                   return [this, result = *result] {
                     unseen_timer_.stop();
                     funnel_->showResult(result);
                     list_->showFunnel(result.funnel);
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
