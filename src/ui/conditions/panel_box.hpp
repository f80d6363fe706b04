// A condition on the screen: the box that switches it, the list of what may be ticked, and a line that tells
// what is.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPoint>
#include <QWidget>
#include <functional>

#include "panels/panel.hpp"
#include "ui/widgets/check_list.hpp"

namespace lotmere::ui {

// A box whose tip is worked out when it opens.
class TipBox : public QCheckBox {
  Q_OBJECT

 public:
  using QCheckBox::QCheckBox;
  void setTipText(std::function<QString()> text) { tip_text_ = std::move(text); }
  // Adds a line to the tip that is shown for this box, if it still is.
  void extendTip(const QString& line);

 protected:
  bool event(QEvent* event) override;

 private:
  std::function<QString()> tip_text_;
  QPoint tip_place_;
  QString tip_;  // as shown last
};

class PanelBox : public QWidget {
  Q_OBJECT

 public:
  // The names of the list and of the box, as tests and tools find them.
  PanelBox(const QString& list_name, const QString& box_name, QWidget* parent = nullptr);

  // Shows the panel; a panel without items has no list. Nothing is written back.
  void showPanel(const ConditionPanel& panel);
  void showBox(const BoxState& box);
  // Puts a widget between the box and the list.
  void addAboveList(QWidget* widget);
  // Under the list; an empty text takes no room.
  void showLine(const QString& text);
  [[nodiscard]] QString line() const { return line_->text(); }

  [[nodiscard]] CheckList& list() { return *list_; }
  [[nodiscard]] TipBox& box() { return *box_; }

 Q_SIGNALS:
  void boxClicked(bool on);
  void itemClicked(int k, bool selected);
  void itemsClicked(const std::vector<int>& items, bool selected);

 private:
  TipBox* box_;
  CheckList* list_;
  QLabel* line_;
};

}  // namespace lotmere::ui
