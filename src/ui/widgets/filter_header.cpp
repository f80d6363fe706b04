#include "ui/widgets/filter_header.hpp"

#include <QEvent>
#include <QKeyEvent>
#include <algorithm>

namespace lotmere::ui {
namespace {

constexpr int kGap = 2;            // around a box
constexpr int kCaptionMargin = 6;  // above and below a caption

}  // namespace

FilterHeader::FilterHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
  setHighlightSections(false);
  setDefaultAlignment(Qt::AlignCenter);
  connect(this, &QHeaderView::sectionResized, this, &FilterHeader::placeBoxes);
}

void FilterHeader::setBoxes(int first, int last) {
  first_ = first;
  last_ = last;
  updateGeometries();
}

int FilterHeader::rowHeight() const { return last_ < first_ ? 0 : fontMetrics().height() + 8 + 2 * kGap; }

QLineEdit* FilterHeader::box(int column) {
  QLineEdit*& box = boxes_[column];
  if (box != nullptr) return box;
  box = new QLineEdit(this);
  box->setObjectName(QStringLiteral("filterField.%1").arg(column));
  box->setProperty("column", column);
  const QString caption = model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  box->setAccessibleName(QStringLiteral("查找 %1").arg(caption));
  box->setToolTip(QStringLiteral("%1：以输入的文字开头").arg(caption));
  // The row is one stop of many boxes: a key of its own leads into it, Tab goes on inside it.
  box->setFocusPolicy(Qt::ClickFocus);
  box->setTextMargins(-3, 0, -3, 0);
  box->installEventFilter(this);
  connect(box, &QLineEdit::textEdited, this, &FilterHeader::edited);
  return box;
}

QString FilterHeader::filter(int column) const {
  const QLineEdit* box = boxes_.value(column);
  return box == nullptr ? QString() : box->text();
}

void FilterHeader::clearFilters() {
  for (QLineEdit* box : boxes_) box->clear();
}

bool FilterHeader::focusFilter(int column) {
  if (column < first_ || column > last_ || isSectionHidden(column)) return false;
  Q_EMIT entered(column);
  QLineEdit* field = box(column);
  field->show();
  field->setFocus(Qt::TabFocusReason);
  field->selectAll();
  return true;
}

QSize FilterHeader::sizeHint() const {
  // Not the base's answer: it measures the caption of every column, at every change of one.
  return {0, fontMetrics().height() + 2 * kCaptionMargin + rowHeight()};
}

void FilterHeader::updateGeometries() {
  setViewportMargins(0, 0, 0, rowHeight());
  QHeaderView::updateGeometries();
  placeBoxes();
}

void FilterHeader::placeBoxes() {
  if (!isVisible()) return;
  for (int column = first_; column <= std::min(last_, count() - 1); ++column) {
    const int left = sectionViewportPosition(column);
    const int width = sectionSize(column);
    const bool there = !isSectionHidden(column) && left + width > 0 && left < viewport()->width();
    if (there) {
      QLineEdit* field = box(column);
      field->setGeometry(left + kGap, viewport()->height() + kGap, width - 2 * kGap, rowHeight() - 2 * kGap);
      field->show();
    } else if (QLineEdit* field = boxes_.value(column)) {
      field->hide();
    }
  }
}

void FilterHeader::showEvent(QShowEvent* event) {
  QHeaderView::showEvent(event);
  placeBoxes();
}

void FilterHeader::resizeEvent(QResizeEvent* event) {
  QHeaderView::resizeEvent(event);
  placeBoxes();
}

bool FilterHeader::eventFilter(QObject* watched, QEvent* event) {
  const QVariant column = watched->property("column");
  if (!column.isValid()) return QHeaderView::eventFilter(watched, event);
  if (event->type() == QEvent::FocusIn) Q_EMIT entered(column.toInt());
  if (event->type() == QEvent::KeyPress) return press(column.toInt(), static_cast<QKeyEvent*>(event)->key());
  return false;
}

bool FilterHeader::press(int column, int key) {
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Q_EMIT submitted();
      return true;
    case Qt::Key_Escape:
    case Qt::Key_Down:
      Q_EMIT left();
      return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: {
      const int step = key == Qt::Key_Tab ? 1 : -1;
      for (int next = column + step; next >= first_ && next <= last_; next += step)
        if (focusFilter(next)) return true;
      Q_EMIT passedEnd(step);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace lotmere::ui
