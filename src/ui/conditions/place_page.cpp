#include "ui/conditions/place_page.hpp"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "panels/help_texts.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {
namespace {

constexpr int kColumns = 4;

}  // namespace

PlacePageView::PlacePageView(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent), session_(session) {
  auto* places = new QGridLayout;
  places->setSpacing(8);
  for (int i = 0; i < kPlaceCount; ++i) {
    const UsageId usage = usageOfPlace(i + 1);
    places_[i] = new PanelBox(QStringLiteral("placeNumbers.%1").arg(i + 1),
                              QStringLiteral("placeSwitch.%1").arg(usage));
    clicks.connectLeading(*places_[i], conditionOfUsage(usage));
    places->addWidget(places_[i], i / kColumns, i % kColumns);
  }
  auto* tolerances = new QHBoxLayout;
  tolerances->addWidget(new QLabel(QStringLiteral("容错值：")));
  for (int k = 0; k <= kPlaceCount; ++k) {
    auto* option = new QRadioButton;
    option->setObjectName(QStringLiteral("placeTolerance.%1").arg(k));
    tolerances_.addButton(option, k);
    tolerances->addWidget(option);
  }
  tolerances->addStretch();
  connect(&tolerances_, &QButtonGroup::idClicked, this,
          [&clicks](int k) { clicks.change([=](ConditionSet& set) { set.cells.set(kToleranceCell, k); }); });
  auto* help = new QPlainTextEdit(shown(kPlaceHelp));
  help->setObjectName(QStringLiteral("placeHelp"));
  help->setReadOnly(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  help->setMaximumHeight(110);
  layout->addLayout(places, 1);
  layout->addLayout(tolerances);
  layout->addWidget(help);
}

void PlacePageView::load() {
  const PlacePage page = placePage(session_.settings.set());
  for (int i = 0; i < kPlaceCount; ++i) places_[i]->showPanel(page.places[i]);
  QAbstractButton* tolerance = nullptr;
  for (const PanelItem& item : page.tolerances) {
    tolerances_.button(item.k)->setText(shown(item.text));
    if (item.selected) tolerance = tolerances_.button(item.k);
  }
  showOnly(tolerances_, tolerance);
}

}  // namespace lotmere::ui
