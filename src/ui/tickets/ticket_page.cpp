#include "ui/tickets/ticket_page.hpp"

#include <fmt/ranges.h>

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <algorithm>

#include "conditions/condition_store.hpp"
#include "files/export_compound.hpp"
#include "files/import.hpp"
#include "panels/pages.hpp"
#include "pipeline/generate.hpp"
#include "pipeline/run.hpp"
#include "store/periods.hpp"
#include "tickets/init.hpp"
#include "tickets/prize_check.hpp"
#include "tickets/ticket_steps.hpp"
#include "tickets/upkeep.hpp"
#include "ui/look/ball_delegate.hpp"
#include "ui/look/text.hpp"
#include "ui/shell/written_file.hpp"
#include "ui/tickets/export_dialog.hpp"
#include "ui/tickets/import_dialog.hpp"

namespace lotmere::ui {
namespace {

// What the file dialog of an export offers, by the kind of the file.
struct ExportTarget {
  const char* name;
  const char* filter;
};
constexpr ExportTarget kExportTargets[] = {{"LotmereTemp.txt", "文本文件 (*.txt);;全部文件 (*)"},
                                           {"LotmereTemp.xlsx", "电子表格 (*.xlsx)"},
                                           {"LotmereTemp.csv", "CSV 文件 (*.csv)"}};
constexpr int kRowHeight = 26;

// The steps in the order of their buttons. The third one has no operation: its button stays hidden, and it
// has no menu entry.
struct Step {
  const char* action;  // of the menu
  const char* button;
  const char* menu_text;
  const char* caption;
  const char* shortcut;
  const char* tip;
};
constexpr Step kSteps[] = {
    {"tickets.init", "initButton", "初始化(&I)...", "第一步：初始化...", "Ctrl+G",
     "把选好的号码展开成一期的全部投注号"},
    {"tickets.generate", "generateTickets", "生成(&A)...", "生成...", "",
     "展开、过滤、缩水一次完成，最多可以是全部 17,721,088 注，只存储余下的"},
    {"tickets.run", "runButton", "过滤缩水(&R)", "第二步：过滤缩水", "Ctrl+R", "按设置的条件过滤，再缩水"},
    {nullptr, "chosenButton", "", "精选号码", "", ""},
    {"tickets.export", "exportButton", "号码导出(&E)", "导出", "Ctrl+S", "把投注号写到文本、表格或 CSV 文件"},
    {"tickets.import", "importButton", "号码导入(&M)", "导入", "Ctrl+O", "从文本文件读入投注号"},
    {"tickets.clear", "clearButton", "删除记录(&D)", "删除", "", "删除表格中的全部投注号"},
    {"tickets.undo", "undoTickets", "撤销(&U)", "撤销上一步", "", "号码回到上一步之前"},
    {"tickets.redo", nullptr, "重做(&Y)", "", "", "重做撤销了的一步"},
    {"tickets.check", "checkButton", "开奖核对(&C)", "开奖核对", "Ctrl+J", "与一期开奖号码核对"},
};

}  // namespace

TicketPage::TicketPage(Session& session, QWidget* parent)
    : QWidget(parent), session_(session), model_(new TicketModel(this)), answers_(session.desk) {
  addCommands();
  auto* body = new QHBoxLayout;
  body->setSpacing(12);
  body->addWidget(makeGrid(), 3);
  body->addWidget(makeResult(), 2);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->setSpacing(10);
  layout->addWidget(makeStrip());
  layout->addLayout(body, 1);
  connect(&session_.desk, &WindowDesk::runningTextChanged, this, &TicketPage::showLog);
}

void TicketPage::addCommands() {
  void (TicketPage::*const handlers[])() = {
      &TicketPage::init,       &TicketPage::generate,   &TicketPage::run,   nullptr,
      &TicketPage::exportFile, &TicketPage::importFile, &TicketPage::clear, &TicketPage::undo,
      &TicketPage::redo,       &TicketPage::check};
  static_assert(std::size(handlers) == std::size(kSteps));
  for (std::size_t i = 0; i < std::size(kSteps); ++i) {
    const Step& step = kSteps[i];
    if (step.action == nullptr) continue;
    session_.commands.add({step.action, QString::fromUtf8(step.menu_text),
                           QKeySequence(QString::fromUtf8(step.shortcut)), QString::fromUtf8(step.tip)},
                          [this, handler = handlers[i]] {
                            Q_EMIT wanted();
                            const ProgressPlace place(session_.desk, *bar_);
                            (this->*handler)();
                          });
  }
}

QWidget* TicketPage::makeStrip() {
  auto* strip = new QWidget(this);
  strip->setObjectName(QStringLiteral("ticketStrip"));
  auto* layout = new QHBoxLayout(strip);
  layout->setContentsMargins(0, 0, 0, 0);
  for (const Step& step : kSteps) {
    if (step.button == nullptr) continue;
    const QString caption = QString::fromUtf8(step.caption);
    QPushButton* button = nullptr;
    if (step.action != nullptr) {
      button = session_.commands.makeButton(step.button, caption, session_.commands.action(step.action));
    } else {
      button = new QPushButton(caption);
      button->setObjectName(QString::fromUtf8(step.button));
      button->hide();
    }
    layout->addWidget(button);
    if (step.button == std::string_view("undoTickets")) undo_ = button;
  }
  layout->addStretch();
  return strip;
}

QWidget* TicketPage::makeGrid() {
  auto* place = new QWidget(this);
  grid_ = new RowTable(place);
  grid_->setObjectName(QStringLiteral("ticketGrid"));
  grid_->showRows(*model_);
  grid_->setItemDelegate(new BallDelegate(grid_));
  grid_->setShowGrid(false);
  grid_->verticalHeader()->setDefaultSectionSize(kRowHeight);
  grid_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  // Running number and period are longer than the balls.
  for (int column = 0; column < 2; ++column) {
    grid_->horizontalHeader()->setSectionResizeMode(column, QHeaderView::Fixed);
    grid_->setColumnWidth(column, grid_->fontMetrics().horizontalAdvance(QStringLiteral("00000000")) + 16);
  }
  grid_->horizontalHeader()->setHighlightSections(false);
  connect(grid_, &RowTable::copied, &session_.desk, &WindowDesk::statusChanged);
  auto* numbers = new QAction(QStringLiteral("复制号码(&N)"), grid_);
  numbers->setObjectName(QStringLiteral("copyNumbers"));
  numbers->setToolTip(QStringLiteral("只复制号码，一行一注"));
  connect(numbers, &QAction::triggered, this, &TicketPage::copyNumbers);
  grid_->addAction(numbers);
  grid_->addRowActions(session_.commands.actions({"tickets.check", "tickets.run", "tickets.undo"}));
  grid_->addRowActions(session_.commands.actions({"tickets.export", "tickets.import", "tickets.clear"}));
  bar_ = new JobBar(session_.desk, "ticketProgress", place);
  auto* layout = new QGridLayout(place);
  layout->setContentsMargins(0, 0, 0, 0);
  head_ = new QLabel;
  head_->setObjectName(QStringLiteral("ticketHead"));
  head_->setTextFormat(Qt::PlainText);
  layout->addWidget(head_, 0, 0);
  layout->addWidget(grid_, 1, 0);
  layout->addWidget(bar_, 1, 0, Qt::AlignCenter);
  return place;
}

QWidget* TicketPage::makeResult() {
  log_ = new QPlainTextEdit(this);
  log_->setObjectName(QStringLiteral("runningText"));
  log_->setReadOnly(true);
  log_->document()->setDocumentMargin(12);
  log_->setPlaceholderText(QStringLiteral("各步操作的结果显示在这里。"));
  result_ = new RunResultView;
  results_ = new QTabWidget(this);
  results_->setObjectName(QStringLiteral("runTabs"));
  results_->addTab(result_, QStringLiteral("结果"));
  results_->addTab(log_, QStringLiteral("全文"));
  return results_;
}

void TicketPage::refreshTickets() {
  model_->showTickets(session_.store.run(loadTicketList));
  showHead();
  showSteps();
}

void TicketPage::showHead() {
  const auto& tickets = model_->tickets();
  if (tickets.empty()) return head_->setText(QStringLiteral("还没有投注号"));
  const auto count = static_cast<std::int64_t>(tickets.size());
  const PeriodNo period = tickets.front().period;
  const bool one = std::ranges::all_of(tickets, [&](const TicketRow& row) { return row.period == period; });
  QStringList parts;
  parts.append(one ? QStringLiteral("第 %1 期").arg(period) : QStringLiteral("几期"));
  parts.append(QStringLiteral("%1 注").arg(grouped(count)));
  parts.append(QStringLiteral("%1 元").arg(grouped(kTicketPrice * count)));
  const auto origin = session_.store.run([period](Store& store) { return loadRunSettings(store, period); });
  if (one && origin && !origin->name.empty())
    parts.append(QStringLiteral("方案：%1").arg(shown(origin->name)));
  head_->setText(parts.join(QStringLiteral("　")));
}

void TicketPage::showSteps() {
  const NextTicketSteps steps = session_.store.run(nextTicketSteps);
  const auto show = [&](const char* name, const char* caption, const std::optional<std::string>& step) {
    session_.commands.action(name)->setText(
        step ? QStringLiteral("%1：%2").arg(QString::fromUtf8(caption), shown(*step))
             : QString::fromUtf8(caption));
  };
  show("tickets.undo", "撤销", steps.undo);
  show("tickets.redo", "重做", steps.redo);
  undo_->setToolTip(steps.undo ? QStringLiteral("撤销：%1").arg(shown(*steps.undo))
                               : QStringLiteral("没有可以撤销的一步"));
}

void TicketPage::showLog(const QString& text) {
  log_->setPlainText(text);
  log_->moveCursor(QTextCursor::End);
}

PeriodNo TicketPage::currentPeriod() const {
  const auto& tickets = model_->tickets();
  if (tickets.empty()) return session_.nextPeriod();
  const QModelIndex current = grid_->currentIndex();
  const int row = current.isValid() ? grid_->storedRow(current.row()) : 0;
  return tickets[static_cast<std::size_t>(row)].period;
}

void TicketPage::copyNumbers() {
  const std::vector<int> rows = grid_->selectedRows();
  if (rows.empty()) return;
  std::string text;
  for (const int row : rows) {
    const DrawNumbers& numbers = model_->tickets()[static_cast<std::size_t>(grid_->storedRow(row))].numbers;
    fmt::format_to(std::back_inserter(text), "{:02} + {:02}\n", fmt::join(numbers.reds, " "), numbers.blue);
  }
  QApplication::clipboard()->setText(shown(text));
  Q_EMIT session_.desk.statusChanged(
      QStringLiteral("已复制 %1 注号码").arg(grouped(static_cast<std::int64_t>(rows.size()))));
}

std::optional<PeriodNo> TicketPage::askPeriod(std::string_view prompt, PeriodNo proposed) {
  const auto answer = session_.desk.askText(prompt, "", std::to_string(proposed));
  return answer ? readPeriod(session_.desk, *answer) : std::nullopt;
}

void TicketPage::init() {
  const auto period =
      askPeriod("请输入期号：\r\n\r\n[注意,只需要输入7位数(如,2007001)的期号！]", session_.nextPeriod());
  if (!period) return;
  const InitResult result =
      session_.store.run([&](Store& store) { return initTickets(store, session_.desk, *period); });
  // A stopped one leaves the grid as it was until the page is opened again.
  if (result.outcome == Outcome::done)
    refreshTickets();
  else if (!checkSelection(selectionOf(session_.settings.set()), session_.desk, Tell::no))
    Q_EMIT numbersWanted();
}

void TicketPage::run() {
  const auto period = askPeriod("要过滤哪期的号码 ？", currentPeriod());
  if (!period) return;
  results_->setCurrentWidget(log_);
  result_->clear();
  QElapsedTimer since;
  since.start();
  const RunResult result = session_.store.run(
      [&](Store& store) { return runPipeline(store, session_.desk, *period, WithFunnel::yes); });
  refreshTickets();
  if (result.outcome == Outcome::refused) return;
  result_->showFunnel(result.funnel, static_cast<double>(since.elapsed()) / 1000, true);
  results_->setCurrentWidget(result_);
  countGuarantee(*period);
}

void TicketPage::countGuarantee(PeriodNo period) {
  answers_.ask(session_.store, [this, period](Store& store, Course& reading) -> AnswerThread::Question {
    const auto origin = loadRunOrigin(store, period);
    auto held = loadTickets(store, period, [&](std::size_t) { return reading.stopRequested(); });
    if (!origin || !held) return {};
    const int type = loadConditionSet(store).cells.value(kShrinkTypeCell);
    return [this, type, draws = origin->tickets,
            held = std::move(held->balls)](Course& course) -> AnswerThread::Answer {
      const auto guarantee = checkGuarantee(draws, held, course);
      if (!guarantee) return {};
      return [this, type, found = *guarantee] { result_->showGuarantee(found, promiseText(type)); };
    };
  });
}

void TicketPage::generate() {
  constexpr std::string_view choices[] = {"已选的号码", "全部红球，已选的蓝球", "全部号码", "取消"};
  const auto period = askPeriod("生成哪期的号码 ？", session_.nextPeriod());
  if (!period) return;
  const std::size_t cancel = std::size(choices) - 1;
  const std::size_t choice = session_.desk.choose(
      "展开、过滤、缩水一次完成，只存储余下的号码。从哪些号码开始？", choices, cancel, "生成");
  if (choice == cancel) return;
  NumberSelection selection = selectionOf(session_.settings.set());
  if (choice > 0) std::fill(selection.red.begin() + 1, selection.red.end(), PickState::tuo);
  if (choice == 2) std::fill(selection.blue.begin() + 1, selection.blue.end(), PickState::tuo);
  results_->setCurrentWidget(log_);
  result_->clear();
  const GenerateResult result = session_.store.run(
      [&](Store& store) { return generateTickets(store, session_.desk, *period, selection); });
  if (!result.funnel.empty()) {
    result_->showFunnel(result.funnel, 0, false);
    results_->setCurrentWidget(result_);
  }
  if (result.outcome == Outcome::done) refreshTickets();
}

void TicketPage::undo() {
  session_.store.run([&](Store& store) { return undoTickets(store, session_.desk); });
  result_->clear();
  refreshTickets();
}

void TicketPage::redo() {
  session_.store.run([&](Store& store) { return redoTickets(store, session_.desk); });
  result_->clear();
  refreshTickets();
}

void TicketPage::exportFile() {
  ExportDialog dialog(export_, session_.desk.window());
  const bool accepted = session_.desk.runDialog(dialog);
  export_ = accepted ? dialog.switches() : ExportSwitches{.format = dialog.switches().format};
  if (!accepted) return;
  const bool compound = dialog.compound();
  const ExportTarget& proposed = kExportTargets[static_cast<std::size_t>(export_.file)];
  const QString path = chooseTarget(session_.desk, QStringLiteral("数 据 导 出"),
                                    QString::fromUtf8(proposed.filter), QString::fromUtf8(proposed.name));
  if (path.isEmpty()) return;
  const std::filesystem::path target = QFile::encodeName(path).toStdString();
  if (compound) {
    const CompoundExport written =
        session_.store.run([&](Store& store) { return exportCompound(store, session_.desk, target); });
    if (written.outcome == Outcome::done)
      tellWritten(session_.desk,
                  QStringLiteral("已导出 %1 注，共 %2 行，到 %3")
                      .arg(grouped(written.tickets), grouped(written.bets), path),
                  path);
    return;
  }
  const Exported written =
      session_.store.run([&](Store& store) { return exportCommand(store, session_.desk, target, export_); });
  if (written.outcome == Outcome::done)
    tellWritten(session_.desk, QStringLiteral("已导出 %1 注到 %2").arg(grouped(written.rows), path), path);
}

void TicketPage::importFile() {
  const QString file = session_.desk.chooseFile(QStringLiteral("数 据 导 入"), QStringLiteral("*.txt;;*"));
  if (!file.isEmpty()) importFrom(file, ImportFormat::numbers);
}

void TicketPage::importFrom(const QString& file, ImportFormat proposed) {
  const ProgressPlace place(session_.desk, *bar_);
  ImportDialog dialog(session_, proposed, session_.desk.window());
  const auto choice = session_.desk.runDialog(dialog) ? dialog.choice() : std::nullopt;
  session_.store.run([&](Store& store) {
    return importCommand(store, session_.desk, QFile::encodeName(file).toStdString(), choice);
  });
  refreshTickets();
}

void TicketPage::clear() {
  const auto clear_all = [this](Store& store) { return clearAllTickets(store, session_.desk); };
  if (session_.store.run(clear_all) == Outcome::done) refreshTickets();
}

void TicketPage::check() {
  const auto period = askPeriod("您要核对哪期的数据?", currentPeriod());
  if (!period) return;
  const CheckResult result =
      session_.store.run([&](Store& store) { return checkCommand(store, session_.desk, *period); });
  if (result.outcome != Outcome::done) return;
  results_->setCurrentWidget(log_);
  refreshTickets();
  const auto draw = session_.store.run([&](Store& store) { return findDraw(store, *period); });
  if (draw) model_->markDraw(*draw);
}

}  // namespace lotmere::ui
