#include "ui/analysis/analysis_pane.hpp"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lotmere::ui {

AnalysisPane::AnalysisPane(Session& session, QWidget* parent)
    : FrontPane(parent), session_(session), views_(new QStackedWidget(this)) {
  setObjectName(QStringLiteral("analysisArea"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  layout->addWidget(makeStrip());
  layout->addWidget(views_, 1);
}

void AnalysisPane::addCommand(const char* name, const QString& text, std::function<void()> open) {
  session_.commands.add({name, text, {}, text}, std::move(open));
}

QWidget* AnalysisPane::makeStrip() {
  addCommand("analysis.redOmission", QStringLiteral("红球遗漏统计"),
             [this] { showOmission(BallColour::red); });
  addCommand("analysis.redCounts", QStringLiteral("红球次数统计"), [this] { showCounts(BallColour::red); });
  addCommand("analysis.blueOmission", QStringLiteral("蓝球遗漏统计"),
             [this] { showOmission(BallColour::blue); });
  addCommand("analysis.blueCounts", QStringLiteral("蓝球次数统计"), [this] { showCounts(BallColour::blue); });
  auto* strip = new QWidget(this);
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(0, 0, 0, 0);
  for (int i = 0; i < 2; ++i) {
    row->addWidget(new QLabel(i == 0 ? QStringLiteral("红球：") : QStringLiteral("蓝球：")));
    for (const auto& [name, caption] : {std::pair{"Omission", "遗漏统计"}, {"Counts", "次数统计"}}) {
      const QByteArray action = QByteArray(i == 0 ? "analysis.red" : "analysis.blue") + name;
      auto* button =
          session_.commands.makeButton((action + ".button").constData(), QString::fromUtf8(caption),
                                       session_.commands.action(action.constData()));
      button->setAccessibleName(session_.commands.action(action.constData())->text());
      button->setCheckable(true);
      // A press marks by itself; the view in front decides.
      connect(button, &QPushButton::clicked, this, &AnalysisPane::markButtons);
      buttons_.append(button);
      row->addWidget(button);
    }
    row->addSpacing(16);
  }
  row->addStretch();
  return strip;
}

void AnalysisPane::showOmission(BallColour balls) {
  if (omission_ == nullptr) {
    omission_ = new OmissionView(session_, views_);
    views_->addWidget(omission_);
    connect(omission_, &OmissionView::backWanted, this,
            [this] { session_.commands.runner().run([this] { showFirstView(); }); });
  }
  views_->setCurrentWidget(omission_);
  balls_ = balls;
  omission_->open(balls);
  markButtons();
}

void AnalysisPane::showCounts(BallColour balls) {
  if (counts_ == nullptr) {
    counts_ = new CountChart(session_, views_);
    views_->addWidget(counts_);
    connect(counts_, &CountChart::backWanted, this,
            [this] { session_.commands.runner().run([this] { showFirstView(); }); });
  }
  views_->setCurrentWidget(counts_);
  balls_ = balls;
  counts_->open(balls);
  markButtons();
}

void AnalysisPane::setFirstView(QWidget* view, std::function<void()> open) {
  first_ = view;
  open_first_ = std::move(open);
  views_->insertWidget(0, view);
  views_->setCurrentWidget(view);
}

void AnalysisPane::showFirstView() {
  open_first_();
  views_->setCurrentWidget(first_);
  markButtons();
}

void AnalysisPane::markButtons() {
  const QWidget* front = views_->currentWidget();
  const int first = balls_ == BallColour::red ? 0 : 2;
  for (int i = 0; i < buttons_.size(); ++i)
    buttons_[i]->setChecked(front != first_ && i == first + (front == counts_ ? 1 : 0));
}

void AnalysisPane::showCurrentView() {
  if (std::exchange(periods_stale_, false)) {
    if (omission_ != nullptr) omission_->loadOmissionPeriods();
    if (counts_ != nullptr) counts_->loadPeriods();
  }
  const QWidget* shown_now = views_->currentWidget();
  if (omission_ != nullptr && shown_now == omission_)
    omission_->showOmission();
  else if (counts_ != nullptr && shown_now == counts_)
    counts_->showCounts();
  else
    open_first_();
}

}  // namespace lotmere::ui
