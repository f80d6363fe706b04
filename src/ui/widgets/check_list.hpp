// A list whose rows are ticked and unticked by a click or the space bar.
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <vector>

#include "panels/panel.hpp"

namespace lotmere::ui {

class CheckListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  void showItems(std::vector<PanelItem> items);
  [[nodiscard]] const std::vector<PanelItem>& items() const { return items_; }
  // Turns the mark of a row over and gives the row as it is then.
  const PanelItem& toggle(int row);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  std::vector<PanelItem> items_;
};

class CheckList : public QListView {
  Q_OBJECT

 public:
  explicit CheckList(QWidget* parent = nullptr);

  // Shows these items in the place of the old ones; the place that the person scrolled to stays. Filling a
  // list is never taken for a click.
  void showItems(std::vector<PanelItem> items);
  [[nodiscard]] const CheckListModel& list() const { return *model_; }

 Q_SIGNALS:
  // The person ticked or unticked a row; `k` is the one of its item.
  void itemClicked(int k, bool selected);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  // The wheel scrolls the page unless the person works in this list.
  void wheelEvent(QWheelEvent* event) override;

 private:
  void toggle(const QModelIndex& index);

  CheckListModel* model_;
};

}  // namespace lotmere::ui
