// A list whose rows are ticked and unticked by a click or the space bar; Shift and dragging take a range.
// Beside each row may stand how often its value comes.
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <vector>

#include "panels/panel.hpp"

namespace lotmere::ui {

// How often the value of an item comes: by chance, and in the draws looked at.
struct ItemShare {
  double chance = 0;  // 0 to 1
  int draws = 0;
  int looked_at = 0;

  friend bool operator==(const ItemShare&, const ItemShare&) = default;
};

class CheckListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  void showItems(std::vector<PanelItem> items);
  [[nodiscard]] const std::vector<PanelItem>& items() const { return items_; }
  // One a row, in their order; none for a list without.
  void showShares(std::vector<ItemShare> shares);
  [[nodiscard]] const std::vector<ItemShare>& shares() const { return shares_; }
  // Ticks the rows first to last (in either order), or unticks them; gives the items that changed.
  std::vector<int> tick(int first, int last, bool selected);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  std::vector<PanelItem> items_;
  std::vector<ItemShare> shares_;
};

class CheckList : public QListView {
  Q_OBJECT

 public:
  explicit CheckList(QWidget* parent = nullptr);

  // Shows these items in the place of the old ones; the place that the user scrolled to stays. Filling a
  // list is never taken for a click.
  void showItems(std::vector<PanelItem> items);
  // A bar in grey for chance and one in colour for the draws stand beside each row; empty: none.
  void showShares(std::vector<ItemShare> shares);
  // Scrolls to the first row that is ticked.
  void showFirstTicked();
  // Makes a row the current one, in the middle of the list.
  void showRow(int row);
  [[nodiscard]] const CheckListModel& list() const { return *model_; }
  // The room that the widest text takes.
  [[nodiscard]] int textWidth() const { return text_width_; }

 Q_SIGNALS:
  // The user ticked or unticked a row; `k` is the one of its item.
  void itemClicked(int k, bool selected);
  // The same for several rows at once.
  void itemsClicked(const std::vector<int>& items, bool selected);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void begin(int row, bool from_last);
  void extend(int row);
  void end();

  CheckListModel* model_;
  int text_width_ = 0;
  int last_ = -1;  // row that was clicked last, where Shift begins
  // While the button is down: where it went down, how far it was taken, what it does, what has changed by it.
  int first_ = -1;
  int reached_ = -1;
  bool ticks_ = false;
  std::vector<PanelItem> before_;
};

}  // namespace lotmere::ui
