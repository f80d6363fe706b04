#include "ui/conditions/editor_page.hpp"

#include <utility>

#include "panels/pages.hpp"
#include "panels/sheet.hpp"

namespace lotmere::ui {
namespace {

constexpr int kTwoColumns = 780;  // width from which on two editors stand beside each other

template <class Panels>
std::vector<ConditionPanel> asList(const Panels& panels) {
  return {panels.begin(), panels.end()};
}

std::vector<ConditionPanel> panelsOf(const ConditionSet& set, int tab, UsageId usage) {
  if (tab == 0) return {pagePanel(set, conditionOfUsage(usage))};
  const ConditionPage& page = conditionPage(tab);
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

EditorPage::EditorPage(Session& session, ConditionClicks& clicks, ConditionFacts& facts, QWidget* parent)
    : QScrollArea(parent), session_(session) {
  auto* page = new QWidget;
  grid_ = new QGridLayout(page);
  grid_->setContentsMargins(12, 12, 12, 8);
  grid_->setHorizontalSpacing(20);
  grid_->setVerticalSpacing(16);
  setWidget(page);
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  for (int i = 0; i < kIntervalCount; ++i) {
    auto* editor = new ConditionEditor(session, clicks, facts, i, page);
    editors_.push_back(editor);
    grid_->addWidget(editor, i / 2, i % 2);
  }
}

void EditorPage::open(int tab, UsageId usage) {
  const auto panels = panelsOf(session_.settings.set(), tab, usage);
  const bool shape = tab != 0 && conditionPage(tab).kind == PageKind::shapes;
  PanelBox& first = editors_.front()->panel();
  first.list().setObjectName(shape ? QStringLiteral("pageShapes") : QStringLiteral("pageValues.0"));
  first.box().setObjectName(shape ? QStringLiteral("pageShapeSwitch") : QStringLiteral("pageSwitch.0"));
  for (std::size_t i = 0; i < editors_.size(); ++i) {
    const bool used = i < panels.size();
    if (used)
      editors_[i]->open(conditionOfUsage(panels[i].usage), panels[i],
                        shape ? ConditionEditor::Box::follows : ConditionEditor::Box::stays);
    editors_[i]->setVisible(used);
  }
}

void EditorPage::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  const int columns = viewport()->width() < kTwoColumns ? 1 : 2;
  if (std::exchange(columns_, columns) == columns) return;
  for (std::size_t i = 0; i < editors_.size(); ++i) {
    grid_->removeWidget(editors_[i]);
    grid_->addWidget(editors_[i], static_cast<int>(i) / columns, static_cast<int>(i) % columns);
  }
}

void EditorPage::refresh() {
  for (ConditionEditor* editor : editors_)
    if (!editor->isHidden()) editor->refresh();
}

void EditorPage::showDraw(PeriodNo period) {
  for (ConditionEditor* editor : editors_)
    if (!editor->isHidden()) editor->showDraw(period);
}

std::vector<const Condition*> EditorPage::conditions() const {
  std::vector<const Condition*> list;
  for (const ConditionEditor* editor : editors_)
    if (!editor->isHidden() && editor->condition() != nullptr) list.push_back(editor->condition());
  return list;
}

}  // namespace lotmere::ui
