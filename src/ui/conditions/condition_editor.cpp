#include "ui/conditions/condition_editor.hpp"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "base/number_list.hpp"
#include "conditions/values.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kLeastList = 216;  // height of a list of seven counts

}  // namespace

ConditionEditor::ConditionEditor(Session& session, ConditionClicks& clicks, ConditionFacts& facts, int place,
                                 QWidget* parent)
    : QWidget(parent),
      session_(session),
      clicks_(clicks),
      facts_(facts),
      panel_(new PanelBox(QStringLiteral("pageValues.%1").arg(place),
                          QStringLiteral("pageSwitch.%1").arg(place))),
      definition_(new QLabel),
      balls_(new GroupBalls),
      text_(new QLineEdit),
      tools_(makeTools(place)),
      draw_(new QLabel),
      legend_(new QLabel),
      foot_(new QLabel) {
  legend_->setTextFormat(Qt::RichText);
  legend_->setText(QStringLiteral("<span style='color:%1'>■</span> 占全部红球组合的比例　"
                                  "<span style='color:%2'>■</span> 最近 %3 期")
                       .arg(colours().chance.name(), colours().running_gap.name())
                       .arg(kStrengthDraws));
  legend_->setForegroundRole(QPalette::PlaceholderText);
  definition_->setObjectName(QStringLiteral("conditionDefinition.%1").arg(place));
  balls_->setObjectName(QStringLiteral("conditionBalls.%1").arg(place));
  foot_->setObjectName(QStringLiteral("conditionStrength.%1").arg(place));
  for (QLabel* label : {definition_, foot_}) {
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
  }
  draw_->setObjectName(QStringLiteral("conditionDraw.%1").arg(place));
  draw_->setWordWrap(true);
  definition_->setForegroundRole(QPalette::PlaceholderText);
  for (QWidget* widget : std::initializer_list<QWidget*>{definition_, balls_, draw_, tools_})
    panel_->addAboveList(widget);
  panel_->list().setMinimumHeight(kLeastList);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(6);
  layout->addWidget(panel_, 1);
  layout->addWidget(legend_);
  layout->addWidget(foot_);
}

QWidget* ConditionEditor::makeTools(int place) {
  auto* tools = new QWidget;
  auto* row = new QHBoxLayout(tools);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(6);
  text_->setObjectName(QStringLiteral("conditionValues.%1").arg(place));
  text_->setAccessibleName(QStringLiteral("允许的取值 %1").arg(place + 1));
  text_->setMinimumWidth(90);
  row->addWidget(text_, 1);
  connect(text_, &QLineEdit::editingFinished, this, &ConditionEditor::takeText);
  const auto add = [&](const char* name, const char* caption, const char* tip, auto items) {
    auto* button = new QPushButton(QString::fromUtf8(caption));
    button->setObjectName(QStringLiteral("%1.%2").arg(QString::fromUtf8(name)).arg(place));
    button->setToolTip(QString::fromUtf8(tip));
    button->setAccessibleName(QStringLiteral("%1 %2").arg(button->text()).arg(place + 1));
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this, items] { allow(items()); });
  };
  const auto all = [this] {
    std::vector<int> items;
    for (const PanelItem& item : panel_->list().list().items()) items.push_back(item.k);
    return items;
  };
  add("allowAll", "全选", "允许全部取值", all);
  add("allowOthers", "反选", "允许的换成不允许的", [this, all] {
    std::vector<int> others = all();
    const std::vector<int> allowed = allowedItems();
    std::erase_if(others, [&](int k) { return std::ranges::binary_search(allowed, k); });
    return others;
  });
  add("allowFactory", "默认值", "回到默认的取值", [this] {
    return parseNumberList(condition_->factory, 0, cellCount(*condition_) - 1).value_or(std::vector<int>{});
  });
  add("allowDrawn", "近100期", "最近100期出现过的取值", [this] { return drawnItems(); });
  return tools;
}

void ConditionEditor::open(const Condition& condition, const ConditionPanel& panel, Box box) {
  const bool other = condition_ != &condition;
  condition_ = &condition;
  box_ = box;
  clicks_.disconnectPanel(*panel_);
  panel_->showPanel(panel);
  if (box == Box::follows)
    clicks_.connectLeading(*panel_, condition);
  else
    clicks_.connectPanel(*panel_, condition);
  definition_->setText(shown(condition.definition));
  tools_->setVisible(!panel.items.empty() && cellCount(condition) > 0);
  if (other) text_->setModified(false);
  draw_->hide();
  showFacts();
  if (other) panel_->list().showFirstTicked();
}

void ConditionEditor::showDraw(PeriodNo period) {
  const DrawTable* draws = facts_.draws();
  const auto drawn = draws == nullptr ? std::span<const PastDraw>() : draws->range(period, period);
  if (drawn.empty()) return;
  QStringList numbers;
  for (const int red : drawn.front().numbers.reds) numbers.append(shown(formatBall(red)));
  QString text = QStringLiteral("%1 期：%2 + %3")
                     .arg(period)
                     .arg(numbers.join(QLatin1Char(' ')), shown(formatBall(drawn.front().numbers.blue)));
  const auto figure = figureOfDraw(session_.settings.set(), *draws, *condition_, period);
  const auto& items = panel_->list().list().items();
  const auto item =
      std::ranges::find_if(items, [&](const PanelItem& each) { return figure && each.k == *figure; });
  if (item != items.end()) {
    text += QStringLiteral("　→　") + shown(item->text);
    panel_->list().showRow(static_cast<int>(item - items.begin()));
  }
  draw_->setText(text);
  draw_->show();
}

void ConditionEditor::refresh() {
  if (condition_ == nullptr) return;
  const ConditionSet& set = session_.settings.set();
  panel_->box().setChecked(set.isTicked(condition_->usage));
  auto items = panelItems(set, *condition_);
  const auto& now = panel_->list().list().items();
  // The texts stay as the page has them.
  for (std::size_t i = 0; i < items.size() && i < now.size(); ++i) items[i].text = now[i].text;
  if (!now.empty()) panel_->list().showItems(std::move(items));
  showFacts();
}

void ConditionEditor::showFacts() {
  const ValueShares* shares = facts_.shares(*condition_);
  std::vector<ItemShare> bars;
  if (shares != nullptr)
    for (const PanelItem& item : panel_->list().list().items()) {
      const auto k = static_cast<std::size_t>(item.k);
      bars.push_back({static_cast<double>(shares->sixes.at(k)) / static_cast<double>(kAllRedSixes),
                      shares->draws.at(k), shares->draws_looked_at});
    }
  panel_->list().showShares(std::move(bars));
  const auto groups = facts_.groups(*condition_);
  balls_->setVisible(groups.has_value());
  if (groups) balls_->showGroups(*groups);
  legend_->setVisible(shares != nullptr && shares->draws_looked_at > 0);
  const auto strength = facts_.strength(*condition_);
  foot_->setText(strength ? shown(strengthSentence(*strength, looksBack(*condition_) ||
                                                                  condition_->kind == CellKind::combination))
                          : QString());
  if (!text_->isModified()) text_->setText(shown(formatValues(*condition_, allowedItems())));
}

std::vector<int> ConditionEditor::allowedItems() const {
  std::vector<int> items;
  if (cellCount(*condition_) == 0) return items;
  const ValueArray cells = session_.settings.set().cellRange(condition_->first, condition_->last);
  for (int k = 0; k < cellCount(*condition_); ++k)
    if (cells[static_cast<std::size_t>(k)] > 0) items.push_back(k);
  return items;
}

std::vector<int> ConditionEditor::drawnItems() const {
  std::vector<int> items;
  const ValueShares* shares = facts_.shares(*condition_);
  if (shares == nullptr) return allowedItems();
  for (std::size_t k = 0; k < shares->draws.size(); ++k)
    if (shares->draws[k] > 0) items.push_back(static_cast<int>(k));
  return items;
}

void ConditionEditor::allow(const std::vector<int>& items) {
  text_->setModified(false);
  const auto edit = [&](ConditionSet& set) {
    for (int k = 0; k < cellCount(*condition_); ++k)
      set.allow(condition_->first + k, std::ranges::find(items, k) != items.end());
    if (box_ == Box::follows) set.use(condition_->usage, !items.empty());
  };
  clicks_.change(edit, [this] { refresh(); });
}

void ConditionEditor::takeText() {
  if (!text_->isModified()) return;
  text_->setModified(false);
  const std::string typed = utf8(text_->text());
  const auto items = parseValues(*condition_, typed);
  if (items) return allow(*items);
  session_.commands.runner().run([&] {
    ConditionSet copy = session_.settings.set();
    (void)allowValues(copy, session_.desk, *condition_, typed);  // tells what is wrong with it
  });
  refresh();
}

}  // namespace lotmere::ui
