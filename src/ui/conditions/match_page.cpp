#include "ui/conditions/match_page.hpp"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "advice/strength.hpp"
#include "panels/help_texts.hpp"
#include "store/periods.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {

MatchPageView::MatchPageView(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent),
      session_(session),
      clicks_(clicks),
      used_(new TipBox(shown(kMatchTexts.box), this)),
      match_(new QComboBox(this)),
      latest_(new QPushButton(shown(kMatchTexts.button), this)),
      which_(new QLabel(this)) {
  for (QComboBox*& end : range_) {
    end = new QComboBox(this);
    end->setSizeAdjustPolicy(QComboBox::AdjustToContents);  // seven digits, also when the page is made empty
  }
  used_->setObjectName(QStringLiteral("matchSwitch"));
  range_[0]->setObjectName(QStringLiteral("matchFirst"));
  range_[1]->setObjectName(QStringLiteral("matchLast"));
  match_->setObjectName(QStringLiteral("matchValue"));
  latest_->setObjectName(QStringLiteral("latestPeriods"));
  latest_->setAutoDefault(false);
  which_->setObjectName(QStringLiteral("matchRange"));
  auto* sentence = new QHBoxLayout;
  sentence->addWidget(new QLabel(shown(kMatchTexts.lead)));
  sentence->addWidget(range_[0]);
  sentence->addWidget(new QLabel(shown(kMatchTexts.dash)));
  sentence->addWidget(range_[1]);
  sentence->addWidget(new QLabel(shown(kMatchTexts.middle)));
  sentence->addWidget(match_);
  sentence->addWidget(new QLabel(shown(kMatchTexts.end)));
  sentence->addSpacing(16);
  sentence->addWidget(latest_);
  sentence->addStretch();
  auto* help = new QPlainTextEdit(shown(kMatchHelp));
  help->setObjectName(QStringLiteral("matchHelp"));
  help->setReadOnly(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->setSpacing(14);
  layout->addWidget(used_);
  layout->addLayout(sentence);
  layout->addWidget(which_);
  layout->addWidget(help, 1);
  clicks_.setTip(
      *used_, [] { return shown(kHistoryMatchName); },
      []() -> ConditionClicks::Measure {
        return [](const ConditionSet& set, const DrawTable& draws, PeriodNo next) {
          return matchStrength(set, draws, next, kStrengthDraws);
        };
      });
  connect(used_, &QCheckBox::clicked, this,
          [this](bool on) { change([&](ConditionSet& set) { set.match.used = on; }); });
  PeriodNo HistoryMatch::*const ends[] = {&HistoryMatch::first, &HistoryMatch::last};
  for (int i = 0; i < 2; ++i)
    connect(range_[i], &QComboBox::activated, this, [this, i, end = ends[i]] {
      change([&](ConditionSet& set) { chooseMatchEnd(set, end, range_[i]->currentData().toInt()); });
    });
  connect(match_, &QComboBox::activated, this,
          [this] { change([&](ConditionSet& set) { set.match.match = match_->currentData().toInt(); }); });
  connect(latest_, &QPushButton::clicked, this,
          [this] { change([](ConditionSet& set) { set.match.chosen = false; }); });
}

void MatchPageView::change(const std::function<void(ConditionSet&)>& edit) {
  clicks_.change(
      [&](ConditionSet& set) {
        edit(set);
        followDraws(set, periods_);
      },
      [this] { showSettings(); });
}

void MatchPageView::open() {
  periods_ = session_.store.run([](Store& store) { return newestPeriods(store, kMatchPeriods); });
  ConditionSet followed = session_.settings.set();
  followDraws(followed, periods_);
  if (followed != session_.settings.set())
    session_.settings.change([&](ConditionSet& set) { followDraws(set, periods_); }, {.kept = false});
  showSettings();
}

void MatchPageView::showSettings() {
  const MatchPage page = matchPage(session_.settings.set(), periods_);
  used_->setChecked(page.settings.used);
  for (QComboBox* combo : range_) {
    combo->clear();
    for (const PeriodNo period : page.periods) combo->addItem(QString::number(period), period);
  }
  range_[0]->setCurrentIndex(range_[0]->findData(page.settings.first));
  range_[1]->setCurrentIndex(range_[1]->findData(page.settings.last));
  match_->clear();
  for (const PanelItem& item : page.matches) {
    match_->addItem(shown(item.text), item.k);
    if (item.selected) match_->setCurrentIndex(match_->count() - 1);
  }
  which_->setText(shown(page.settings.chosen ? kMatchTexts.chosen : kMatchTexts.latest));
}

}  // namespace lotmere::ui
