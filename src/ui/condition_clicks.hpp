// Clicks on conditions: what every panel does with one, in one place.
#pragma once

#include <QObject>

#include "ui/panel_box.hpp"
#include "ui/session.hpp"

namespace lotmere::ui {

// Writes clicks to the store at once and says that something changed. The panels that it serves get their tips.
class ConditionClicks : public QObject {
  Q_OBJECT

 public:
  explicit ConditionClicks(Session& session) : session_(session) {}

  // A box that switches a condition, and a list whose items are its cells.
  void connect_Panel(PanelBox& panel, const Condition& condition);
  // The same for a list that leads its box: any item switches the condition on, none switches it off.
  void connect_Leading(PanelBox& panel, const Condition& condition);
  // What the tip of a condition's box says: its name, the line of its current values, and how much it lets through.
  [[nodiscard]] QString tip_Text(const Condition& condition, const QString& line);

  // Any other change of a setting; reported as the others.
  void change(const std::function<void()>& write);

  // Takes a panel's clicks away, before it is connected to another condition.
  void disconnect_Panel(PanelBox& panel) { panel.disconnect(this); }

 Q_SIGNALS:
  // A setting changed, behind the write.
  void changed();

 private:
  void set_Tip(PanelBox& panel, const Condition& condition);

  Session& session_;
};

}  // namespace lotmere::ui
