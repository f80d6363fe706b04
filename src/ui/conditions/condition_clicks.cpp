#include "ui/conditions/condition_clicks.hpp"

#include "ui/look/text.hpp"

namespace lotmere::ui {

void ConditionClicks::change(const std::function<void(ConditionSet&)>& edit,
                             const std::function<void()>& show) {
  bool runs = false;
  session_.commands.runner().run([&] {
    runs = true;
    session_.settings.change(edit);
    if (show) show();
  });
  if (!runs) Q_EMIT session_.settings.refused();
}

void ConditionClicks::setTip(TipBox& box, std::function<QString()> lines, std::function<Measure()> measure) {
  box.setTipText([this, &box, lines = std::move(lines), measure = std::move(measure)] {
    strengths_.ask(session_.store, [&box, work_out = measure(), set = session_.settings.set(),
                                    date = session_.entry_date](Store& store, Course& /*course*/) {
      return [&box, work_out, set, draws = loadDrawTable(store),
              next = nextPeriod(store, date)](Course& /*course*/) -> AnswerThread::Answer {
        const auto strength = work_out(set, draws, next);
        if (!strength) return {};
        return [&box, line = strengthText(*strength)] { box.extendTip(shown(line)); };
      };
    });
    return lines();
  });
}

void ConditionClicks::setTip(PanelBox& panel, const std::function<Condition()>& condition) {
  setTip(
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

void ConditionClicks::connectBox(PanelBox& panel, UsageId usage) {
  connect(&panel, &PanelBox::boxClicked, this,
          [this, usage](bool on) { change([=](ConditionSet& set) { set.use(usage, on); }); });
}

void ConditionClicks::connectRange(PanelBox& panel, const Condition& condition, bool leading,
                                   std::function<void()> show) {
  connect(&panel, &PanelBox::itemsClicked, this,
          [this, condition, leading, &panel, show = std::move(show)](const std::vector<int>& items,
                                                                     bool selected) {
            BoxState box{};
            change(
                [&](ConditionSet& set) {
                  for (const int k : items)
                    if (leading)
                      box = clickLeadingItem(set, condition, k, selected);
                    else
                      clickItem(set, condition, k, selected);
                },
                [&] {
                  if (leading) panel.showBox(box);
                  if (show) show();
                });
          });
}

void ConditionClicks::connectPanel(PanelBox& panel, const Condition& condition, std::function<void()> show) {
  setTip(panel, [condition] { return condition; });
  connectBox(panel, condition.usage);
  connectRange(panel, condition, false, show);
  connect(&panel, &PanelBox::itemClicked, this,
          [this, condition, show = std::move(show)](int k, bool selected) {
            change([&](ConditionSet& set) { clickItem(set, condition, k, selected); }, show);
          });
}

void ConditionClicks::connectLeading(PanelBox& panel, const Condition& condition) {
  setTip(panel, [condition] { return condition; });
  connectBox(panel, condition.usage);
  connectRange(panel, condition, true, {});
  connect(&panel, &PanelBox::itemClicked, this, [this, condition, &panel](int k, bool selected) {
    BoxState box{};
    change([&](ConditionSet& set) { box = clickLeadingItem(set, condition, k, selected); },
           [&] { panel.showBox(box); });
  });
}

void showOnly(QButtonGroup& options, QAbstractButton* option) {
  if (option != nullptr) return option->setChecked(true);
  options.setExclusive(false);
  for (QAbstractButton* each : options.buttons()) each->setChecked(false);
  options.setExclusive(true);
}

}  // namespace lotmere::ui
