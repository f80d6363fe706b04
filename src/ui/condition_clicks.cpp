#include "ui/condition_clicks.hpp"

#include "conditions/condition_store.hpp"
#include "pipeline/strength.hpp"
#include "ui/text.hpp"

namespace lotmere::ui {

bool ConditionClicks::change(const std::function<void()>& write, const std::function<void()>& show) {
  bool stored = false;
  session_.commands.runner().run([&] {
    write();
    stored = true;
    Q_EMIT changed();
    if (show) show();
  });
  return stored;
}

QString ConditionClicks::tip_Text(const Condition& condition, const QString& line) {
  QStringList lines{shown(condition.name)};
  if (!line.isEmpty()) lines.append(line);
  run_Guarded(session_.desk, [&] {
    const auto strength =
        conditionStrength(loadConditionSet(session_.store), loadDrawTable(session_.store), condition,
                          session_.next_Period(), kStrengthDraws);
    if (strength) lines.append(shown(strength_Text(*strength)));
  });
  return lines.join(QLatin1Char('\n'));
}

void ConditionClicks::set_Tip(PanelBox& panel, const Condition& condition) {
  panel.box().set_TipText([this, &panel, condition] { return tip_Text(condition, panel.line()); });
}

void ConditionClicks::connect_Box(PanelBox& panel, UsageId usage) {
  connect(&panel, &PanelBox::box_Clicked, this, [this, usage, &panel](bool on) {
    if (!change([&] { set_Usage(session_.store, usage, on); })) panel.take_BoxBack();
  });
}

void ConditionClicks::connect_Panel(PanelBox& panel, const Condition& condition, std::function<void()> show) {
  set_Tip(panel, condition);
  connect_Box(panel, condition.usage);
  connect(&panel, &PanelBox::item_Clicked, this,
          [this, condition, &panel, show = std::move(show)](int k, bool selected) {
            if (!change([&] { click_Item(session_.store, condition, k, selected); }, show))
              panel.list().take_Back(k);
          });
}

void ConditionClicks::connect_Leading(PanelBox& panel, const Condition& condition) {
  set_Tip(panel, condition);
  connect_Box(panel, condition.usage);
  connect(&panel, &PanelBox::item_Clicked, this, [this, condition, &panel](int k, bool selected) {
    BoxState box{};
    const bool stored = change([&] { box = click_LeadingItem(session_.store, condition, k, selected); });
    if (stored)
      panel.show_Box(box);
    else
      panel.list().take_Back(k);
  });
}

void show_Only(QButtonGroup& options, QAbstractButton* option) {
  if (option != nullptr) return option->setChecked(true);
  options.setExclusive(false);
  for (QAbstractButton* each : options.buttons()) each->setChecked(false);
  options.setExclusive(true);
}

}  // namespace lotmere::ui
