#include "ui/conditions/panel_box.hpp"

#include <QHelpEvent>
#include <QToolTip>
#include <QVBoxLayout>

#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kMostLines = 3;  // under a list; the rest stands in the tip

}  // namespace

bool TipBox::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || !tip_text_) return QCheckBox::event(event);
  tip_place_ = static_cast<QHelpEvent*>(event)->globalPos();
  tip_ = tip_text_();
  QToolTip::showText(tip_place_, tip_, this);
  return true;
}

void TipBox::extendTip(const QString& line) {
  if (!QToolTip::isVisible() || QToolTip::text() != tip_) return;
  tip_ += QLatin1Char('\n') + line;
  QToolTip::showText(tip_place_, tip_, this);
}

PanelBox::PanelBox(const QString& list_name, const QString& box_name, QWidget* parent)
    : QWidget(parent), box_(new TipBox(this)), list_(new CheckList(this)), line_(new QLabel(this)) {
  list_->setObjectName(list_name);
  box_->setObjectName(box_name);
  line_->setWordWrap(true);
  line_->setTextFormat(Qt::PlainText);
  line_->setForegroundRole(QPalette::PlaceholderText);
  line_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  line_->setMaximumHeight(kMostLines * line_->fontMetrics().lineSpacing() + 1);
  line_->hide();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(box_);
  layout->addWidget(list_, 1);
  layout->addWidget(line_);
  // clicked() comes from a user alone, never from setChecked().
  connect(box_, &QCheckBox::clicked, this, &PanelBox::boxClicked);
  connect(list_, &CheckList::itemClicked, this, &PanelBox::itemClicked);
  connect(list_, &CheckList::itemsClicked, this, &PanelBox::itemsClicked);
}

void PanelBox::showPanel(const ConditionPanel& panel) {
  box_->setText(shown(panel.caption));
  showBox({panel.ticked, panel.enabled});
  list_->setAccessibleName(box_->text());
  list_->setVisible(!panel.items.empty());
  list_->showItems(panel.items);
}

void PanelBox::showBox(const BoxState& box) {
  box_->setChecked(box.ticked);
  box_->setEnabled(box.enabled);
}

void PanelBox::addAboveList(QWidget* widget) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->insertWidget(column->indexOf(list_), widget);
}

void PanelBox::showLine(const QString& text) {
  line_->setText(text);
  line_->setToolTip(text);
  line_->setVisible(!text.isEmpty());
}

}  // namespace lotmere::ui
