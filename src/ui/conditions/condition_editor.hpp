// One condition with everything about it: what it means, which numbers it looks at, which values are allowed,
// how often each comes, and what all of it lets through.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QWidget>

#include "ui/conditions/condition_clicks.hpp"
#include "ui/conditions/condition_facts.hpp"
#include "ui/conditions/group_balls.hpp"

namespace lotmere::ui {

class ConditionEditor : public QWidget {
  Q_OBJECT

 public:
  // What a click on an item does to the box of the condition.
  enum class Box { stays, follows };

  ConditionEditor(Session& session, ConditionClicks& clicks, ConditionFacts& facts, int place,
                  QWidget* parent = nullptr);

  // Shows a condition as it is set. `panel` is its box and list; a list without items leaves its tools out.
  void open(const Condition& condition, const ConditionPanel& panel, Box box);
  // The settings or the facts changed.
  void refresh();
  // Tells the numbers of a draw and its value, which the list shows; gone when another condition is opened.
  void showDraw(PeriodNo period);
  [[nodiscard]] const Condition* condition() const { return condition_; }
  [[nodiscard]] PanelBox& panel() { return *panel_; }

 private:
  QWidget* makeTools(int place);
  void showFacts();
  // The list, the field and the foot follow a change.
  void showValues();
  void takeText();
  // Allows exactly these items.
  void allow(const std::vector<int>& items);
  [[nodiscard]] std::vector<int> allowedItems() const;
  [[nodiscard]] std::vector<int> drawnItems() const;

  Session& session_;
  ConditionClicks& clicks_;
  ConditionFacts& facts_;
  const Condition* condition_ = nullptr;
  Box box_ = Box::stays;
  PanelBox* panel_;
  QLabel* definition_;
  GroupBalls* balls_;
  QLineEdit* text_;
  QWidget* tools_;
  QLabel* draw_;
  QLabel* legend_;
  QLabel* foot_;
};

}  // namespace lotmere::ui
