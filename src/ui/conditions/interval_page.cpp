#include "ui/conditions/interval_page.hpp"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "panels/help_texts.hpp"
#include "panels/own_pages.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {

IntervalPage::IntervalPage(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent),
      session_(session),
      clicks_(clicks),
      numbers_(new NumberGrid(QStringLiteral("intervalNumber"), 11)) {
  setObjectName(QStringLiteral("intervalPage"));
  auto* options = new QHBoxLayout;
  auto* previews = new QVBoxLayout;
  for (int i = 0; i < kIntervalCount; ++i) {
    auto* option = new QRadioButton(shown(conditionOfUsage(usageOfInterval(i + 1)).name));
    option->setObjectName(QStringLiteral("intervalChoice.%1").arg(i));
    option->setChecked(i == 0);
    intervals_.addButton(option, i);
    options->addWidget(option);
    previews_[i] = new QLabel;
    previews_[i]->setObjectName(QStringLiteral("intervalMembers.%1").arg(i));
    previews_[i]->setWordWrap(true);
    previews->addWidget(previews_[i]);
  }
  auto* clear_all = new QPushButton(QStringLiteral("全部清空"));
  clear_all->setObjectName(QStringLiteral("clearInterval"));
  options->addStretch();
  options->addWidget(clear_all);
  auto* help = new QPlainTextEdit(shown(kDivisionHelp));
  help->setObjectName(QStringLiteral("intervalHelp"));
  help->setReadOnly(true);
  help->document()->setDocumentMargin(14);
  numbers_->setMaximumWidth(560);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(14);
  layout->addLayout(options);
  layout->addWidget(numbers_);
  layout->addLayout(previews);
  layout->addWidget(help, 1);
  connect(&intervals_, &QButtonGroup::idClicked, this, [this](int interval) {
    session_.commands.runner().run([this, interval] { showInterval(interval); });
    intervals_.button(interval_)->setChecked(true);  // the one that the clicks are for
  });
  connect(numbers_, &NumberGrid::numberClicked, this, [this](int number) {
    clicks_.change([&](ConditionSet& set) { clickIntervalNumber(set, interval_ + 1, number); },
                   [this] { load(); });
  });
  connect(clear_all, &QPushButton::clicked, this, &IntervalPage::clear);
  connect(&session_.settings, &Settings::refused, this, &IntervalPage::load);
}

void IntervalPage::showInterval(int interval) {
  const std::string& name = conditionOfUsage(usageOfInterval(interval + 1)).name;
  numbers_->showMembers(tableOf(session_.settings.set().column(AttributeTable::first, name)));
  interval_ = interval;
}

void IntervalPage::load() {
  showInterval(interval_);
  const auto previews = intervalPreviews(session_.settings.set());
  for (int i = 0; i < kIntervalCount; ++i) previews_[i]->setText(shown(previews[i]));
}

void IntervalPage::clear() {
  session_.commands.runner().run([this] {
    if (!session_.settings.changeNow(clearIntervals)) return;
    load();
    session_.desk.tell(kIntervalsCleared);
  });
}

}  // namespace lotmere::ui
