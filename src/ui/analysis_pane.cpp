#include "ui/analysis_pane.hpp"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lotmere::ui {

AnalysisPane::AnalysisPane(Session& session, ConditionClicks& clicks, QWidget* parent)
    : QWidget(parent),
      session_(session),
      views_(new QStackedWidget(this)),
      sheet_(new ConditionSheetView(session, clicks, views_)) {
  setObjectName(QStringLiteral("pic_Tuobiao"));
  views_->addWidget(sheet_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  layout->addWidget(make_Strip());
  layout->addWidget(views_, 1);
}

void AnalysisPane::add_Command(const char* name, const QString& text, std::function<void()> open) {
  session_.commands.add({name, text, {}, text}, std::move(open));
}

QWidget* AnalysisPane::make_Strip() {
  add_Command("Yltj_0", QStringLiteral("红球遗漏统计"), [this] { show_Omission(BallColour::red); });
  add_Command("Cstj_0", QStringLiteral("红球次数统计"), [this] { show_Counts(BallColour::red); });
  add_Command("Yltj_1", QStringLiteral("蓝球遗漏统计"), [this] { show_Omission(BallColour::blue); });
  add_Command("Cstj_1", QStringLiteral("蓝球次数统计"), [this] { show_Counts(BallColour::blue); });
  auto* strip = new QWidget(this);
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(0, 0, 0, 0);
  for (int i = 0; i < 2; ++i) {
    row->addWidget(new QLabel(i == 0 ? QStringLiteral("红球：") : QStringLiteral("蓝球：")));
    for (const auto& [name, caption] : {std::pair{"Yltj", "遗漏统计"}, {"Cstj", "次数统计"}}) {
      const QByteArray action = QByteArray(name) + '_' + QByteArray::number(i);
      row->addWidget(session_.commands.make_Button(("cmm_" + action).constData(), QString::fromUtf8(caption),
                                                   session_.commands.action(action.constData())));
    }
    row->addSpacing(16);
  }
  row->addStretch();
  return strip;
}

void AnalysisPane::show_Omission(BallColour balls) {
  if (omission_ == nullptr) {
    omission_ = new OmissionView(session_, views_);
    views_->addWidget(omission_);
    connect(omission_, &OmissionView::back_Wanted, this,
            [this] { session_.commands.runner().run([this] { show_Sheet(); }); });
  }
  views_->setCurrentWidget(omission_);
  omission_->open(balls);
}

void AnalysisPane::show_Counts(BallColour balls) {
  if (counts_ == nullptr) {
    counts_ = new CountChart(session_, views_);
    views_->addWidget(counts_);
    connect(counts_, &CountChart::back_Wanted, this,
            [this] { session_.commands.runner().run([this] { show_Sheet(); }); });
  }
  views_->setCurrentWidget(counts_);
  counts_->open(balls);
}

void AnalysisPane::show_Sheet() {
  sheet_->open();
  views_->setCurrentWidget(sheet_);
}

void AnalysisPane::mark_Stale() {
  sheet_->mark_Stale();
  periods_stale_ = true;
}

void AnalysisPane::showCurrentView() {
  if (std::exchange(periods_stale_, false)) {
    if (omission_ != nullptr) omission_->loadOmissionPeriods();
    if (counts_ != nullptr) counts_->load_Periods();
  }
  const QWidget* shown_now = views_->currentWidget();
  if (omission_ != nullptr && shown_now == omission_)
    omission_->showOmission();
  else if (counts_ != nullptr && shown_now == counts_)
    counts_->showCounts();
  else
    sheet_->open();
}

}  // namespace lotmere::ui
