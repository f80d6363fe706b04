#include "ui/widgets/number_picker.hpp"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace lotmere::ui {

NumberPicker::NumberPicker(QWidget* parent)
    : QFrame(parent, Qt::Popup),
      title_(new QLabel),
      grid_(new NumberGrid(QStringLiteral("divisionNumber"), 9)) {
  setObjectName(QStringLiteral("numberPicker"));
  setFrameShape(QFrame::StyledPanel);
  auto* close_button = new QPushButton(QStringLiteral("关 闭"));
  close_button->setObjectName(QStringLiteral("closePicker"));
  connect(close_button, &QPushButton::clicked, this, &QWidget::close);
  connect(grid_, &NumberGrid::numberClicked, this, [this] { Q_EMIT picked(name(), grid_->members()); });
  auto* head = new QHBoxLayout;
  head->addWidget(title_);
  head->addStretch();
  head->addWidget(close_button);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(head);
  layout->addWidget(grid_);
}

void NumberPicker::open(const QString& name, const RedTable& members, const QWidget& beside) {
  title_->setText(name);
  grid_->showMembers(members);
  adjustSize();
  const QRect room = beside.screen()->availableGeometry();
  QPoint place = beside.mapToGlobal(QPoint(0, beside.height() + 2));
  place.setX(std::clamp(place.x(), room.left(), std::max(room.left(), room.right() - width())));
  if (place.y() + height() > room.bottom()) place.setY(beside.mapToGlobal(QPoint(0, 0)).y() - height() - 2);
  move(place);
  show();
}

}  // namespace lotmere::ui
