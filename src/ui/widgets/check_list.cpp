#include "ui/widgets/check_list.hpp"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kShareRow = 30;  // height of a row with bars
constexpr int kBox = 40;       // room beside the text of a row for its box and some air

// Draws the bars behind the text of a row.
class ShareDelegate : public QStyledItemDelegate {
 public:
  explicit ShareDelegate(CheckList* list) : QStyledItemDelegate(list), list_(list) {}

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    if (!list_->list().shares().empty()) size.setHeight(std::max(size.height(), kShareRow));
    return size;
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const auto& shares = list_->list().shares();
    const auto row = static_cast<std::size_t>(index.row());
    if (row >= shares.size()) return QStyledItemDelegate::paint(painter, option, index);
    QStyleOptionViewItem text = option;
    const int figure_width = option.fontMetrics.horizontalAdvance(QStringLiteral("<99.9% · 100期"));
    text.rect.setWidth(std::min(list_->textWidth() + kBox, option.rect.width() - figure_width));
    QStyledItemDelegate::paint(painter, text, index);
    double most = 0.02;
    for (const ItemShare& share : shares) most = std::max({most, share.chance, drawn(share)});
    const QRectF room(text.rect.right() + 8, option.rect.top(),
                      std::max(0, option.rect.width() - text.rect.width() - figure_width - 16),
                      option.rect.height());
    const double thick = 6;
    const double middle = room.center().y();
    const auto bar = [&](double top, double share, const QColor& colour) {
      if (share > 0)
        painter->fillRect(QRectF(room.left(), top, std::max(1.0, room.width() * share / most), thick),
                          colour);
    };
    bar(middle - thick - 1, shares[row].chance, colours().chance);
    bar(middle + 1, drawn(shares[row]), colours().running_gap);
    painter->setPen(colours().faint);
    const QRectF figure(room.right() + 6, option.rect.top(), figure_width, option.rect.height());
    painter->drawText(figure, Qt::AlignVCenter | Qt::AlignLeft, figureText(shares[row]));
  }

 private:
  static double drawn(const ItemShare& share) {
    return share.looked_at == 0 ? 0 : static_cast<double>(share.draws) / share.looked_at;
  }
  static QString figureText(const ItemShare& share) {
    const double percent = 100 * share.chance;
    const QString chance = share.chance > 0 && percent < 0.1 ? QStringLiteral("<0.1%")
                                                             : QStringLiteral("%1%").arg(percent, 0, 'f', 1);
    return share.looked_at == 0 ? chance : QStringLiteral("%1 · %2期").arg(chance).arg(share.draws);
  }

  CheckList* list_;
};

}  // namespace

void CheckListModel::showItems(std::vector<PanelItem> items) {
  beginResetModel();
  items_ = std::move(items);
  endResetModel();
}

void CheckListModel::showShares(std::vector<ItemShare> shares) {
  const bool resized = shares.empty() != shares_.empty();
  shares_ = std::move(shares);
  if (resized) Q_EMIT layoutChanged();
  if (!items_.empty()) Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

std::vector<int> CheckListModel::tick(int first, int last, bool selected) {
  if (first > last) std::swap(first, last);
  std::vector<int> changed;
  for (int row = first; row <= last; ++row) {
    PanelItem& item = items_[static_cast<std::size_t>(row)];
    if (item.selected == selected) continue;
    item.selected = selected;
    changed.push_back(item.k);
  }
  Q_EMIT dataChanged(index(first), index(last), {Qt::CheckStateRole});
  return changed;
}

int CheckListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

QVariant CheckListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const PanelItem& item = items_[row];
  if (role == Qt::DisplayRole) return shown(item.text);
  if (role == Qt::CheckStateRole) return static_cast<int>(item.selected ? Qt::Checked : Qt::Unchecked);
  if (role == Qt::ToolTipRole && row < shares_.size() && shares_[row].looked_at > 0)
    return QStringLiteral("%1：机会占 %2%，最近 %3 期中 %4 期")
        .arg(shown(item.text))
        .arg(100 * shares_[row].chance, 0, 'f', 2)
        .arg(shares_[row].looked_at)
        .arg(shares_[row].draws);
  return {};
}

CheckList::CheckList(QWidget* parent) : QListView(parent), model_(new CheckListModel(this)) {
  setModel(model_);
  setItemDelegate(new ShareDelegate(this));
  setUniformItemSizes(true);
  setSelectionMode(NoSelection);
  setEditTriggers(NoEditTriggers);
}

void CheckList::showItems(std::vector<PanelItem> items) {
  if (items == model_->items()) return;
  const int place = verticalScrollBar()->value();
  const int row = currentIndex().row();
  model_->showItems(std::move(items));
  text_width_ = 0;
  for (const PanelItem& item : model_->items())
    text_width_ = std::max(text_width_, fontMetrics().horizontalAdvance(shown(item.text)));
  if (row >= 0 && row < model_->rowCount()) setCurrentIndex(model_->index(row));
  verticalScrollBar()->setValue(place);
}

void CheckList::showShares(std::vector<ItemShare> shares) {
  if (shares != model_->shares()) model_->showShares(std::move(shares));
}

void CheckList::showFirstTicked() {
  last_ = -1;
  const auto& items = model_->items();
  const auto first = std::ranges::find(items, true, &PanelItem::selected);
  if (first != items.end())
    scrollTo(model_->index(static_cast<int>(first - items.begin())), PositionAtTop);
  else
    scrollToTop();
}

void CheckList::showRow(int row) {
  setCurrentIndex(model_->index(row));
  scrollTo(currentIndex(), PositionAtCenter);
}

// What is ticked while the button is down shows at once; it is told when the button is let go, so that a
// range is one change.
void CheckList::begin(int row, bool from_last) {
  before_ = model_->items();
  first_ = from_last && last_ >= 0 && last_ < model_->rowCount() ? last_ : row;
  ticks_ = first_ == row ? !before_[static_cast<std::size_t>(row)].selected
                         : before_[static_cast<std::size_t>(first_)].selected;
  reached_ = row;
  model_->tick(first_, row, ticks_);
}

void CheckList::extend(int row) {
  if (row == reached_) return;
  reached_ = row;
  for (int i = 0; i < model_->rowCount(); ++i) {
    const bool was = before_[static_cast<std::size_t>(i)].selected;
    if (model_->items()[static_cast<std::size_t>(i)].selected != was) model_->tick(i, i, was);
  }
  model_->tick(first_, row, ticks_);
}

void CheckList::end() {
  std::vector<int> changed;
  for (std::size_t i = 0; i < before_.size(); ++i)
    if (model_->items()[i].selected != before_[i].selected) changed.push_back(before_[i].k);
  last_ = reached_;
  first_ = reached_ = -1;
  if (changed.size() == 1)
    Q_EMIT itemClicked(changed.front(), ticks_);
  else if (!changed.empty())
    Q_EMIT itemsClicked(changed, ticks_);
}

void CheckList::mousePressEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->pos());
  if (event->button() != Qt::LeftButton || !index.isValid()) return QListView::mousePressEvent(event);
  setCurrentIndex(index);
  begin(index.row(), event->modifiers().testFlag(Qt::ShiftModifier));
}

void CheckList::mouseMoveEvent(QMouseEvent* event) {
  if (first_ < 0) return QListView::mouseMoveEvent(event);
  const QModelIndex index = indexAt(event->pos());
  if (!index.isValid() || before_.size() != model_->items().size()) return;
  scrollTo(index);
  extend(index.row());
}

void CheckList::mouseReleaseEvent(QMouseEvent* event) {
  if (first_ < 0) return QListView::mouseReleaseEvent(event);
  // Filled anew meanwhile: what was ticked then is gone.
  if (before_.size() == model_->items().size()) return end();
  first_ = reached_ = -1;
}

void CheckList::keyPressEvent(QKeyEvent* event) {
  const int row = currentIndex().row();
  const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
  if (event->key() == Qt::Key_Space && currentIndex().isValid()) {
    begin(row, shift);
    end();
  } else {
    QListView::keyPressEvent(event);
  }
}

}  // namespace lotmere::ui
