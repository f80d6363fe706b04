#include "ui/conditions_page.hpp"

#include <QHBoxLayout>

#include "conditions/condition_store.hpp"
#include "conditions/summary.hpp"
#include "ui/text.hpp"

namespace lotmere::ui {
namespace {

QPlainTextEdit* make_TextView(const char* name) {
  auto* view = new QPlainTextEdit;
  view->setObjectName(QString::fromUtf8(name));
  view->setReadOnly(true);
  view->document()->setDocumentMargin(14);
  return view;
}

}  // namespace

ConditionsPage::ConditionsPage(Session& session, QWidget* parent)
    : QWidget(parent),
      session_(session),
      pad_(new NumberPad(session)),
      tabs_(new QTabWidget),
      count_(make_TextView("Text_ChoseNumberTip")),
      summary_(make_TextView("Text_TiaoJianList")) {
  tabs_->setObjectName(QStringLiteral("TabStrip_TiaoJian"));
  tabs_->addTab(count_, QStringLiteral("选取号码"));
  tabs_->addTab(summary_, QStringLiteral("查看全部"));
  pad_->setFixedWidth(330);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->setSpacing(16);
  layout->addWidget(pad_);
  layout->addWidget(tabs_, 1);
  connect(pad_, &NumberPad::counted, count_, &QPlainTextEdit::setPlainText);
  connect(tabs_, &QTabWidget::currentChanged, this, [this] {
    if (tabs_->currentWidget() == summary_) run_Guarded(session_.desk, [this] { show_Summary(); });
  });
  add_Commands();
}

void ConditionsPage::add_Commands() {
  session_.commands.add({"mnu_TiaojianChoseNumber", QStringLiteral("设置条件(&S)..."),
                         QKeySequence(QStringLiteral("Ctrl+T")), QStringLiteral("选取号码，设置条件")},
                        [this] {
                          show_Pad();
                          Q_EMIT wanted();
                        });
  session_.commands.add({"mnu_TiaojianView", QStringLiteral("查看设置情况(&V)"),
                         QKeySequence(QStringLiteral("Ctrl+L")), QStringLiteral("全部设置一览")},
                        [this] {
                          Q_EMIT wanted();
                          tabs_->setCurrentWidget(summary_);
                        });
  session_.commands.add(
      {"huanyuan", QStringLiteral("还原默认值(&H)"), {}, QStringLiteral("全部条件回到默认值")},
      [this] { restore_Defaults(); });
}

void ConditionsPage::open() {
  pad_->open();
  if (tabs_->currentWidget() == summary_) show_Summary();
}

void ConditionsPage::restore_Defaults() {
  show_Pad();
  Q_EMIT wanted();
  if (!session_.desk.ask("要把全部过滤条件还原为默认值，并清空已选的号码吗？")) return;
  lotmere::restore_Defaults(session_.store);
  pad_->reload();
  session_.desk.tell("完成，过滤条件已经还原为默认值！");
  Q_EMIT defaults_Restored();
}

void ConditionsPage::show_Summary() { summary_->setPlainText(shown(tj_Summary(session_.store))); }

}  // namespace lotmere::ui
