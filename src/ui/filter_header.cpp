#include "ui/filter_header.hpp"

#include <QEvent>
#include <QKeyEvent>

namespace lotmere::ui {
namespace {

constexpr int kGap = 2;  // around a box

}  // namespace

FilterHeader::FilterHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
  setHighlightSections(false);
  setDefaultAlignment(Qt::AlignCenter);
  setStyleSheet(QStringLiteral("QLineEdit { padding: 1px 3px; border-radius: 3px; }"));
  connect(this, &QHeaderView::sectionResized, this, &FilterHeader::place_Boxes);
}

void FilterHeader::make_Boxes(int first, int last) {
  for (int column = first; column <= last; ++column) {
    auto* box = new QLineEdit(this);
    box->setObjectName(QStringLiteral("FilterText_%1").arg(column));
    box->setProperty("column", column);
    const QString caption = model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    box->setAccessibleName(QStringLiteral("查找 %1").arg(caption));
    box->setToolTip(QStringLiteral("%1：以输入的文字开头").arg(caption));
    // The row is one stop of many boxes: a key of its own leads into it, Tab goes on inside it.
    box->setFocusPolicy(Qt::ClickFocus);
    box->installEventFilter(this);
    connect(box, &QLineEdit::textEdited, this, &FilterHeader::edited);
    boxes_.insert(column, box);
  }
  updateGeometries();
}

QString FilterHeader::filter(int column) const {
  const QLineEdit* box = boxes_.value(column);
  return box == nullptr ? QString() : box->text();
}

void FilterHeader::clear_Filters() {
  for (QLineEdit* box : boxes_) box->clear();
}

bool FilterHeader::focus_Filter(int column) {
  QLineEdit* box = boxes_.value(column);
  if (box == nullptr || isSectionHidden(column)) return false;
  Q_EMIT entered(column);
  box->setFocus(Qt::TabFocusReason);
  box->selectAll();
  return true;
}

QSize FilterHeader::sizeHint() const {
  QSize size = QHeaderView::sizeHint();
  if (!boxes_.isEmpty()) size.rheight() += boxes_.first()->sizeHint().height() + 2 * kGap;
  return size;
}

void FilterHeader::updateGeometries() {
  setViewportMargins(0, 0, 0, boxes_.isEmpty() ? 0 : boxes_.first()->sizeHint().height() + 2 * kGap);
  QHeaderView::updateGeometries();
  place_Boxes();
}

void FilterHeader::place_Boxes() {
  for (auto place = boxes_.cbegin(); place != boxes_.cend(); ++place) {
    const int column = place.key();
    QLineEdit* box = place.value();
    const bool there = column < count() && !isSectionHidden(column);
    box->setVisible(there);
    if (!there) continue;
    const int height = box->sizeHint().height();
    box->setGeometry(sectionViewportPosition(column) + kGap, viewport()->height() + kGap,
                     sectionSize(column) - 2 * kGap, height);
  }
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
      for (int next = column + step; boxes_.contains(next); next += step)
        if (focus_Filter(next)) return true;
      Q_EMIT passed_End(step);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace lotmere::ui
