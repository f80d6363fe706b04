// Clicks on conditions: what every panel does with one, in one place.
#pragma once

#include <QButtonGroup>
#include <QObject>
#include <functional>
#include <optional>

#include "advice/strength.hpp"
#include "conditions/condition_set.hpp"
#include "store/draw_table.hpp"
#include "ui/conditions/panel_box.hpp"
#include "ui/shell/answer_thread.hpp"
#include "ui/shell/session.hpp"

namespace lotmere::ui {

// Makes clicks changes of the settings, and gives the panels that it serves their tips.
class ConditionClicks : public QObject {
  Q_OBJECT

 public:
  explicit ConditionClicks(Session& session) : session_(session), strengths_(session.desk) {}

  // A box that switches a condition, and a list whose items are its cells. `show` follows a stored click on
  // an item.
  void connectPanel(PanelBox& panel, const Condition& condition, std::function<void()> show = {});
  // The same for a list that leads its box: any item switches the condition on, none switches it off.
  void connectLeading(PanelBox& panel, const Condition& condition);
  // What a box lets through, worked out from values alone.
  using Measure =
      std::function<std::optional<Strength>(const ConditionSet&, const DrawTable&, PeriodNo next)>;
  // Gives a box its tip: lines of its own at once, and how much it lets through as soon as that is worked out
  // beside the window. `measure` says what is worked out for the box as it stands.
  void setTip(TipBox& box, std::function<QString()> lines, std::function<Measure()> measure);
  // The same for the box of a condition: its name, and the line of its current values.
  void setTip(PanelBox& panel, const std::function<Condition()>& condition);

  // Any other change of the settings. `show`, behind it, shows what follows from it. Where the change can't
  // be saved, which is told, or a command runs, the settings say that it was refused.
  void change(const std::function<void(ConditionSet&)>& edit, const std::function<void()>& show = {});

  // Takes a panel's clicks away, before it is connected to another condition.
  void disconnectPanel(PanelBox& panel) { panel.disconnect(this); }

 private:
  void connectBox(PanelBox& panel, UsageId usage);
  // A range of items at once.
  void connectRange(PanelBox& panel, const Condition& condition, bool leading, std::function<void()> show);

  Session& session_;
  AnswerThread strengths_;
};

// Ticks one option of a group, or none where what is set names none.
void showOnly(QButtonGroup& options, QAbstractButton* option);

}  // namespace lotmere::ui
