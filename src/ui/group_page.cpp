#include "ui/group_page.hpp"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "conditions/condition_store.hpp"
#include "conditions/help_texts.hpp"
#include "conditions/summary.hpp"
#include "ui/text.hpp"

namespace lotmere::ui {

GroupPageView::GroupPageView(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent),
      session_(session),
      clicks_(clicks),
      tabs_(new QTabBar),
      numbers_(new NumberGrid(QStringLiteral("cmm_ZDY"), 9)),
      counts_(new PanelBox(QStringLiteral("List_ZDYset"), QStringLiteral("Check_Zdy"))),
      all_(new QListView) {
  tabs_->setObjectName(QStringLiteral("TabStrip_ZDYchose"));
  for (int g = 1; g <= kGroupCount; ++g) tabs_->addTab(shown(conditionOfUsage(usage_OfGroup(g)).name));
  tabs_->setUsesScrollButtons(true);
  tabs_->setExpanding(false);
  all_->setObjectName(QStringLiteral("List_ZDY"));
  all_->setModel(&lines_);
  all_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  auto* help = new QPlainTextEdit(shown(kGroupHelp));
  help->setObjectName(QStringLiteral("Text_ZDYhelp"));
  help->setReadOnly(true);
  auto* foot = new QHBoxLayout;
  foot->setSpacing(12);
  foot->addWidget(all_, 3);
  foot->addWidget(help, 2);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->addWidget(tabs_);
  layout->addWidget(make_Editor());
  layout->addLayout(foot, 1);
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) { open_Group(index + 1); });
  connect(all_, &QListView::clicked, this,
          [this](const QModelIndex& index) { tabs_->setCurrentIndex(index.row()); });
  connect(numbers_, &NumberGrid::number_Clicked, this, [this](int number) {
    if (!clicks_.change([&] { click_GroupNumber(session_.store, group_, number); }, [this] { load(); }))
      numbers_->take_Back(number);
  });
  connect(counts_, &PanelBox::box_Clicked, this, [this](bool on) {
    if (!clicks_.change([&] { set_Usage(session_.store, usage_OfGroup(group_), on); }, [this] { load(); }))
      counts_->take_BoxBack();
  });
  connect(counts_, &PanelBox::item_Clicked, this, [this](int k, bool selected) {
    BoxState box{};
    const auto write = [&] {
      box = click_LeadingItem(session_.store, conditionOfUsage(usage_OfGroup(group_)), k, selected);
    };
    const auto show = [&] {
      load();
      counts_->show_Box(box);
    };
    if (!clicks_.change(write, show)) counts_->list().take_Back(k);
  });
}

QWidget* GroupPageView::make_Editor() {
  auto* editor = new QWidget;
  auto* row = new QHBoxLayout(editor);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(16);
  auto* buttons = new QVBoxLayout;
  const char* const captions[] = {"清空当前组", "清空全部自定义组"};
  for (int i = 0; i < 2; ++i) {
    auto* button = new QPushButton(QString::fromUtf8(captions[i]));
    button->setObjectName(QStringLiteral("cmm_EmptyZDY_%1").arg(i));
    connect(button, &QPushButton::clicked, this, [this, i] { empty_Groups(i == 1); });
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
  for (const std::string& line : tj_FillGroups(session_.store)) lines.append(shown(line));
  lines_.setStringList(lines);
  show_Group(group_);
}

void GroupPageView::open_Group(int group) {
  session_.commands.runner().run([&] { show_Group(group); });
  // The strip goes on showing the group that the clicks are for.
  const QSignalBlocker quiet(tabs_);
  tabs_->setCurrentIndex(group_ - 1);
}

void GroupPageView::show_Group(int group) {
  const GroupPage page = group_Page(session_.store, group);
  group_ = group;
  numbers_->show_Members(page.members);
  counts_->show_Panel(page.panel);
  clicks_.set_Tip(*counts_, [this] { return conditionOfUsage(usage_OfGroup(group_)); });
  all_->setCurrentIndex(lines_.index(group - 1));
}

void GroupPageView::empty_Groups(bool all) {
  const auto write = [&] {
    if (all)
      lotmere::empty_Groups(session_.store);
    else
      set_Group(session_.store, group_, {});
  };
  clicks_.change(write, [&] {
    if (all) group_ = 1;
    load();
    const QSignalBlocker quiet(tabs_);
    tabs_->setCurrentIndex(group_ - 1);
  });
}

}  // namespace lotmere::ui
