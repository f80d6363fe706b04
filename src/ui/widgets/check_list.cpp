#include "ui/widgets/check_list.hpp"

#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include "ui/look/text.hpp"

namespace lotmere::ui {

void CheckListModel::showItems(std::vector<PanelItem> items) {
  beginResetModel();
  items_ = std::move(items);
  endResetModel();
}

const PanelItem& CheckListModel::toggle(int row) {
  PanelItem& item = items_[static_cast<std::size_t>(row)];
  item.selected = !item.selected;
  Q_EMIT dataChanged(index(row), index(row), {Qt::CheckStateRole});
  return item;
}

int CheckListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

QVariant CheckListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const PanelItem& item = items_[static_cast<std::size_t>(index.row())];
  if (role == Qt::DisplayRole) return shown(item.text);
  if (role == Qt::CheckStateRole) return static_cast<int>(item.selected ? Qt::Checked : Qt::Unchecked);
  return {};
}

CheckList::CheckList(QWidget* parent) : QListView(parent), model_(new CheckListModel(this)) {
  setModel(model_);
  setUniformItemSizes(true);
  setSelectionMode(NoSelection);
  setEditTriggers(NoEditTriggers);
  connect(this, &QListView::clicked, this, &CheckList::toggle);
}

void CheckList::showItems(std::vector<PanelItem> items) {
  if (items == model_->items()) return;
  const int place = verticalScrollBar()->value();
  const int row = currentIndex().row();
  model_->showItems(std::move(items));
  if (row >= 0 && row < model_->rowCount()) setCurrentIndex(model_->index(row));
  verticalScrollBar()->setValue(place);
}

void CheckList::toggle(const QModelIndex& index) {
  const PanelItem item = model_->toggle(index.row());
  Q_EMIT itemClicked(item.k, item.selected);
}

void CheckList::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && currentIndex().isValid())
    toggle(currentIndex());
  else
    QListView::keyPressEvent(event);
}

void CheckList::wheelEvent(QWheelEvent* event) {
  if (hasFocus())
    QListView::wheelEvent(event);
  else
    event->ignore();
}

}  // namespace lotmere::ui
