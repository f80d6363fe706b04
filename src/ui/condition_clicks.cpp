#include "ui/condition_clicks.hpp"

#include "conditions/condition_store.hpp"
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

void ConditionClicks::set_Tip(TipBox& box, std::function<QString()> lines, std::function<Measure()> measure) {
  box.set_TipText([this, &box, lines = std::move(lines), measure = std::move(measure)] {
    run_Guarded(session_.desk, [&] {
      strengths_.ask([&box, work_out = measure(), set = loadConditionSet(session_.store),
                      draws = loadDrawTable(session_.store),
                      next = session_.next_Period()](Course& /*course*/) -> AnswerThread::Answer {
        const auto strength = work_out(set, draws, next);
        if (!strength) return {};
        return [&box, line = strength_Text(*strength)] { box.extend_Tip(shown(line)); };
      });
    });
    return lines();
  });
}

void ConditionClicks::set_Tip(PanelBox& panel, const std::function<Condition()>& condition) {
  set_Tip(
      panel.box(),
      [&panel, condition] {
        QStringList lines{shown(condition().name)};
        if (!panel.line().isEmpty()) lines.append(panel.line());
        return lines.join(QLatin1Char('\n'));
      },
      [condition]() -> Measure {
        return [condition = condition()](const ConditionSet& set, const DrawTable& draws, PeriodNo next) {
          return conditionStrength(set, draws, condition, next, kStrengthDraws);
        };
      });
}

void ConditionClicks::connect_Box(PanelBox& panel, UsageId usage) {
  connect(&panel, &PanelBox::box_Clicked, this, [this, usage, &panel](bool on) {
    if (!change([&] { set_Usage(session_.store, usage, on); })) panel.take_BoxBack();
  });
}

void ConditionClicks::connect_Panel(PanelBox& panel, const Condition& condition, std::function<void()> show) {
  set_Tip(panel, [condition] { return condition; });
  connect_Box(panel, condition.usage);
  connect(&panel, &PanelBox::item_Clicked, this,
          [this, condition, &panel, show = std::move(show)](int k, bool selected) {
            if (!change([&] { click_Item(session_.store, condition, k, selected); }, show))
              panel.list().take_Back(k);
          });
}

void ConditionClicks::connect_Leading(PanelBox& panel, const Condition& condition) {
  set_Tip(panel, [condition] { return condition; });
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
