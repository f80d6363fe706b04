#include "ui/other_page.hpp"

#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "ui/help_texts.hpp"

namespace lotmere::ui {

OtherPage::OtherPage(Session& session, QWidget* parent) : QWidget(parent), contents_(new QStackedWidget) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->addWidget(contents_);
  add_Text(session, "mnu_youxiguizhe", QStringLiteral("游戏规则(&R)..."), "Text_yxgz", rules_Text());
  add_Text(session, "mnu_TiaojianDingYi", QStringLiteral("常用词的定义(&W)..."), "Text_dingyi",
           definitions_Text());
}

void OtherPage::add_Text(Session& session, const char* action, const QString& caption, const char* name,
                         const QString& text) {
  auto* view = new QPlainTextEdit(text);
  view->setObjectName(QString::fromUtf8(name));
  view->setReadOnly(true);
  view->document()->setDocumentMargin(16);
  contents_->addWidget(view);
  session.commands.add({action, caption}, [this, view] {
    contents_->setCurrentWidget(view);
    Q_EMIT wanted();
  });
}

}  // namespace lotmere::ui
