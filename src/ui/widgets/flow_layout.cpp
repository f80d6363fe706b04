#include "ui/widgets/flow_layout.hpp"

#include <algorithm>
#include <climits>

namespace lotmere::ui {

FlowLayout::FlowLayout(int spacing, QWidget* parent) : QLayout(parent) {
  setContentsMargins(0, 0, 0, 0);
  setSpacing(spacing);
}

FlowLayout::~FlowLayout() { qDeleteAll(items_); }

QLayoutItem* FlowLayout::takeAt(int index) {
  return index >= 0 && index < items_.size() ? items_.takeAt(index) : nullptr;
}

int FlowLayout::heightForWidth(int width) const { return arrange(QRect(0, 0, width, 0), false); }

QSize FlowLayout::sizeHint() const {
  QSize size(0, 0);
  for (const QLayoutItem* item : items_) {
    if (item->isEmpty()) continue;
    const QSize hint = item->sizeHint();
    size = QSize(size.width() + (size.width() > 0 ? spacing() : 0) + hint.width(),
                 std::max(size.height(), hint.height()));
  }
  return size;
}

QSize FlowLayout::minimumSize() const {
  QSize size(0, 0);
  for (const QLayoutItem* item : items_)
    if (!item->isEmpty()) size = size.expandedTo(item->minimumSize());
  return size;
}

void FlowLayout::setGeometry(const QRect& area) {
  QLayout::setGeometry(area);
  arrange(area, true);
}

int FlowLayout::arrange(const QRect& area, bool place) const {
  int y = area.y();
  QList<QLayoutItem*> line;
  int width = 0;
  int height = 0;
  const auto end_line = [&] {
    int x = area.x();
    for (QLayoutItem* item : line) {
      const QSize size = item->sizeHint().boundedTo({area.width(), INT_MAX}).expandedTo(item->minimumSize());
      if (place) item->setGeometry({QPoint(x, y + (height - size.height()) / 2), size});
      x += size.width() + spacing();
    }
    y += height;
    line.clear();
    width = height = 0;
  };
  for (QLayoutItem* item : items_) {
    if (item->isEmpty()) continue;
    const QSize hint = item->sizeHint();
    if (!line.isEmpty() && width + spacing() + hint.width() > area.width()) {
      end_line();
      y += spacing();
    }
    width += (line.isEmpty() ? 0 : spacing()) + hint.width();
    height = std::max(height, hint.height());
    line.append(item);
  }
  end_line();
  return y - area.y();
}

}  // namespace lotmere::ui
