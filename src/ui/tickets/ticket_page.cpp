#include "ui/tickets/ticket_page.hpp"

#include <QFile>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>

#include "files/import.hpp"
#include "pipeline/run.hpp"
#include "store/periods.hpp"
#include "tickets/init.hpp"
#include "tickets/prize_check.hpp"
#include "tickets/upkeep.hpp"
#include "ui/look/ball_delegate.hpp"
#include "ui/look/text.hpp"
#include "ui/tickets/export_dialog.hpp"
#include "ui/tickets/import_dialog.hpp"
#include "ui/widgets/row_table.hpp"

namespace lotmere::ui {
namespace {

constexpr const char* kExportFile = "LotmereTemp.txt";
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
    {"mnu_ShengCeng_0", "cmmTouZhu_0", "初始化(&I)...", "第一步：初始化...", "Ctrl+G",
     "把选好的号码展开成一期的全部投注号"},
    {"mnu_ShengCeng_1", "cmmTouZhu_1", "过滤缩水(&R)", "第二步：过滤缩水", "Ctrl+R",
     "按设置的条件过滤，再缩水"},
    {nullptr, "cmmTouZhu_2", "", "精选号码", "", ""},
    {"mnu_ShengCeng_3", "cmmTouZhu_3", "号码导出(&E)", "导出", "Ctrl+S", "把投注号写到文本文件并打开"},
    {"mnu_ShengCeng_4", "cmmTouZhu_4", "号码导入(&M)", "导入", "Ctrl+O", "从文本文件读入投注号"},
    {"mnu_ShengCeng_5", "cmmTouZhu_5", "删除记录(&D)", "删除", "", "删除表格中的全部投注号"},
    {"mnu_ShengCeng_6", "cmmTouZhu_6", "开奖核对(&C)", "开奖核对", "Ctrl+J", "与一期开奖号码核对"},
};

}  // namespace

TicketPage::TicketPage(Session& session, QWidget* parent)
    : QWidget(parent), session_(session), model_(new TicketModel(this)) {
  addCommands();
  auto* body = new QHBoxLayout;
  body->setSpacing(12);
  body->addWidget(makeGrid(), 3);
  body->addWidget(makeLog(), 2);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->setSpacing(10);
  layout->addWidget(makeStrip());
  layout->addLayout(body, 1);
  connect(&session_.desk, &WindowDesk::runningTextChanged, this, &TicketPage::showLog);
}

void TicketPage::addCommands() {
  void (TicketPage::*const handlers[])() = {
      &TicketPage::init,       &TicketPage::run,   nullptr,           &TicketPage::exportFile,
      &TicketPage::importFile, &TicketPage::clear, &TicketPage::check};
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
  strip->setObjectName(QStringLiteral("Pic_subTouZhu"));
  auto* layout = new QHBoxLayout(strip);
  layout->setContentsMargins(0, 0, 0, 0);
  for (const Step& step : kSteps) {
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
  }
  layout->addStretch();
  return strip;
}

QWidget* TicketPage::makeGrid() {
  auto* place = new QWidget(this);
  grid_ = new RowTable(place);
  grid_->setObjectName(QStringLiteral("TDBGrid_RZ"));
  grid_->setModel(model_);
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
  bar_ = new JobBar(session_.desk, "ProgressBar_TouZu_Busy", place);
  auto* layout = new QGridLayout(place);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(grid_, 0, 0);
  layout->addWidget(bar_, 0, 0, Qt::AlignCenter);
  return place;
}

QWidget* TicketPage::makeLog() {
  log_ = new QPlainTextEdit(this);
  log_->setObjectName(QStringLiteral("TextChaoZuoTip"));
  log_->setReadOnly(true);
  log_->document()->setDocumentMargin(12);
  log_->setPlaceholderText(QStringLiteral("各步操作的结果显示在这里。"));
  return log_;
}

void TicketPage::refreshTickets() { model_->showTickets(session_.store.run(loadTicketList)); }

void TicketPage::showLog(const QString& text) {
  log_->setPlainText(text);
  log_->moveCursor(QTextCursor::End);
}

PeriodNo TicketPage::currentPeriod() const {
  const auto& tickets = model_->tickets();
  if (tickets.empty()) return session_.nextPeriod();
  const QModelIndex current = grid_->currentIndex();
  return tickets[static_cast<std::size_t>(current.isValid() ? current.row() : 0)].period;
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
  session_.store.run([&](Store& store) { return runPipeline(store, session_.desk, *period); });
  refreshTickets();
}

void TicketPage::exportFile() {
  ExportDialog dialog(export_, session_.desk.window());
  const bool accepted = session_.desk.runDialog(dialog);
  export_ = accepted ? dialog.switches() : ExportSwitches{.format = dialog.switches().format};
  if (!accepted) return;
  const auto target = session_.home.folder / kExportFile;
  const Exported written =
      session_.store.run([&](Store& store) { return exportCommand(store, session_.desk, target, export_); });
  if (written.outcome != Outcome::done) return;
  const QString path = shown(target.string());
  if (!session_.desk.openOutside(QUrl::fromLocalFile(path)))
    session_.desk.tell(utf8(QStringLiteral("号码已写到文件 %1").arg(path)));
}

void TicketPage::importFile() {
  const QString file = session_.desk.chooseFile(QStringLiteral("数 据 导 入"), QStringLiteral("*.txt;;*"));
  if (file.isEmpty()) return;
  ImportDialog dialog(session_, session_.desk.window());
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
  refreshTickets();
  const auto draw = session_.store.run([&](Store& store) { return findDraw(store, *period); });
  if (draw) model_->markDraw(*draw);
}

}  // namespace lotmere::ui
