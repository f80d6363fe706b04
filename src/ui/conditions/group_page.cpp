#include "ui/conditions/group_page.hpp"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "panels/help_texts.hpp"
#include "panels/summary.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {

GroupPageView::GroupPageView(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent),
      session_(session),
      clicks_(clicks),
      tabs_(new QTabBar),
      numbers_(new NumberGrid(QStringLiteral("groupNumber"), 9)),
      counts_(new PanelBox(QStringLiteral("groupCounts"), QStringLiteral("groupSwitch"))),
      all_(new QListView) {
  tabs_->setObjectName(QStringLiteral("groupTabs"));
  for (int g = 1; g <= kGroupCount; ++g) tabs_->addTab(shown(conditionOfUsage(usageOfGroup(g)).name));
  tabs_->setUsesScrollButtons(true);
  tabs_->setExpanding(false);
  all_->setObjectName(QStringLiteral("groupList"));
  all_->setModel(&lines_);
  all_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  auto* help = new QPlainTextEdit(shown(kGroupHelp));
  help->setObjectName(QStringLiteral("groupHelp"));
  help->setReadOnly(true);
  auto* foot = new QHBoxLayout;
  foot->setSpacing(12);
  foot->addWidget(all_, 3);
  foot->addWidget(help, 2);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->addWidget(tabs_);
  layout->addWidget(makeEditor());
  layout->addLayout(foot, 1);
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) { openGroup(index + 1); });
  connect(all_, &QListView::clicked, this,
          [this](const QModelIndex& index) { tabs_->setCurrentIndex(index.row()); });
  connect(numbers_, &NumberGrid::numberClicked, this, [this](int number) {
    clicks_.change([&](ConditionSet& set) { clickGroupNumber(set, group_, number); }, [this] { load(); });
  });
  connect(counts_, &PanelBox::boxClicked, this, [this](bool on) {
    clicks_.change([&](ConditionSet& set) { set.use(usageOfGroup(group_), on); }, [this] { load(); });
  });
  connect(counts_, &PanelBox::itemClicked, this, [this](int k, bool selected) { allow({k}, selected); });
  connect(counts_, &PanelBox::itemsClicked, this, &GroupPageView::allow);
}

void GroupPageView::allow(const std::vector<int>& counts, bool allowed) {
  BoxState box{};
  const auto edit = [&](ConditionSet& set) {
    for (const int k : counts)
      box = clickLeadingItem(set, conditionOfUsage(usageOfGroup(group_)), k, allowed);
  };
  clicks_.change(edit, [&] {
    load();
    counts_->showBox(box);
  });
}

QWidget* GroupPageView::makeEditor() {
  auto* editor = new QWidget;
  auto* row = new QHBoxLayout(editor);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(16);
  auto* buttons = new QVBoxLayout;
  const char* const captions[] = {"清空当前组", "清空全部自定义组"};
  for (int i = 0; i < 2; ++i) {
    auto* button = new QPushButton(QString::fromUtf8(captions[i]));
    button->setObjectName(QStringLiteral("emptyGroup.%1").arg(i));
    connect(button, &QPushButton::clicked, this, [this, i] { emptyGroups(i == 1); });
    buttons->addWidget(button);
  }
  buttons->addStretch();
  counts_->setFixedHeight(176);
  row->addWidget(numbers_);
  row->addWidget(counts_, 1);
  row->addLayout(buttons);
  return editor;
}

void GroupPageView::load() {
  QStringList lines;
  for (const std::string& line : groupLines(session_.settings.set())) lines.append(shown(line));
  lines_.setStringList(lines);
  showGroup(group_);
}

void GroupPageView::choose(int group) {
  group_ = group;
  const QSignalBlocker quiet(tabs_);
  tabs_->setCurrentIndex(group_ - 1);
}

void GroupPageView::openGroup(int group) {
  session_.commands.runner().run([&] { showGroup(group); });
  // The strip goes on showing the group that the clicks are for.
  const QSignalBlocker quiet(tabs_);
  tabs_->setCurrentIndex(group_ - 1);
}

void GroupPageView::showGroup(int group) {
  const GroupPage page = groupPage(session_.settings.set(), group);
  group_ = group;
  numbers_->showMembers(page.members);
  counts_->showPanel(page.panel);
  clicks_.setTip(*counts_, [this] { return conditionOfUsage(usageOfGroup(group_)); });
  all_->setCurrentIndex(lines_.index(group - 1));
}

void GroupPageView::emptyGroups(bool all) {
  const auto edit = [&](ConditionSet& set) {
    if (all)
      lotmere::emptyGroups(set);
    else
      setGroup(set, group_, {});
  };
  clicks_.change(edit, [&] {
    if (all) group_ = 1;
    load();
    const QSignalBlocker quiet(tabs_);
    tabs_->setCurrentIndex(group_ - 1);
  });
}

}  // namespace lotmere::ui
