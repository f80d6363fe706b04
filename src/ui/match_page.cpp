#include "ui/match_page.hpp"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "conditions/help_texts.hpp"
#include "pipeline/strength.hpp"
#include "ui/text.hpp"

namespace lotmere::ui {

MatchPageView::MatchPageView(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent),
      session_(session),
      used_(new TipBox(shown(kMatchTexts.box), this)),
      match_(new QComboBox(this)) {
  for (QComboBox*& end : range_) end = new QComboBox(this);
  used_->setObjectName(QStringLiteral("Check_Historyguolu"));
  range_[0]->setObjectName(QStringLiteral("Combo_HistoryGuoLu_0"));
  range_[1]->setObjectName(QStringLiteral("Combo_HistoryGuoLu_1"));
  match_->setObjectName(QStringLiteral("Combo_PiPei"));
  auto* sentence = new QHBoxLayout;
  sentence->addWidget(new QLabel(shown(kMatchTexts.lead)));
  sentence->addWidget(range_[0]);
  sentence->addWidget(new QLabel(shown(kMatchTexts.dash)));
  sentence->addWidget(range_[1]);
  sentence->addWidget(new QLabel(shown(kMatchTexts.middle)));
  sentence->addWidget(match_);
  sentence->addWidget(new QLabel(shown(kMatchTexts.end)));
  sentence->addStretch();
  auto* help = new QPlainTextEdit(shown(kMatchHelp));
  help->setObjectName(QStringLiteral("Text2"));
  help->setReadOnly(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 8);
  layout->setSpacing(14);
  layout->addWidget(used_);
  layout->addLayout(sentence);
  layout->addWidget(help, 1);
  used_->set_TipText([this] {
    QString text;
    run_Guarded(session_.desk, [&] {
      text = shown(strength_Text(match_Strength(session_.store, session_.next_Period(), kStrengthDraws)));
    });
    return text;
  });
  connect(used_, &QCheckBox::clicked, this, [this, &clicks](bool on) {
    clicks.change([&] { set_HistoryMatch(session_.store, &HistoryMatch::used, on); });
  });
  PeriodNo HistoryMatch::*const ends[] = {&HistoryMatch::first, &HistoryMatch::last};
  for (int i = 0; i < 2; ++i)
    connect(range_[i], &QComboBox::activated, this, [this, &clicks, i, end = ends[i]] {
      clicks.change([&] { set_HistoryMatch(session_.store, end, range_[i]->currentData().toInt()); });
    });
  connect(match_, &QComboBox::activated, this, [this, &clicks] {
    clicks.change(
        [&] { set_HistoryMatch(session_.store, &HistoryMatch::match, match_->currentData().toInt()); });
  });
}

void MatchPageView::load_LiShi() {
  const MatchPage page = lotmere::load_LiShi(session_.store);
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
}

}  // namespace lotmere::ui
