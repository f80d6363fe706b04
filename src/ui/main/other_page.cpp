#include "ui/main/other_page.hpp"

#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "ui/main/help_texts.hpp"

namespace lotmere::ui {

OtherPage::OtherPage(Session& session, QWidget* parent)
    : QWidget(parent), session_(session), clicks_(session), contents_(new QStackedWidget) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->addWidget(contents_);
  session_.commands.add({"intervals.divide", QStringLiteral("重新划分区间(&I)...")},
                        [this] { showIntervals(); });
  connect(&session_.settings, &Settings::changed, this, [this] {
    if (isVisible()) Q_EMIT intervalsChanged();
  });
  addText("help.rules", QStringLiteral("游戏规则(&R)..."), "rulesText", &rulesText);
  addText("help.definitions", QStringLiteral("常用词的定义(&W)..."), "definitionsText", &definitionsText);
}

void OtherPage::showIntervals() {
  if (intervals_ == nullptr) {
    intervals_ = new IntervalPage(session_, clicks_);
    contents_->addWidget(intervals_);
  }
  intervals_->load();
  bringForward(intervals_, QStringLiteral("重新划分区间"));
}

void OtherPage::bringForward(QWidget* content, const QString& title) {
  contents_->setCurrentWidget(content);
  title_ = title;
  Q_EMIT wanted();
}

void OtherPage::addText(const char* action, const QString& caption, const char* name, QString (*text)()) {
  const QString title = caption.section(QLatin1Char('('), 0, 0);
  session_.commands.add({action, caption},
                        [this, title, name, text, view = static_cast<QPlainTextEdit*>(nullptr)]() mutable {
                          if (view == nullptr) {
                            view = new QPlainTextEdit(text());
                            view->setObjectName(QString::fromUtf8(name));
                            view->setReadOnly(true);
                            view->document()->setDocumentMargin(16);
                            contents_->addWidget(view);
                          }
                          bringForward(view, title);
                        });
}

}  // namespace lotmere::ui
