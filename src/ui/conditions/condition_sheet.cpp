#include "ui/conditions/condition_sheet.hpp"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QResizeEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "panels/help_texts.hpp"
#include "store/periods.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {
namespace {

constexpr int kLeastColumn = 190;  // width; as many columns stand beside each other as find room
constexpr int kFewestColumns = 2;
constexpr int kMostColumns = 10;
constexpr int kListHeight = 132;

// "当前取值：" and the values on one line.
QString oneLine(const std::string& tip) { return shown(tip).simplified().remove(QLatin1Char(' ')); }

QString numbered(const char* name, int index) {
  return QStringLiteral("%1.%2").arg(QString::fromUtf8(name)).arg(index);
}

}  // namespace

ConditionSheetView::ConditionSheetView(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QScrollArea(parent),
      session_(session),
      clicks_(clicks),
      page_(new QWidget),
      picker_(new NumberPicker(this)) {
  page_->setObjectName(QStringLiteral("conditionSheet"));
  setWidget(page_);
  auto* layout = new QVBoxLayout(page_);
  layout->setContentsMargins(4, 4, 10, 8);
  layout->setSpacing(14);
  makeSlots();
  makeCombinations();
  makeDivisions();
  layout->addStretch();
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  connect(picker_, &NumberPicker::picked, this, [this](const QString& name, const std::vector<int>& numbers) {
    clicks_.change([&](ConditionSet& set) { setCustomInterval(set, utf8(name), numbers); },
                   [this] { showDivision(); });
  });
}

ConditionSheetView::Section& ConditionSheetView::addSection(const QString& title) {
  auto* label = new QLabel(title, page_);
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(12);
  grid->setVerticalSpacing(12);
  auto* layout = static_cast<QVBoxLayout*>(page_->layout());
  layout->addWidget(label);
  layout->addLayout(grid);
  sections_.push_back({grid, {}});
  return sections_.back();
}

void ConditionSheetView::place(Section& section) {
  for (int i = 0; i < kMostColumns; ++i) section.grid->setColumnStretch(i, i < columns_ ? 1 : 0);
  for (std::size_t i = 0; i < section.cells.size(); ++i) {
    const int at = static_cast<int>(i);
    section.grid->removeWidget(section.cells[i]);
    section.grid->addWidget(section.cells[i], at / columns_, at % columns_, Qt::AlignTop);
  }
}

void ConditionSheetView::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  const int columns = std::clamp(viewport()->width() / kLeastColumn, kFewestColumns, kMostColumns);
  if (std::exchange(columns_, columns) == columns) return;
  for (Section& section : sections_) place(section);
}

PanelBox* ConditionSheetView::addPanel(Section& section, const QString& list, const QString& box,
                                       const Condition& condition, std::function<void()> show) {
  auto* panel = new PanelBox(list, box, page_);
  panel->list().setFixedHeight(kListHeight);
  section.cells.push_back(panel);
  clicks_.connectPanel(*panel, condition, std::move(show));
  return panel;
}

void ConditionSheetView::makeSlots() {
  Section& values = addSection(QStringLiteral("数值条件"));
  for (int i = 0; i < kSlotCount; ++i) {
    const Condition* condition = slotCondition(i);
    if (condition == nullptr) continue;
    slots_[i] = addPanel(values, numbered("metricValues", i), numbered("metricSwitch", i), *condition,
                         [this, i] { showSlotTip(i); });
  }
  Section& intervals = addSection(QStringLiteral("区间"));
  for (int i = 0; i < kIntervalCount; ++i)
    intervals_[i] = addPanel(intervals, numbered("intervalValues", i + 1), numbered("metricSwitch", 16 + i),
                             conditionOfUsage(usageOfInterval(i + 1)));
  Section& relatives = addSection(QStringLiteral("与历史数据有关的条件"));
  for (int i = 0; i < kRelativeCount; ++i)
    relatives_[i] = addPanel(relatives, numbered("relativeValues", i), numbered("relativeSwitch", i),
                             relativeCondition(i));
  for (int i = 0; i < kHeatCount; ++i) {
    heat_[i] = addPanel(relatives, numbered("heatValues", i), numbered("heatSwitch", i), heatCondition(i));
    heat_[i]->list().setToolTip(shown(heatCondition(i).help));
  }
}

void ConditionSheetView::makeCombinations() {
  QGridLayout* concrete = addSection(shown(kCombinationCaption)).grid;
  periods_ = new QComboBox;
  periods_->setObjectName(QStringLiteral("combinationPeriods"));
  periods_->setAccessibleName(QStringLiteral("期号"));
  combinations_ = new CheckList;
  combinations_->setObjectName(QStringLiteral("combinationDraws"));
  combinations_->setFixedHeight(2 * kListHeight);
  concrete->addWidget(periods_, 0, 0, Qt::AlignLeft);
  concrete->addWidget(combinations_, 1, 0);
  connect(periods_, &QComboBox::activated, this,
          [this] { session_.commands.runner().run([this] { buildCombinations(); }); });
  connect(combinations_, &CheckList::itemClicked, this,
          [this](int turn, bool selected) { useTurns({turn}, selected); });
  connect(combinations_, &CheckList::itemsClicked, this, &ConditionSheetView::useTurns);
  Section& shapes = addSection(QStringLiteral("组合形式"));
  const auto panels = shapePanels(session_.settings.set());
  for (int i = 0; i < kTurnCount; ++i)
    shapes_[i] = addPanel(shapes, numbered("shapeValues", i), numbered("shapeSwitch", i),
                          conditionOfUsage(panels[i].usage));
}

void ConditionSheetView::useTurns(const std::vector<int>& turns, bool used) {
  clicks_.change([&](ConditionSet& set) {
    for (const int turn : turns) clickItem(set, conditionOfUsage(usageOfTurn(turn)), turn, used);
  });
}

void ConditionSheetView::makeDivisions() {
  Section& section = addSection(QStringLiteral("自定义区间"));
  auto* options = new QHBoxLayout;
  auto* group = new QButtonGroup(this);
  for (int division = kSmallestDivision; division <= kLargestDivision; ++division) {
    auto* option = new QRadioButton(shown(divisionCaption(division)));
    option->setObjectName(numbered("divisionChoice", division - kSmallestDivision));
    option->setChecked(division == shown_division_);
    group->addButton(option, division);
    options->addWidget(option);
  }
  options->addStretch();
  static_cast<QVBoxLayout*>(page_->layout())->insertLayout(page_->layout()->count() - 1, options);
  connect(group, &QButtonGroup::idClicked, this, [this, group](int division) {
    session_.commands.runner().run([this, division] {
      shown_division_ = division;
      showDivision();
    });
    group->button(shown_division_)->setChecked(true);  // a running command has refused the click
  });
  for (int i = 0; i < kLargestDivision; ++i) {
    auto* cell = new QWidget(page_);
    auto* column = new QVBoxLayout(cell);
    column->setContentsMargins(0, 0, 0, 0);
    division_[i] = new PanelBox(numbered("divisionValues", i), numbered("divisionSwitch", i), cell);
    division_[i]->list().setFixedHeight(kListHeight);
    pickers_[i] = new QPushButton(QStringLiteral("选择号码..."), cell);
    pickers_[i]->setObjectName(numbered("divisionMembers", 101 + i));
    column->addWidget(division_[i]);
    column->addWidget(pickers_[i], 0, Qt::AlignLeft);
    section.cells.push_back(cell);
    connect(pickers_[i], &QPushButton::clicked, this, [this, i] { pickNumbers(i); });
    connect(division_[i], &PanelBox::boxClicked, this, [this, i](bool on) {
      clicks_.change([&](ConditionSet& set) { set.use(division_panels_[i].condition.usage, on); });
    });
    connect(division_[i], &PanelBox::itemClicked, this, [this, i](int k, bool selected) {
      clicks_.change([&](ConditionSet& set) { clickItem(set, division_panels_[i].condition, k, selected); });
    });
    connect(division_[i], &PanelBox::itemsClicked, this,
            [this, i](const std::vector<int>& items, bool selected) {
              clicks_.change([&](ConditionSet& set) {
                for (const int k : items) clickItem(set, division_panels_[i].condition, k, selected);
              });
            });
  }
}

void ConditionSheetView::open() {
  if (!stale_) return;
  panelReload();
  stale_ = false;
  for (CheckList* list : page_->findChildren<CheckList*>()) list->showFirstTicked();
}

void ConditionSheetView::showSettings() {
  if (stale_) return;
  showPanels();
  showCombinations();
  const std::string name = utf8(picker_->name());
  picker_->showMembers(tableOf(session_.settings.set().column(AttributeTable::third, name)));
}

void ConditionSheetView::panelReload() {
  showPanels();
  periods_->clear();
  const auto newest =
      session_.store.run([](Store& store) { return newestPeriods(store, kCombinationDraws); });
  for (const PeriodNo period : newest) periods_->addItem(QString::number(period), period);
  buildCombinations();
}

void ConditionSheetView::showPanels() {
  const ConditionSheet sheet = lotmere::panelReload(session_.settings.set());
  for (int i = 0; i < kSlotCount; ++i) {
    if (slots_[i] == nullptr) continue;
    slots_[i]->showPanel(sheet.slots[i]);
    slots_[i]->showLine(oneLine(sheet.tips[i]));
  }
  for (int i = 0; i < kIntervalCount; ++i) intervals_[i]->showPanel(sheet.intervals[i]);
  for (int i = 0; i < 4; ++i) relatives_[i]->showPanel(sheet.relatives[i]);
  for (int i = 0; i < 2; ++i) heat_[i]->showPanel(sheet.heat[i]);
  for (int i = 0; i < kTurnCount; ++i) shapes_[i]->showPanel(sheet.shapes[i]);
  showDivision();
}

void ConditionSheetView::showSlotTip(int slot) {
  slots_[slot]->showLine(oneLine(slotTip(session_.settings.set(), slot)));
}

void ConditionSheetView::buildCombinations() {
  combination_texts_ = session_.store.run([this, period = periods_->currentData().toInt()](Store& store) {
    return combinationTexts(store, session_.desk, period);
  });
  showCombinations();
}

void ConditionSheetView::showCombinations() {
  combinations_->showItems(combinationList(session_.settings.set(), combination_texts_));
}

void ConditionSheetView::showDivision() {
  division_panels_ = divisionPanels(session_.settings.set(), shown_division_);
  for (std::size_t i = 0; i < division_.size(); ++i) {
    const bool used = i < division_panels_.size();
    division_[i]->parentWidget()->setVisible(used);
    if (!used) continue;
    division_[i]->showPanel(division_panels_[i].panel);
    division_[i]->showLine(shown(division_panels_[i].numbers));
    clicks_.setTip(*division_[i], [this, i] { return division_panels_[i].condition; });
    pickers_[i]->setAccessibleName(shown(division_panels_[i].panel.caption));
  }
}

void ConditionSheetView::pickNumbers(int place) {
  const std::string& name = division_panels_[static_cast<std::size_t>(place)].panel.caption;
  session_.commands.runner().run([&] {
    picker_->open(shown(name), tableOf(session_.settings.set().column(AttributeTable::third, name)),
                  *pickers_[place]);
  });
}

}  // namespace lotmere::ui
