// Clicks on conditions: what every panel does with one, in one place.
#pragma once

#include <QButtonGroup>
#include <QObject>

#include "ui/panel_box.hpp"
#include "ui/session.hpp"

namespace lotmere::ui {

// Writes clicks to the store at once and says that something changed. The panels that it serves get their
// tips, and show again what is stored when a click can't be.
class ConditionClicks : public QObject {
  Q_OBJECT

 public:
  explicit ConditionClicks(Session& session) : session_(session) {}

  // A box that switches a condition, and a list whose items are its cells. `show` follows a stored click on
  // an item.
  void connect_Panel(PanelBox& panel, const Condition& condition, std::function<void()> show = {});
  // The same for a list that leads its box: any item switches the condition on, none switches it off.
  void connect_Leading(PanelBox& panel, const Condition& condition);
  // What the tip of a condition's box says: its name, the line of its current values, and how much it lets
  // through.
  [[nodiscard]] QString tip_Text(const Condition& condition, const QString& line);

  // Any other change of a setting; reported as the others. `show`, behind the write, shows what follows from
  // it. False when nothing was stored: the write failed, which was told, or a command runs. The control that
  // was clicked shows the click already, so its owner then shows again what it showed before; reading the
  // store wouldn't do, as what refuses a write may refuse a read.
  bool change(const std::function<void()>& write, const std::function<void()>& show = {});

  // Takes a panel's clicks away, before it is connected to another condition.
  void disconnect_Panel(PanelBox& panel) { panel.disconnect(this); }

 Q_SIGNALS:
  // A setting changed, behind the write.
  void changed();

 private:
  void set_Tip(PanelBox& panel, const Condition& condition);
  void connect_Box(PanelBox& panel, UsageId usage);

  Session& session_;
};

// Ticks one option of a group, or none where what is stored names none.
void show_Only(QButtonGroup& options, QAbstractButton* option);

}  // namespace lotmere::ui
