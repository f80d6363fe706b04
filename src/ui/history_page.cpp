#include "ui/history_page.hpp"

#include <QHBoxLayout>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <limits>

#include "analysis/distribution.hpp"
#include "core/draw_columns.hpp"
#include "core/periods.hpp"
#include "core/schema.hpp"
#include "core/text.hpp"
#include "history/addresses.hpp"
#include "history/curl_fetcher.hpp"
#include "history/detail.hpp"
#include "history/download.hpp"
#include "history/export_sheet.hpp"
#include "history/search.hpp"
#include "history/upkeep.hpp"
#include "ui/text.hpp"

namespace lotmere::ui {
namespace {

constexpr int kMargin = 12;
constexpr int kSpacing = 8;

constexpr PeriodRange kEveryPeriod{std::numeric_limits<PeriodNo>::min(),
                                   std::numeric_limits<PeriodNo>::max()};

}  // namespace

HistoryPage::HistoryPage(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  make_MenuCommands();
  make_Commands();
  bar_ = new JobBar(session.desk, "ProgressBar_TuBiao", this);
  download_View_ = bar_;
  strip_ = new EntryStrip(session, this);
  const Commands& commands = session.commands;
  strip_->add_Button(commands.make_Button("cmmUpdateHistory_0", QStringLiteral("添加记录"),
                                          commands.action("cmmUpdateHistory_0")));
  strip_->add_Button(commands.make_Button("cmmUpdateHistory_1", QStringLiteral("下载记录"),
                                          commands.action("mnu_AutoUpdate")));
  connect(strip_, &EntryStrip::completed, commands.action("cmmUpdateHistory_0"), &QAction::trigger);
  make_Options();
  make_Views();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kSpacing);
  layout->addWidget(strip_);
  layout->addLayout(place_Tools());
  layout->addWidget(views_, 1);
  follow_Runs();
}

// Commands that stand in the menu show the page first.
void HistoryPage::make_MenuCommands() {
  const auto add = [this](const ActionText& text, std::function<void()> handler) {
    QAction* action = session_.commands.add(text, [this, handler = std::move(handler)] {
      Q_EMIT wanted();
      handler();
    });
    addAction(action);
    return action;
  };
  add({"mnu_AutoUpdate", QStringLiteral("下载最新开奖数据(&L)"), Qt::CTRL | Qt::Key_D,
       QStringLiteral("从网上下载最新的开奖记录")},
      [this] { download(); });
  add({"mnu_InputKaiJian", QStringLiteral("手工录入开奖数据(&I)"), Qt::CTRL | Qt::Key_I,
       QStringLiteral("手工录入一期开奖号码")},
      [this] {
        session_.desk.tell("请输入开奖号码,然后点击“添加记录”");
        strip_->focus_Number(1);
      });
  const auto add_Choice = [&](const ActionText& text, const std::function<void()>& handler) {
    add(text, handler)->setCheckable(true);
  };
  add_Choice(
      {"mnu_HistoryTubiao", QStringLiteral("图表模式显示(&T)"), Qt::Key_F6, QStringLiteral("显示号码分布")},
      [this] { show_Mode(1); });
  add_Choice({"mnu_HistoryData", QStringLiteral("数据模式显示(&S)"), Qt::Key_F5,
              QStringLiteral("显示开奖记录和各项统计")},
             [this] { show_Mode(0); });
  add_Choice({"mnu_HistoryShowAll", QStringLiteral("显示全部记录(&A)"), Qt::Key_F8,
              QStringLiteral("显示全部开奖记录")},
             [this] { show_Span(1); });
  add_Choice({"mnu_HistoryShow100", QStringLiteral("只显示最近100期(&R)"), Qt::Key_F7,
              QStringLiteral("只显示最近100期")},
             [this] { show_Span(0); });
  add({"mnu_DownloadAddress",
       QStringLiteral("下载地址(&U)..."),
       {},
       QStringLiteral("设置开奖数据的下载地址")},
      [this] { change_Address(session_.store, session_.desk, AddressUse::draw_list); });
  add({"mnu_DetailAddress",
       QStringLiteral("开奖页面网址(&P)..."),
       {},
       QStringLiteral("设置详细开奖页面的网址")},
      [this] { change_Address(session_.store, session_.desk, AddressUse::detail_page); });
}

void HistoryPage::make_Commands() {
  const auto add = [this](const ActionText& text, std::function<void()> handler) {
    addAction(session_.commands.add(text, std::move(handler)));
  };
  add({"cmmUpdateHistory_0", QStringLiteral("添加记录"), Qt::CTRL | Qt::Key_Return,
       QStringLiteral("保存录入的开奖号码")},
      [this] { add_Draw(); });
  add({"cmm_scls", QStringLiteral("删除"), Qt::CTRL | Qt::Key_Delete, QStringLiteral("删除一期开奖记录")},
      [this] { remove_Draw(); });
  add({"CmmSousuo", QStringLiteral("搜索记录"), Qt::CTRL | Qt::Key_F,
       QStringLiteral("在表头下的空白行输入条件查找记录")},
      [this] { prompt_Search(); });
  add({"filterBegin", QStringLiteral("搜 索"), Qt::CTRL | Qt::SHIFT | Qt::Key_F,
       QStringLiteral("按输入的条件查找，在条件栏中按回车键也可")},
      [this] { search(); });
  add({"cmdClearFilter", QStringLiteral("清空查找"), Qt::CTRL | Qt::SHIFT | Qt::Key_X,
       QStringLiteral("清空条件，回到原来的记录")},
      [this] { clear_Filter(); });
  add({"cmm_Daocu", QStringLiteral("导出"), Qt::CTRL | Qt::Key_E,
       QStringLiteral("把全部开奖记录导出为表格文件")},
      [this] { export_History(); });
  add({"cmm_kjqk", QStringLiteral("详细开奖情况查询"), Qt::CTRL | Qt::Key_K,
       QStringLiteral("在浏览器中查看一期的开奖详情")},
      [this] { query_Detail(); });
}

void HistoryPage::make_Options() {
  const auto make_Group = [this](const char* name, const std::pair<QString, const char*>(&choices)[2]) {
    auto* group = new QButtonGroup(this);
    for (int i = 0; i < 2; ++i) {
      auto* option = new QRadioButton(choices[i].first, this);
      option->setObjectName(QStringLiteral("%1_%2").arg(QString::fromUtf8(name)).arg(i));
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
  modes_ = make_Group("Option_TorD", {{QStringLiteral("数据"), "mnu_HistoryData"},
                                      {QStringLiteral("图表"), "mnu_HistoryTubiao"}});
  spans_ = make_Group("OptionHistoryMode", {{QStringLiteral("最近100期"), "mnu_HistoryShow100"},
                                            {QStringLiteral("显示全部"), "mnu_HistoryShowAll"}});
}

void HistoryPage::make_Views() {
  views_ = new QStackedWidget(this);
  grid_ = new FrozenGrid(model_, kIdentityColumns, views_);
  grid_->setObjectName(QStringLiteral("TDBGridHistory"));
  for (int column = 0; column < model_.columnCount(); ++column) {
    grid_->set_ColumnWidth(column, model_.column_Width(column, fontMetrics()));
    if (HistoryModel::is_WorkColumn(column)) grid_->hide_Column(column);
  }
  connect(grid_, &FrozenGrid::filter_Edited, this, [this] {
    filter_Edited_ = true;
    session_.commands.action("filterBegin")->setEnabled(true);
  });
  connect(grid_, &FrozenGrid::filter_Submitted, session_.commands.action("filterBegin"), &QAction::trigger);
  distribution_ = new DistributionGrid(views_);
  grid_->setAccessibleName(QStringLiteral("开奖记录"));
  distribution_->setAccessibleName(QStringLiteral("号码分布"));
  empty_ = new QLabel(QStringLiteral("还没有开奖记录，请下载或手工添加。"));
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setEnabled(false);
  for (QWidget* view :
       {static_cast<QWidget*>(grid_), static_cast<QWidget*>(distribution_), static_cast<QWidget*>(empty_)})
    views_->addWidget(view);
}

QLayout* HistoryPage::place_Tools() {
  auto* row = new QHBoxLayout;
  row->setSpacing(kSpacing);
  const auto add_Options = [row](const QString& caption, const QButtonGroup* group) {
    row->addWidget(new QLabel(caption));
    for (QAbstractButton* option : group->buttons()) row->addWidget(option);
    row->addSpacing(2 * kSpacing);
  };
  add_Options(QStringLiteral("数据模式"), modes_);
  add_Options(QStringLiteral("数据显示"), spans_);
  row->addStretch();
  row->addWidget(bar_);
  for (const char* name : {"CmmSousuo", "filterBegin", "cmdClearFilter", "cmm_scls", "cmm_Daocu"}) {
    QAction* action = session_.commands.action(name);
    row->addWidget(session_.commands.make_Button(name, action->text(), action));
  }
  return row;
}

// Whoever disables the commands while a job runs may enable this one with the others.
void HistoryPage::follow_Runs() {
  const auto set_FilterBegin = [this] {
    session_.commands.action("filterBegin")->setEnabled(filter_Edited_);
  };
  set_FilterBegin();
  connect(&session_.commands.runner(), &CommandRunner::finished, this, set_FilterBegin, Qt::QueuedConnection);
  const auto set_Options = [this](bool enabled) {
    for (const QButtonGroup* group : {modes_, spans_})
      for (QAbstractButton* option : group->buttons()) option->setEnabled(enabled);
  };
  connect(&session_.desk, &WindowDesk::job_Begun, this, [set_Options] { set_Options(false); });
  connect(&session_.desk, &WindowDesk::job_Ended, this, [set_Options] { set_Options(true); });
}

void HistoryPage::show_Mode(int mode) {
  modes_->button(mode)->setChecked(true);
  refreshHistoryView();
}

void HistoryPage::show_Span(int span) {
  spans_->button(span)->setChecked(true);
  refreshHistoryView();
}

void HistoryPage::refreshHistoryView() {
  const ProgressPlace place(session_.desk, *bar_);
  grid_->clear_Filters();
  filter_Edited_ = false;
  if (shows_Chart())
    show_Distribution();
  else
    fillHistoryGrid();
}

void HistoryPage::fillHistoryGrid() {
  const auto span = spans_->checkedId() == 0 ? HistorySpan::recent : HistorySpan::all;
  const int column = grid_->current_Column();
  const int rows = model_.load(session_.store, loadHistoryRows(session_.store, span));
  views_->setCurrentWidget(rows > 0 ? static_cast<QWidget*>(grid_) : empty_);
  grid_->show_End(column);
}

void HistoryPage::show_Distribution() {
  const auto span = spans_->checkedId() == 0 ? DistributionSpan::recent : DistributionSpan::all;
  const auto rows = buildHaoMaFenBu(session_.store, session_.desk, latestPeriod(session_.store), span);
  views_->setCurrentWidget(rows > 0 ? static_cast<QWidget*>(distribution_) : empty_);
  distribution_->show_Rows(load_Distribution(session_.store));
}

void HistoryPage::load_Entry() {
  strip_->set_Date(upcomingDrawDate(session_.store, session_.clock.today()));
  strip_->set_Period(session_.next_Period());
}

void HistoryPage::add_Draw() {
  const ProgressPlace place(session_.desk, *bar_);
  const CheckedEntry checked = checkManualEntry(strip_->entry());
  strip_->show_Counted(checked.counted);
  if (!checked.numbers || !checked.period) {
    if (checked.numbers)
      static_cast<void>(read_Period(session_.desk, strip_->entry().period));
    else
      session_.desk.tell("输入有误或不完整,请核对后重新输入!", Tone::error);
    // The first red that wasn't read, or the blue behind them; the period where these are right.
    strip_->focus_Number(checked.numbers ? 0 : static_cast<int>(checked.counted.size()) + 1);
    strip_->slide();
    return;
  }
  saveDraw(session_.store, session_.desk, *checked.period, strip_->date(), *checked.numbers, Recalc::yes);
  load_Entry();
  strip_->clear_Numbers();
  strip_->focus_Number(1);
  refreshHistoryView();
  Q_EMIT history_Changed();
}

void HistoryPage::download() {
  const ProgressPlace place(session_.desk, *download_View_);
  const auto fetcher = make_CurlFetcher(session_.desk);
  if (!download_Command(session_.store, session_.desk, *fetcher, session_.clock.today(), list_typed_).ok)
    return;
  load_Entry();
  refreshHistoryView();
  Q_EMIT history_Changed();
}

void HistoryPage::remove_Draw() {
  const ProgressPlace place(session_.desk, *bar_);
  const auto typed = session_.desk.ask_Text("您要删除哪期的记录？", "请输入期号",
                                            std::to_string(latestPeriod(session_.store)));
  const std::string_view done = shows_Chart() ? "删除完成，将重新加载数据。" : "删除完成！";
  if (!typed || !deleteDraw(session_.store, session_.desk, *typed, done)) return;
  refreshHistoryView();
  load_Entry();
  Q_EMIT history_Changed();
}

void HistoryPage::prompt_Search() {
  if (shows_Chart()) show_Mode(0);
  session_.desk.tell("请在表格中最顶一行空白处相应项目栏输入条件值，然后点击“搜索”按钮！");
  grid_->focus_Filter();
}

void HistoryPage::search() {
  // A number that the grid shows as 05 is stored as 5.
  static const QRegularExpression ball(QStringLiteral("^0(?=[1-9])"));
  std::vector<ColumnFilter> filters;
  for (int column = 0; column < model_.columnCount(); ++column) {
    QString text = grid_->filter(column);
    if (HistoryModel::is_NumberOfDraw(column)) text.remove(ball);
    if (!text.isEmpty()) filters.push_back({draw_Columns()[column].name, utf8(text)});
  }
  const auto condition = buildSearchWhere(session_.desk, filters);
  const int column = grid_->current_Column();
  const bool asks = condition && !condition->where.empty();
  filter_Edited_ = false;
  int found = 0;
  try {
    if (asks) found = model_.load(session_.store, kEveryPeriod, *condition);
  } catch (...) {
    grid_->clear_Filters();  // what the store refuses doesn't stand there to be asked again
    throw;
  }
  if (found != 0) return grid_->show_End(column);
  // Boxes that ask for nothing, or for what no draw has, lead back to the rows that the options name; what no draw has
  // stays in the boxes to be corrected.
  if (!asks) return refreshHistoryView();
  fillHistoryGrid();
  filter_Edited_ = true;
  session_.desk.tell("没有符合条件的记录。", Tone::warning);
}

void HistoryPage::clear_Filter() { refreshHistoryView(); }

void HistoryPage::export_History() {
  const ProgressPlace place(session_.desk, *bar_);
  const auto file = session_.home.folder / "LotmereHistory.xlsx";
  if (exportHistory(session_.store, session_.desk, file) == 0) return;
  const QString path = QString::fromStdString(file.string());
  open(QUrl::fromLocalFile(path), QStringLiteral("开奖记录已导出到：\r\n%1").arg(path));
}

void HistoryPage::query_Detail() {
  const ProgressPlace place(session_.desk, *bar_);
  const auto fetcher = make_CurlFetcher(session_.desk);
  const auto address = query_DetailPage(session_.store, session_.desk, *fetcher, page_typed_);
  if (!address) return;
  open(QUrl(shown(*address)),
       QStringLiteral("无法打开浏览器，网页的地址是：\r\n%1").arg(shown(shown_Address(*address))));
}

void HistoryPage::open(const QUrl& url, const QString& elsewhere) {
  if (!session_.desk.open_Outside(url)) session_.desk.tell(utf8(elsewhere));
}

}  // namespace lotmere::ui
