// A row of controls that goes on in the next line where the window is narrow.
#pragma once

#include <QLayout>
#include <QList>

namespace lotmere::ui {

// The lines are centred in their height. Items that expand aren't stretched; empty ones take no room.
class FlowLayout : public QLayout {
 public:
  explicit FlowLayout(int spacing, QWidget* parent = nullptr);
  ~FlowLayout() override;

  void addItem(QLayoutItem* item) override { items_.append(item); }
  [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
  [[nodiscard]] QLayoutItem* itemAt(int index) const override { return items_.value(index); }
  QLayoutItem* takeAt(int index) override;
  [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  // In one line.
  [[nodiscard]] QSize sizeHint() const override;
  // Of the widest item.
  [[nodiscard]] QSize minimumSize() const override;
  void setGeometry(const QRect& area) override;

 private:
  // Places the items into an area, or only counts, and gives the height that they take.
  int arrange(const QRect& area, bool place) const;

  QList<QLayoutItem*> items_;
};

}  // namespace lotmere::ui
