#include "ui/conditions/shrink_page.hpp"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QVBoxLayout>

#include "panels/pages.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {

ShrinkPageView::ShrinkPageView(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent),
      session_(session),
      smart_(new QCheckBox),
      fewer_(new QCheckBox),
      effort_(new QComboBox),
      hint_(new QLabel) {
  auto* types = new QGroupBox(QStringLiteral("缩水类型"));
  auto* column = new QVBoxLayout(types);
  for (int type = kSmallestShrink; type <= kLargestShrink; ++type) {
    auto* option = new QRadioButton;
    option->setObjectName(QStringLiteral("shrinkType.%1").arg(type));
    types_.addButton(option, type);
    column->addWidget(option);
  }
  connect(&types_, &QButtonGroup::idClicked, this, [this, &clicks](int type) {
    clicks.change([=](ConditionSet& set) { set.cells.set(kShrinkTypeCell, type); }, [this] { load(); });
  });
  smart_->setObjectName(QStringLiteral("smartSwitch"));
  connect(smart_, &QCheckBox::clicked, this,
          [&clicks](bool on) { clicks.change([=](ConditionSet& set) { set.use(kSmartOptimisation, on); }); });
  fewer_->setObjectName(QStringLiteral("fewerTickets"));
  fewer_->setToolTip(
      QStringLiteral("去掉的每一注仍与留下的某一注至少有N个号码相同，每个蓝球也至少留下一注。\n"
                     "力度越大找得越久：力度3最多十几秒，每加一级约为1.7倍；可以随时按“停 止”。"));
  connect(fewer_, &QCheckBox::clicked, this, [this, &clicks](bool on) {
    effort_->setEnabled(on);
    clicks.change([=](ConditionSet& set) { set.cells.set(kFewerCell, on ? 1 : 0); });
  });
  effort_->setObjectName(QStringLiteral("fewerEffort"));
  effort_->setAccessibleName(QStringLiteral("精简缩水的力度"));
  connect(effort_, &QComboBox::activated, this, [this, &clicks] {
    clicks.change(
        [effort = effort_->currentData().toInt()](ConditionSet& set) { set.cells.set(kEffortCell, effort); });
  });
  auto* fewer = new QHBoxLayout;
  fewer->addWidget(fewer_);
  fewer->addWidget(effort_);
  fewer->addStretch();
  hint_->setObjectName(QStringLiteral("shrinkHint"));
  hint_->setWordWrap(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->setSpacing(14);
  layout->addWidget(types);
  layout->addWidget(smart_);
  layout->addLayout(fewer);
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
  fewer_->setText(shown(page.fewer_caption));
  fewer_->setChecked(page.fewer);
  effort_->setEnabled(page.fewer);
  effort_->clear();
  for (const PanelItem& item : page.efforts) {
    effort_->addItem(shown(item.text), item.k);
    if (item.selected) effort_->setCurrentIndex(effort_->count() - 1);
  }
  hint_->setText(shown(page.hint) + QStringLiteral("\n\n") + shown(page.promise));
}

}  // namespace lotmere::ui
