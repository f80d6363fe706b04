#include "ui/history/history_page.hpp"

#include <fmt/ranges.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QHBoxLayout>
#include <QLocale>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <limits>

#include "analysis/distribution.hpp"
#include "analysis/trend.hpp"
#include "base/text.hpp"
#include "catalogue/draw_columns.hpp"
#include "history/curl_fetcher.hpp"
#include "history/detail.hpp"
#include "history/download.hpp"
#include "history/draw_import.hpp"
#include "history/export_sheet.hpp"
#include "history/search.hpp"
#include "history/upkeep.hpp"
#include "store/periods.hpp"
#include "store/schema.hpp"
#include "ui/history/list_hint.hpp"
#include "ui/history/paste_dialog.hpp"
#include "ui/look/text.hpp"
#include "ui/shell/written_file.hpp"
#include "ui/widgets/flow_layout.hpp"

namespace lotmere::ui {
namespace {

constexpr int kMargin = 12;
constexpr int kSpacing = 8;
const QString kSpan = QStringLiteral("history span");

constexpr PeriodRange kEveryPeriod{std::numeric_limits<PeriodNo>::min(),
                                   std::numeric_limits<PeriodNo>::max()};

}  // namespace

HistoryPage::HistoryPage(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  makeMenuCommands();
  makeCommands();
  bar_ = new JobBar(session.desk, "distributionProgress", this);
  download_view_ = bar_;
  strip_ = new EntryStrip(session, this);
  const Commands& commands = session.commands;
  strip_->addButton(
      commands.makeButton("draws.add", QStringLiteral("添加记录"), commands.action("draws.add")));
  strip_->addButton(
      commands.makeButton("downloadButton", QStringLiteral("下载记录"), commands.action("draws.download")));
  strip_->addButton(commands.makeButton("importDrawsButton", QStringLiteral("导入文件..."),
                                        commands.action("draws.import")));
  strip_->addButton(commands.makeButton("pasteDrawsButton", QStringLiteral("粘贴开奖号码..."),
                                        commands.action("draws.paste")));
  connect(strip_, &EntryStrip::completed, commands.action("draws.add"), &QAction::trigger);
  makeOptions();
  makeViews();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kSpacing);
  layout->addWidget(strip_);
  layout->addLayout(placeTools());
  layout->addWidget(views_, 1);
  followRuns();
}

// Commands that stand in the menu show the page first.
void HistoryPage::makeMenuCommands() {
  const auto add = [this](const ActionText& text, std::function<void()> handler) {
    QAction* action = session_.commands.add(text, [this, handler = std::move(handler)] {
      Q_EMIT wanted();
      handler();
    });
    addAction(action);
    return action;
  };
  add({"draws.download", QStringLiteral("下载最新开奖数据(&L)"), Qt::CTRL | Qt::Key_D,
       QStringLiteral("从网上下载最新的开奖记录")},
      [this] { download(); });
  add({"draws.enter", QStringLiteral("手工录入开奖数据(&I)"), Qt::CTRL | Qt::Key_I,
       QStringLiteral("手工录入一期开奖号码")},
      [this] {
        session_.desk.tell("请输入开奖号码,然后点击“添加记录”");
        strip_->focusNumber(1);
      });
  add({"draws.import",
       QStringLiteral("导入文件(&F)..."),
       {},
       QStringLiteral("从文本或 CSV 文件导入开奖记录，每行有期号、日期和号码")},
      [this] { importDraws(); });
  QAction* paste = add({"draws.paste", QStringLiteral("粘贴开奖号码(&V)..."), QKeySequence::Paste,
                        QStringLiteral("把复制来的开奖号码存入历史记录，存入前先看读到了什么")},
                       [this] { pasteDraws(); });
  // Elsewhere the keys paste into a field.
  paste->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  const auto add_choice = [&](const ActionText& text, const std::function<void()>& handler) {
    add(text, handler)->setCheckable(true);
  };
  add_choice(
      {"draws.showTrend", QStringLiteral("图表模式显示(&T)"), Qt::Key_F6, QStringLiteral("显示号码分布")},
      [this] { showMode(1); });
  add_choice({"draws.showData", QStringLiteral("数据模式显示(&S)"), Qt::Key_F5,
              QStringLiteral("显示开奖记录和各项统计")},
             [this] { showMode(0); });
  add_choice(
      {"draws.showAll", QStringLiteral("显示全部记录(&A)"), Qt::Key_F8, QStringLiteral("显示全部开奖记录")},
      [this] { showSpan(1); });
  add_choice({"draws.showLatest", QStringLiteral("只显示最近100期(&R)"), Qt::Key_F7,
              QStringLiteral("只显示最近100期")},
             [this] { showSpan(0); });
  add({"draws.listAddress", QStringLiteral("下载地址(&U)..."), {}, QStringLiteral("设置开奖数据的下载地址")},
      [this] { changeStored(AddressUse::draw_list); });
  add({"draws.pageAddress",
       QStringLiteral("开奖页面网址(&P)..."),
       {},
       QStringLiteral("设置详细开奖页面的网址")},
      [this] { changeStored(AddressUse::detail_page); });
}

void HistoryPage::changeStored(AddressUse use) {
  session_.store.run([&](Store& store) { return changeAddress(store, session_.desk, use); });
}

void HistoryPage::makeCommands() {
  const auto add = [this](const ActionText& text, std::function<void()> handler) {
    addAction(session_.commands.add(text, std::move(handler)));
  };
  add({"draws.add", QStringLiteral("添加记录"), Qt::CTRL | Qt::Key_Return,
       QStringLiteral("保存录入的开奖号码")},
      [this] { addDraw(); });
  add({"draws.delete", QStringLiteral("删除"), Qt::CTRL | Qt::Key_Delete, QStringLiteral("删除一期开奖记录")},
      [this] { removeDraw(); });
  add({"removeSelected", QStringLiteral("删除这一期(&D)..."), QKeySequence::Delete,
       QStringLiteral("删除选中的一期开奖记录")},
      [this] { removeSelected(); });
  // The key of the grid alone.
  removeAction(session_.commands.action("removeSelected"));
  session_.commands.action("removeSelected")->setShortcutContext(Qt::WidgetShortcut);
  add({"searchButton", QStringLiteral("搜索记录"), Qt::CTRL | Qt::Key_F,
       QStringLiteral("在表头下的空白行输入条件，再按一次查找；在条件栏中按回车键也可")},
      [this] { promptSearch(); });
  session_.commands.action("searchButton")
      ->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_F), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F)});
  add({"clearFilter", QStringLiteral("清空查找"), Qt::CTRL | Qt::SHIFT | Qt::Key_X,
       QStringLiteral("清空条件，回到原来的记录")},
      [this] { clearFilter(); });
  add({"draws.export", QStringLiteral("导出"), Qt::CTRL | Qt::Key_E,
       QStringLiteral("把全部开奖记录导出为表格文件")},
      [this] { exportHistory(); });
  add({"draws.openPage", QStringLiteral("详细开奖情况查询"), Qt::CTRL | Qt::Key_K,
       QStringLiteral("在浏览器中查看一期的开奖详情")},
      [this] { queryDetail(); });
}

void HistoryPage::makeOptions() {
  const auto make_group = [this](const char* name, const std::pair<QString, const char*>(&choices)[2]) {
    auto* group = new QButtonGroup(this);
    for (int i = 0; i < 2; ++i) {
      auto* option = new QRadioButton(choices[i].first, this);
      option->setObjectName(QStringLiteral("%1.%2").arg(QString::fromUtf8(name)).arg(i));
      QAction* action = session_.commands.action(choices[i].second);
      option->setToolTip(QStringLiteral("%1（%2）")
                             .arg(action->toolTip(), action->shortcut().toString(QKeySequence::NativeText)));
      connect(option, &QRadioButton::clicked, action, &QAction::trigger);
      // Whatever was triggered or refused, the entry shows what the option is.
      const auto follow = [action, option] { action->setChecked(option->isChecked()); };
      connect(option, &QRadioButton::toggled, action, follow);
      connect(action, &QAction::triggered, action, follow);
      group->addButton(option, i);
    }
    group->button(0)->setChecked(true);
    return group;
  };
  modes_ = make_group("historyMode", {{QStringLiteral("数据"), "draws.showData"},
                                      {QStringLiteral("图表"), "draws.showTrend"}});
  spans_ = make_group("historySpan", {{QStringLiteral("最近100期"), "draws.showLatest"},
                                      {QStringLiteral("显示全部"), "draws.showAll"}});
  spans_->button(session_.remembered.choice(kSpan, 2))->setChecked(true);
}

void HistoryPage::remember() {
  session_.remembered.setChoice(kSpan, spans_->checkedId());
  QList<int> widths;
  for (int column = 0; column < model_.columnCount(); ++column) widths.append(grid_->columnWidth(column));
  session_.remembered.setColumns(grid_->objectName(), widths);
}

void HistoryPage::makeViews() {
  views_ = new QStackedWidget(this);
  grid_ = new FrozenGrid(model_, kIdentityColumns, views_);
  grid_->setObjectName(QStringLiteral("historyGrid"));
  const QList<int> widths = session_.remembered.columns(grid_->objectName());
  const bool known = widths.size() == model_.columnCount();
  for (int column = 0; column < model_.columnCount(); ++column) {
    const int width = known ? widths[column] : 0;
    grid_->setColumnWidth(column, width > 0 ? width : model_.columnWidth(column, fontMetrics()));
    if (HistoryModel::isWorkColumn(column)) grid_->hideColumn(column);
  }
  connect(grid_, &FrozenGrid::filterSubmitted, this,
          [this] { session_.commands.runner().run([this] { search(); }); });
  for (EndTable* pane : {&grid_->left(), &grid_->right()}) {
    connect(pane, &RowTable::copied, &session_.desk, &WindowDesk::statusChanged);
    pane->addRowActions(session_.commands.actions({"removeSelected", "draws.openPage"}));
    pane->addRowActions(session_.commands.actions({"draws.paste", "draws.import", "draws.export"}));
  }
  distribution_ = new DistributionGrid(views_);
  connect(distribution_, &RowTable::copied, &session_.desk, &WindowDesk::statusChanged);
  distribution_->addRowActions(session_.commands.actions({"draws.openPage", "draws.export"}));
  grid_->setAccessibleName(QStringLiteral("开奖记录"));
  distribution_->setAccessibleName(QStringLiteral("号码分布"));
  empty_ = new QLabel(QStringLiteral("还没有开奖记录，请下载、导入文件、粘贴或手工添加。"));
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setEnabled(false);
  for (QWidget* view :
       {static_cast<QWidget*>(grid_), static_cast<QWidget*>(distribution_), static_cast<QWidget*>(empty_)})
    views_->addWidget(view);
}

QLayout* HistoryPage::placeTools() {
  auto* row = new FlowLayout(kSpacing);
  const auto add_options = [this, row](const QString& caption, const QButtonGroup* group) {
    auto* choice = new QWidget(this);
    auto* line = new QHBoxLayout(choice);
    line->setContentsMargins(0, 0, 2 * kSpacing, 0);
    line->setSpacing(kSpacing);
    line->addWidget(new QLabel(caption));
    for (QAbstractButton* option : group->buttons()) line->addWidget(option);
    row->addWidget(choice);
  };
  add_options(QStringLiteral("数据模式"), modes_);
  add_options(QStringLiteral("数据显示"), spans_);
  for (const char* name : {"searchButton", "clearFilter", "draws.delete", "draws.export"}) {
    QAction* action = session_.commands.action(name);
    row->addWidget(session_.commands.makeButton(name, action->text(), action));
  }
  row->addWidget(makeExtras());
  row->addWidget(bar_);
  return row;
}

// What the chart can show beside the balls; in sight with it.
QWidget* HistoryPage::makeExtras() {
  extras_ = new QWidget(this);
  auto* line = new QHBoxLayout(extras_);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(kSpacing);
  const auto add_box = [&](const char* name, const QString& caption, const QString& tip) {
    auto* box = new QCheckBox(caption);
    box->setObjectName(QString::fromUtf8(name));
    box->setToolTip(tip);
    line->addWidget(box);
    return box;
  };
  auto* gaps = add_box("trendGaps", QStringLiteral("遗漏"), QStringLiteral("空格里写出已有多少期没有出现"));
  auto* joined = add_box("trendLine", QStringLiteral("蓝球连线"), QStringLiteral("用线连接各期的蓝球"));
  auto* foot = add_box("trendFoot", QStringLiteral("统计"),
                       QStringLiteral("表的末尾列出各号码的出现次数、平均遗漏、最大遗漏和最大连出"));
  auto* statistic = new QComboBox;
  statistic->setObjectName(QStringLiteral("trendStatistic"));
  statistic->setAccessibleName(QStringLiteral("号码旁边的统计项"));
  statistic->addItem(QStringLiteral("不加统计项"));
  for (const TrendStatistic& one : trendStatistics()) statistic->addItem(shown(one.name));
  line->addWidget(statistic);
  const auto show = [this, gaps, joined, foot, statistic] {
    distribution_->setExtras({.gaps = gaps->isChecked(),
                              .line = joined->isChecked(),
                              .foot = foot->isChecked(),
                              .statistic = statistic->currentIndex() - 1});
  };
  for (const QCheckBox* box : {gaps, joined, foot}) connect(box, &QCheckBox::toggled, this, show);
  connect(statistic, &QComboBox::currentIndexChanged, this, show);
  extras_->setVisible(false);
  return extras_;
}

void HistoryPage::followRuns() {
  const auto set_options = [this](bool enabled) {
    for (const QButtonGroup* group : {modes_, spans_})
      for (QAbstractButton* option : group->buttons()) option->setEnabled(enabled);
  };
  connect(&session_.desk, &WindowDesk::jobBegun, this, [set_options] { set_options(false); });
  connect(&session_.desk, &WindowDesk::jobEnded, this, [set_options] { set_options(true); });
}

void HistoryPage::showMode(int mode) {
  modes_->button(mode)->setChecked(true);
  refreshHistoryView();
}

void HistoryPage::showSpan(int span) {
  spans_->button(span)->setChecked(true);
  refreshHistoryView();
}

void HistoryPage::refreshHistoryView() {
  const ProgressPlace place(session_.desk, *bar_);
  grid_->clearFilters();
  session_.desk.showStatus({});
  extras_->setVisible(showsChart());
  if (showsChart())
    showDistribution();
  else
    fillHistoryGrid();
}

void HistoryPage::fillHistoryGrid() {
  const auto span = spans_->checkedId() == 0 ? HistorySpan::recent : HistorySpan::all;
  const int column = grid_->currentColumn();
  const int rows = model_.show(session_.store.run(
      [&](Store& store) { return HistoryModel::read(store, loadHistoryRows(store, span)); }));
  views_->setCurrentWidget(rows > 0 ? static_cast<QWidget*>(grid_) : empty_);
  grid_->showEnd(column);
}

void HistoryPage::showDistribution() {
  const auto span = spans_->checkedId() == 0 ? DistributionSpan::recent : DistributionSpan::all;
  auto [rows, table] = session_.store.run([&](Store& store) {
    const PeriodNo latest = latestPeriod(store);
    const auto built = buildHaoMaFenBu(store, session_.desk, latest, span);
    auto trend = trendOf(loadDrawTable(store), latest, static_cast<std::size_t>(built));
    return std::pair(built, std::pair(loadDistribution(store), std::move(trend)));
  });
  views_->setCurrentWidget(rows > 0 ? static_cast<QWidget*>(distribution_) : empty_);
  distribution_->showRows(std::move(table.first), std::move(table.second));
}

void HistoryPage::loadEntry() {
  strip_->setDate(session_.store.run(
      [today = session_.clock.today()](Store& store) { return upcomingDrawDate(store, today); }));
  strip_->setPeriod(session_.nextPeriod());
}

void HistoryPage::addDraw() {
  const ProgressPlace place(session_.desk, *bar_);
  const CheckedEntry checked = checkManualEntry(strip_->entry());
  strip_->showCounted(checked.counted);
  if (!checked.numbers || !checked.period) {
    if (checked.numbers)
      static_cast<void>(readPeriod(session_.desk, strip_->entry().period));
    else
      session_.desk.tell("输入有误或不完整,请核对后重新输入!", Tone::error);
    // The first red that wasn't read, or the blue behind them; the period where these are right.
    strip_->focusNumber(checked.numbers ? 0 : static_cast<int>(checked.counted.size()) + 1);
    strip_->slide();
    return;
  }
  const Outcome outcome = session_.store.run([&, date = strip_->date()](Store& store) {
    return enterDraw(store, session_.desk, *checked.period, date, *checked.numbers);
  });
  if (outcome != Outcome::done) return strip_->focusNumber(0);
  loadEntry();
  strip_->clearNumbers();
  strip_->focusNumber(1);
  refreshHistoryView();
  Q_EMIT historyChanged();
}

void HistoryPage::showCame(PeriodNo before) {
  loadEntry();
  refreshHistoryView();
  const int rows = model_.rowCount();
  int first = rows;
  while (first > 0 && model_.period(first - 1) > before) --first;
  // All of them tell nothing.
  if (first > 0) grid_->selectFrom(first);
  Q_EMIT historyChanged();
}

void HistoryPage::offerDraws() {
  const std::string question = "开奖记录不是最新的，是否需要更新到最新的数据．．．";
  if (model_.rowCount() > 0) {
    if (session_.desk.ask(question)) download();
    return;
  }
  constexpr std::string_view buttons[] = {"下载", "导入文件...", "粘贴开奖号码...", "以后再说"};
  const std::string hint = utf8(listHint());
  switch (session_.desk.choose(
      fmt::format("{0}{1}{1}也可以从文件导入，或粘贴从别处复制来的号码。{2}", question, kLineBreak, hint),
      buttons, 3)) {
    case 0:
      return download();
    case 1:
      return importDraws();
    case 2:
      return pasteDraws();
    default:
      return;
  }
}

void HistoryPage::download() {
  const ProgressPlace place(session_.desk, *download_view_);
  const auto fetcher = makeCurlFetcher(session_.desk.course());
  const auto address = session_.store.run(
      [&](Store& store) { return knownAddress(store, session_.desk, AddressUse::draw_list, list_typed_); });
  if (!address) return;
  const auto [before, result] = session_.store.run([&, today = session_.clock.today()](Store& store) {
    const PeriodNo newest = latestPeriod(store);
    return std::pair(newest, downloadAll(store, session_.desk, *fetcher, *address, today));
  });
  if (result.outcome != Outcome::done) return tellFailure(session_.desk, result);
  showCame(before);
  session_.desk.tell(fmt::format("{}", fmt::join(reportLines(result), kLineBreak)));
}

void HistoryPage::importDraws() {
  const QString file =
      session_.desk.chooseFile(QStringLiteral("从文件导入开奖数据"), QStringLiteral("*.txt *.csv;;*"));
  if (!file.isEmpty()) importFile(file);
}

void HistoryPage::importFile(const QString& file) {
  storeList([&, today = session_.clock.today()](Store& store) {
    return lotmere::importDraws(store, session_.desk, QFile::encodeName(file).toStdString(), today);
  });
}

void HistoryPage::pasteDraws() {
  PasteDialog dialog(QApplication::clipboard()->text(), session_.clock.today(), this);
  if (!session_.desk.runDialog(dialog)) return;
  storeList([&, text = utf8(dialog.text()), today = session_.clock.today()](Store& store) {
    return importDrawText(store, session_.desk, text, today);
  });
}

void HistoryPage::storeList(const std::function<DrawImport(Store&)>& import) {
  const ProgressPlace place(session_.desk, *download_view_);
  const auto [before, result] = session_.store.run([&](Store& store) {
    const PeriodNo newest = latestPeriod(store);
    return std::pair(newest, import(store));
  });
  if (result.outcome != Outcome::done) return tellNoImport(session_.desk, result);
  showCame(before);
  session_.desk.tell(fmt::format("{}", fmt::join(importReport(result), kLineBreak)));
}

void HistoryPage::removeDraw() {
  const auto chosen = grid_->selectedRows();
  const bool one = !showsChart() && chosen.size() == 1;
  const auto typed = session_.desk.askText(
      "您要删除哪期的记录？", "请输入期号",
      std::to_string(one ? model_.period(chosen.front()) : session_.store.run(latestPeriod)));
  if (typed) removeTyped(*typed);
}

void HistoryPage::removeSelected() {
  const auto chosen = grid_->selectedRows();
  if (chosen.size() != 1) return session_.desk.showStatus("请先在表格中选中要删除的一期。");
  removeTyped(std::to_string(model_.period(chosen.front())));
}

void HistoryPage::removeTyped(const std::string& typed) {
  const ProgressPlace place(session_.desk, *bar_);
  const std::string_view done = showsChart() ? "删除完成，将重新加载数据。" : "删除完成！";
  const Outcome outcome =
      session_.store.run([&](Store& store) { return deleteDraw(store, session_.desk, typed, done); });
  if (outcome != Outcome::done) return;
  refreshHistoryView();
  loadEntry();
  Q_EMIT historyChanged();
}

void HistoryPage::promptSearch() {
  if (showsChart()) showMode(0);
  for (int column = 0; column < model_.columnCount(); ++column)
    if (!grid_->filter(column).isEmpty()) return search();
  session_.desk.showStatus("请在表格中最顶一行空白处相应项目栏输入条件值，然后点击“搜索”按钮！");
  grid_->focusFilter();
}

void HistoryPage::search() {
  // A number that the grid shows as 05 is stored as 5.
  static const QRegularExpression ball(QStringLiteral("^0(?=[1-9])"));
  std::vector<ColumnFilter> filters;
  for (int column = 0; column < model_.columnCount(); ++column) {
    QString text = grid_->filter(column);
    if (HistoryModel::isNumberOfDraw(column)) text.remove(ball);
    if (!text.isEmpty()) filters.push_back({drawColumns()[column].name, utf8(text)});
  }
  const auto condition = buildSearchWhere(session_.desk, filters);
  const int column = grid_->currentColumn();
  const bool asks = condition && !condition->where.empty();
  int found = 0;
  try {
    if (asks)
      found = model_.show(session_.store.run(
          [&](Store& store) { return HistoryModel::read(store, kEveryPeriod, *condition); }));
  } catch (...) {
    grid_->clearFilters();  // what the store refuses doesn't stand there to be asked again
    throw;
  }
  if (found != 0) {
    session_.desk.showStatus(utf8(QStringLiteral("找到 %1 期").arg(QLocale().toString(found))));
    return grid_->showEnd(column);
  }
  // Boxes that ask for nothing, or for what no draw has, lead back to the rows that the options name; what no
  // draw has stays in the boxes to be corrected.
  if (!asks) return refreshHistoryView();
  fillHistoryGrid();
  session_.desk.tell("没有符合条件的记录。", Tone::warning);
}

void HistoryPage::clearFilter() { refreshHistoryView(); }

void HistoryPage::exportHistory() {
  if (model_.rowCount() == 0 && session_.store.run(latestPeriod) == 0)
    return session_.desk.tell("历史记录是空的，没有可导出的数据。", Tone::warning);
  const QString path = chooseTarget(session_.desk, QStringLiteral("导出开奖记录"),
                                    QStringLiteral("表格文件 (*.xlsx);;CSV 文件 (*.csv)"),
                                    QStringLiteral("LotmereHistory.xlsx"));
  if (path.isEmpty()) return;
  const ProgressPlace place(session_.desk, *bar_);
  const Exported written = session_.store.run([&](Store& store) {
    return lotmere::exportHistory(store, session_.desk, QFile::encodeName(path).toStdString());
  });
  if (written.outcome != Outcome::done) return;
  tellWritten(session_.desk, QStringLiteral("已导出 %1 期到 %2").arg(QLocale().toString(written.rows), path),
              path);
}

void HistoryPage::queryDetail() {
  const ProgressPlace place(session_.desk, *bar_);
  const auto fetcher = makeCurlFetcher(session_.desk.course());
  const auto address = session_.store.run(
      [&](Store& store) { return queryDetailPage(store, session_.desk, *fetcher, page_typed_); });
  if (!address) return;
  open(QUrl(shown(*address)),
       QStringLiteral("无法打开浏览器，网页的地址是：\r\n%1").arg(shown(shownAddress(*address))));
}

void HistoryPage::open(const QUrl& url, const QString& elsewhere) {
  if (!session_.desk.openOutside(url)) session_.desk.tell(utf8(elsewhere));
}

}  // namespace lotmere::ui
