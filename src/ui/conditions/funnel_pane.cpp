#include "ui/conditions/funnel_pane.hpp"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/look/text.hpp"

namespace lotmere::ui {
namespace {

// A caption with its number in bold.
QString pair(const QString& caption, const QString& number) {
  return QStringLiteral("%1 <b>%2</b>").arg(caption.toHtmlEscaped(), number);
}

}  // namespace

FunnelPane::FunnelPane(QWidget* parent)
    : QWidget(parent), start_(new QLabel), bars_(new FunnelBars), end_(new QLabel), line_(new QLabel) {
  setObjectName(QStringLiteral("funnelPane"));
  start_->setObjectName(QStringLiteral("funnelStart"));
  bars_->setObjectName(QStringLiteral("funnelBars"));
  end_->setObjectName(QStringLiteral("funnelEnd"));
  line_->setObjectName(QStringLiteral("liveCount"));
  for (QLabel* label : {start_, end_}) label->setTextFormat(Qt::RichText);
  line_->setForegroundRole(QPalette::PlaceholderText);
  line_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* row = new QHBoxLayout;
  row->setSpacing(14);
  row->addWidget(start_);
  row->addWidget(bars_, 1);
  row->addWidget(end_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addLayout(row);
  layout->addWidget(line_);
  connect(bars_, &FunnelBars::clicked, this,
          [this](int bar) { Q_EMIT stepWanted(bars_->bars()[static_cast<std::size_t>(bar)].name); });
}

void FunnelPane::showResult(const LiveCount::Result& result) {
  const bool counted = !result.too_many && result.tickets > 0;
  std::vector<FunnelBar> bars;
  if (counted)
    for (const FunnelStep& step : result.funnel) bars.push_back({shown(step.name), step.before, step.after});
  bars_->showFunnel(std::move(bars));
  start_->setText(counted
                      ? QStringLiteral("%1<br><b>%2</b> 注")
                            .arg(result.from_selection ? QStringLiteral("选号展开") : QStringLiteral("表格"),
                                 grouped(result.tickets))
                      : QString());
  const QString shrink =
      shown(result.shrink) + (result.at_most ? QStringLiteral("缩水后最多") : QStringLiteral("缩水后"));
  end_->setText(counted ? pair(QStringLiteral("过滤后"), grouped(result.filtered)) + QStringLiteral("<br>") +
                              pair(shrink, grouped(result.survivors))
                        : QString());
  line_->setText(shown(liveText(result)));
  line_->setToolTip(line_->text());
}

void FunnelPane::showCounting() { line_->setText(shown(kCountingText)); }

}  // namespace lotmere::ui
