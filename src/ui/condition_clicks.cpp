#include "ui/condition_clicks.hpp"

#include "conditions/condition_store.hpp"

namespace lotmere::ui {

void ConditionClicks::change(const std::function<void()>& write) {
  session_.commands.runner().run([&] {
    write();
    Q_EMIT changed();
  });
}

void ConditionClicks::connect_Panel(PanelBox& panel, const Condition& condition) {
  connect(&panel, &PanelBox::box_Clicked, this, [this, usage = condition.usage](bool on) {
    change([&] { set_Usage(session_.store, usage, on); });
  });
  connect(&panel, &PanelBox::item_Clicked, this, [this, condition](int k, bool selected) {
    change([&] { click_Item(session_.store, condition, k, selected); });
  });
}

void ConditionClicks::connect_Leading(PanelBox& panel, const Condition& condition) {
  connect(&panel, &PanelBox::box_Clicked, this, [this, usage = condition.usage](bool on) {
    change([&] { set_Usage(session_.store, usage, on); });
  });
  connect(&panel, &PanelBox::item_Clicked, this, [this, condition, &panel](int k, bool selected) {
    change([&] { panel.show_Box(click_LeadingItem(session_.store, condition, k, selected)); });
  });
}

}  // namespace lotmere::ui
