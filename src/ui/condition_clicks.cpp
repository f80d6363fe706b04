#include "ui/condition_clicks.hpp"

#include "conditions/condition_store.hpp"
#include "pipeline/strength.hpp"
#include "ui/text.hpp"

namespace lotmere::ui {

void ConditionClicks::change(const std::function<void()>& write) {
  session_.commands.runner().run([&] {
    write();
    Q_EMIT changed();
  });
}

QString ConditionClicks::tip_Text(const Condition& condition, const QString& line) {
  QStringList lines{shown(condition.name)};
  if (!line.isEmpty()) lines.append(line);
  run_Guarded(session_.desk, [&] {
    const auto strength =
        condition_Strength(session_.store, condition, session_.next_Period(), kStrengthDraws);
    if (strength) lines.append(shown(strength_Text(*strength)));
  });
  return lines.join(QLatin1Char('\n'));
}

void ConditionClicks::set_Tip(PanelBox& panel, const Condition& condition) {
  panel.box().set_TipText([this, &panel, condition] { return tip_Text(condition, panel.line()); });
}

void ConditionClicks::connect_Panel(PanelBox& panel, const Condition& condition) {
  set_Tip(panel, condition);
  connect(&panel, &PanelBox::box_Clicked, this, [this, usage = condition.usage](bool on) {
    change([&] { set_Usage(session_.store, usage, on); });
  });
  connect(&panel, &PanelBox::item_Clicked, this, [this, condition](int k, bool selected) {
    change([&] { click_Item(session_.store, condition, k, selected); });
  });
}

void ConditionClicks::connect_Leading(PanelBox& panel, const Condition& condition) {
  set_Tip(panel, condition);
  connect(&panel, &PanelBox::box_Clicked, this, [this, usage = condition.usage](bool on) {
    change([&] { set_Usage(session_.store, usage, on); });
  });
  connect(&panel, &PanelBox::item_Clicked, this, [this, condition, &panel](int k, bool selected) {
    change([&] { panel.show_Box(click_LeadingItem(session_.store, condition, k, selected)); });
  });
}

}  // namespace lotmere::ui
