#include "ui/condition_sheet.hpp"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include "conditions/condition_store.hpp"
#include "conditions/help_texts.hpp"
#include "history/combination_list.hpp"
#include "ui/text.hpp"

namespace lotmere::ui {
namespace {

constexpr int kColumns = 4;
constexpr int kListHeight = 132;

// "当前取值：" and the values on one line.
QString one_Line(const std::string& tip) { return shown(tip).simplified().remove(QLatin1Char(' ')); }

QString numbered(const char* name, int index) {
  return QStringLiteral("%1_%2").arg(QString::fromUtf8(name)).arg(index);
}

}  // namespace

ConditionSheetView::ConditionSheetView(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QScrollArea(parent),
      session_(session),
      clicks_(clicks),
      page_(new QWidget),
      picker_(new NumberPicker(this)) {
  page_->setObjectName(QStringLiteral("Frame_subtj"));
  setWidget(page_);
  auto* layout = new QVBoxLayout(page_);
  layout->setContentsMargins(4, 4, 10, 8);
  layout->setSpacing(14);
  make_Slots();
  make_Combinations();
  make_Divisions();
  layout->addStretch();
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  connect(picker_, &NumberPicker::picked, this,
          [this](const QString& name, const std::vector<int>& numbers, int clicked) {
            if (!clicks_.change([&] { set_CustomInterval(session_.store, utf8(name), numbers); },
                                [this] { show_Division(); }))
              picker_->take_Back(clicked);
          });
}

QGridLayout* ConditionSheetView::add_Section(const QString& title) {
  auto* label = new QLabel(title, page_);
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(12);
  grid->setVerticalSpacing(12);
  for (int i = 0; i < kColumns; ++i) grid->setColumnStretch(i, 1);
  auto* layout = static_cast<QVBoxLayout*>(page_->layout());
  layout->addWidget(label);
  layout->addLayout(grid);
  return grid;
}

PanelBox* ConditionSheetView::add_Panel(QGridLayout* grid, const QString& list, const QString& box,
                                        const Condition& condition, std::function<void()> show) {
  auto* panel = new PanelBox(list, box, page_);
  panel->list().setFixedHeight(kListHeight);
  const int place = grid->count();
  grid->addWidget(panel, place / kColumns, place % kColumns, Qt::AlignTop);
  clicks_.connect_Panel(*panel, condition, std::move(show));
  return panel;
}

void ConditionSheetView::make_Slots() {
  QGridLayout* values = add_Section(QStringLiteral("数值条件"));
  for (int i = 0; i < kSlotCount; ++i) {
    const Condition* condition = slot_Condition(i);
    if (condition == nullptr) continue;
    slots_[i] = add_Panel(values, numbered("List_TjA", i), numbered("Check_useTiaojiao", i), *condition,
                          [this, i] { show_SlotTip(i); });
  }
  QGridLayout* intervals = add_Section(QStringLiteral("区间"));
  for (int i = 0; i < kIntervalCount; ++i)
    intervals_[i] = add_Panel(intervals, numbered("List_QJ", i + 1), numbered("Check_useTiaojiao", 16 + i),
                              conditionOfUsage(usage_OfInterval(i + 1)));
  QGridLayout* relatives = add_Section(QStringLiteral("与历史数据有关的条件"));
  for (int i = 0; i < kRelativeCount; ++i)
    relatives_[i] =
        add_Panel(relatives, numbered("List_wscd", i), numbered("Check_tj3", i), relative_Condition(i));
  const char* const heat[] = {"wenDu5", "wenDu10"};
  for (int i = 0; i < kHeatCount; ++i) {
    const QString name = QString::fromUtf8(heat[i]);
    heat_[i] = add_Panel(relatives, QStringLiteral("List_") + name, QStringLiteral("Check_") + name,
                         heat_Condition(i));
    heat_[i]->list().setToolTip(shown(heat_Condition(i).help));
  }
}

void ConditionSheetView::make_Combinations() {
  QGridLayout* concrete = add_Section(shown(kCombinationCaption));
  periods_ = new QComboBox;
  periods_->setObjectName(QStringLiteral("Combo_guoluqh"));
  periods_->setAccessibleName(QStringLiteral("期号"));
  combinations_ = new CheckList;
  combinations_->setObjectName(QStringLiteral("List_jtzhsgl"));
  combinations_->setFixedHeight(2 * kListHeight);
  concrete->addWidget(periods_, 0, 0);
  concrete->addWidget(combinations_, 1, 0, 1, kColumns);
  connect(periods_, &QComboBox::activated, this,
          [this] { session_.commands.runner().run([this] { build_Combinations(); }); });
  connect(combinations_, &CheckList::item_Clicked, this, [this](int turn, bool selected) {
    const Condition& condition = conditionOfUsage(usage_OfTurn(turn));
    if (!clicks_.change([&] { click_Item(session_.store, condition, turn, selected); }))
      combinations_->take_Back(turn);
  });
  QGridLayout* shapes = add_Section(QStringLiteral("组合形式"));
  const auto panels = tj_FillShapes(session_.store);
  for (int i = 0; i < kTurnCount; ++i)
    shapes_[i] = add_Panel(shapes, numbered("List_TiaojianMohu", i), numbered("Check_TiaojianMohu", i),
                           conditionOfUsage(panels[i].usage));
}

void ConditionSheetView::make_Divisions() {
  QGridLayout* grid = add_Section(QStringLiteral("自定义区间"));
  auto* options = new QHBoxLayout;
  auto* group = new QButtonGroup(this);
  for (int division = kSmallestDivision; division <= kLargestDivision; ++division) {
    auto* option = new QRadioButton(shown(division_Caption(division)));
    option->setObjectName(numbered("Option_qjFenlei", division - kSmallestDivision));
    option->setChecked(division == shown_division_);
    group->addButton(option, division);
    options->addWidget(option);
  }
  options->addStretch();
  static_cast<QVBoxLayout*>(page_->layout())->insertLayout(page_->layout()->count() - 1, options);
  connect(group, &QButtonGroup::idClicked, this, [this, group](int division) {
    session_.commands.runner().run([this, division] {
      shown_division_ = division;
      show_Division();
    });
    group->button(shown_division_)->setChecked(true);  // a running command has refused the click
  });
  for (int i = 0; i < kLargestDivision; ++i) {
    auto* place = new QWidget(page_);
    auto* column = new QVBoxLayout(place);
    column->setContentsMargins(0, 0, 0, 0);
    division_[i] = new PanelBox(numbered("List_zdyQJ", i), numbered("Check_zdyQJ", i), place);
    division_[i]->list().setFixedHeight(kListHeight);
    pickers_[i] = new QPushButton(QStringLiteral("选择号码..."), place);
    pickers_[i]->setObjectName(numbered("cmm_QujianTip", 101 + i));
    column->addWidget(division_[i]);
    column->addWidget(pickers_[i], 0, Qt::AlignLeft);
    grid->addWidget(place, i / kColumns, i % kColumns, Qt::AlignTop);
    connect(pickers_[i], &QPushButton::clicked, this, [this, i] { pick_Numbers(i); });
    connect(division_[i], &PanelBox::box_Clicked, this, [this, i](bool on) {
      if (!clicks_.change([&] { set_Usage(session_.store, division_panels_[i].condition.usage, on); }))
        division_[i]->take_BoxBack();
    });
    connect(division_[i], &PanelBox::item_Clicked, this, [this, i](int k, bool selected) {
      if (!clicks_.change([&] { click_Item(session_.store, division_panels_[i].condition, k, selected); }))
        division_[i]->list().take_Back(k);
    });
  }
}

void ConditionSheetView::open() {
  if (!stale_) return;
  panel_Reload();
  stale_ = false;
}

void ConditionSheetView::panel_Reload() {
  const ConditionSheet sheet = lotmere::panel_Reload(session_.store);
  for (int i = 0; i < kSlotCount; ++i) {
    if (slots_[i] == nullptr) continue;
    slots_[i]->show_Panel(sheet.slots[i]);
    slots_[i]->show_Line(one_Line(sheet.tips[i]));
  }
  for (int i = 0; i < kIntervalCount; ++i) intervals_[i]->show_Panel(sheet.intervals[i]);
  for (int i = 0; i < 4; ++i) relatives_[i]->show_Panel(sheet.relatives[i]);
  for (int i = 0; i < 2; ++i) heat_[i]->show_Panel(sheet.heat[i]);
  for (int i = 0; i < kTurnCount; ++i) shapes_[i]->show_Panel(sheet.shapes[i]);
  periods_->clear();
  for (const PeriodNo period : sheet.periods) periods_->addItem(QString::number(period), period);
  build_Combinations();
  show_Division();
}

void ConditionSheetView::show_SlotTip(int slot) {
  slots_[slot]->show_Line(one_Line(slot_Tip(session_.store, slot)));
}

void ConditionSheetView::build_Combinations() {
  const auto items = build_ZuHeList(session_.store, session_.desk, periods_->currentData().toInt());
  combinations_->show_Items({items.begin(), items.end()});
}

void ConditionSheetView::show_Division() {
  division_panels_ = division_Panels(session_.store, shown_division_);
  for (std::size_t i = 0; i < division_.size(); ++i) {
    const bool used = i < division_panels_.size();
    division_[i]->parentWidget()->setVisible(used);
    if (!used) continue;
    division_[i]->show_Panel(division_panels_[i].panel);
    division_[i]->show_Line(shown(division_panels_[i].numbers));
    clicks_.set_Tip(*division_[i], [this, i] { return division_panels_[i].condition; });
    pickers_[i]->setAccessibleName(shown(division_panels_[i].panel.caption));
  }
}

void ConditionSheetView::pick_Numbers(int place) {
  const std::string& name = division_panels_[static_cast<std::size_t>(place)].panel.caption;
  session_.commands.runner().run([&] {
    picker_->open(shown(name), read_AttributeColumn(session_.store, AttributeTable::third, name),
                  *pickers_[place]);
  });
}

}  // namespace lotmere::ui
