#include "ui/conditions/panel_page.hpp"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "panels/sheet.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {
namespace {

constexpr int kMostPanels = kIntervalCount;

template <class Panels>
std::vector<ConditionPanel> asList(const Panels& panels) {
  return {panels.begin(), panels.end()};
}

std::vector<ConditionPanel> panelsOf(const ConditionSet& set, const ConditionPage& page, int tab) {
  switch (page.kind) {
    case PageKind::counts:
      return asList(countPanels(set, tab));
    case PageKind::intervals:
      return asList(intervalPanels(set));
    case PageKind::shapes:
      return {shapePage(set, page.conditions.front()->usage).panel};
    default:
      return {valuePage(set, tab)};
  }
}

}  // namespace

PanelPage::PanelPage(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent), session_(session), clicks_(clicks), tip_(new QLabel) {
  tip_->setObjectName(QStringLiteral("Text_elseTiaojianTip"));
  tip_->setWordWrap(true);
  auto* row = new QHBoxLayout;
  row->setSpacing(12);
  for (int i = 0; i < kMostPanels; ++i) {
    auto* panel = new PanelBox(QStringLiteral("List_TJ_%1").arg(i), QStringLiteral("Check_page_%1").arg(i));
    panel->setMaximumWidth(320);
    panels_.push_back(panel);
    row->addWidget(panel);
  }
  row->addStretch();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->addWidget(tip_);
  layout->addLayout(row, 1);
}

void PanelPage::open(int tab) {
  const ConditionPage& page = conditionPage(tab);
  const auto panels = panelsOf(session_.settings.set(), page, tab);
  const bool shape = page.kind == PageKind::shapes;
  panels_[0]->list().setObjectName(shape ? QStringLiteral("List_TiaojianElse") : QStringLiteral("List_TJ_0"));
  panels_[0]->box().setObjectName(shape ? QStringLiteral("Check_useTiaojiao_else")
                                        : QStringLiteral("Check_page_0"));
  showPanels(panels);
  for (std::size_t i = 0; i < panels.size(); ++i) {
    const Condition& condition = conditionOfUsage(panels[i].usage);
    if (shape)
      clicks_.connectLeading(*panels_[i], condition);
    else
      clicks_.connectPanel(*panels_[i], condition);
  }
  QString tip;
  if (shape)
    tip = shown(shapePage(session_.settings.set(), page.conditions.front()->usage).tip).trimmed();
  else if (panels.front().items.empty())
    tip = QStringLiteral("这个条件的取值在“选取号码”页的条件表中设置。");
  tip_->setText(tip);
  tip_->setVisible(!tip.isEmpty());
}

void PanelPage::showPanels(const std::vector<ConditionPanel>& panels) {
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    clicks_.disconnectPanel(*panels_[i]);
    panels_[i]->setVisible(i < panels.size());
    if (i < panels.size()) panels_[i]->showPanel(panels[i]);
  }
}

}  // namespace lotmere::ui
