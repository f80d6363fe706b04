#include "ui/conditions/shrink_page.hpp"

#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

#include "panels/pages.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {

ShrinkPageView::ShrinkPageView(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent), session_(session), smart_(new QCheckBox), hint_(new QLabel) {
  auto* types = new QGroupBox(QStringLiteral("缩水类型"));
  auto* column = new QVBoxLayout(types);
  for (int type = kSmallestShrink; type <= kLargestShrink; ++type) {
    auto* option = new QRadioButton;
    option->setObjectName(QStringLiteral("Option_ShuoSuiLeiXing_%1").arg(type));
    types_.addButton(option, type);
    column->addWidget(option);
  }
  connect(&types_, &QButtonGroup::idClicked, this, [&clicks](int type) {
    clicks.change([=](ConditionSet& set) { set.cells.set(kShrinkTypeCell, type); });
  });
  smart_->setObjectName(QStringLiteral("Check_auto"));
  connect(smart_, &QCheckBox::clicked, this,
          [&clicks](bool on) { clicks.change([=](ConditionSet& set) { set.use(kSmartOptimisation, on); }); });
  hint_->setWordWrap(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->setSpacing(14);
  layout->addWidget(types);
  layout->addWidget(smart_);
  layout->addWidget(hint_);
  layout->addStretch();
}

void ShrinkPageView::load() {
  const ShrinkPage page = shrinkPage(session_.settings.set());
  QAbstractButton* type = nullptr;
  for (const PanelItem& item : page.types) {
    types_.button(item.k)->setText(shown(item.text));
    if (item.selected) type = types_.button(item.k);
  }
  showOnly(types_, type);
  smart_->setText(shown(page.smart.caption));
  smart_->setChecked(page.smart.ticked);
  hint_->setText(shown(page.hint));
}

}  // namespace lotmere::ui
