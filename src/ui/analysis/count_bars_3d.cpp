#include "ui/analysis/count_bars_3d.hpp"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QOffscreenSurface>
#include <QOpenGLContext>

#include "ui/analysis/count_bars.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr double kViewHeight = 1.4;        // of the window's
constexpr double kAspect = 2.1;            // length over height
constexpr float kCamera[] = {6, 14, 142};  // degrees around, degrees up, percent of closeness

// A platform without a screen may make contexts all the same, but no window that could be drawn into.
bool hasScreen() {
  const QString platform = QGuiApplication::platformName();
  return platform != QStringLiteral("offscreen") && platform != QStringLiteral("minimal");
}

bool makeContext() {
  if (!hasScreen()) return false;
  QOpenGLContext context;
  if (!context.create()) return false;
  QOffscreenSurface surface;
  surface.setFormat(context.format());
  surface.create();
  const bool works = surface.isValid() && context.makeCurrent(&surface);
  if (works) context.doneCurrent();
  return works;
}

}  // namespace

bool hasOpenGl() {
  static const bool works = makeContext();
  return works;
}

CountBars3D::CountBars3D(QWidget* parent) : QWidget(parent), graph_(new Q3DBars), series_(new QBar3DSeries) {
  graph_->setShadowQuality(QAbstract3DGraph::ShadowQualityNone);
  graph_->setSelectionMode(QAbstract3DGraph::SelectionItem);
  graph_->setAspectRatio(kAspect);
  graph_->setBarThickness(0.6F);
  graph_->setBarSpacing(QSizeF(0.4, 0.4));
  graph_->valueAxis()->setLabelFormat(QStringLiteral("%d"));
  graph_->valueAxis()->setTitleVisible(true);
  graph_->columnAxis()->setLabelAutoRotation(60);
  graph_->scene()->activeCamera()->setCameraPosition(kCamera[0], kCamera[1], kCamera[2]);
  connect(graph_->scene(), &Q3DScene::viewportChanged, this, &CountBars3D::lowerView);
  series_->setItemLabelFormat(QStringLiteral("@colLabel　@valueLabel"));
  series_->setMesh(QAbstract3DSeries::MeshBevelBar);
  graph_->addSeries(series_);
  graph_->installEventFilter(this);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(QWidget::createWindowContainer(graph_, this));
  applyColours();
}

void CountBars3D::showRows(BallColour balls, const std::vector<CountRow>& rows, const QString& axis_title) {
  balls_ = balls;
  QStringList labels;
  auto* bars = new QBarDataRow;
  for (const CountRow& row : rows) {
    labels.append(shown(row.label));
    bars->append(QBarDataItem(static_cast<float>(row.count)));
  }
  auto* all = new QBarDataArray;
  all->append(bars);
  series_->dataProxy()->resetArray(all, QStringList(), labels);
  graph_->valueAxis()->setTitle(axis_title);
  const CountGrid grid = gridFor(rows);
  graph_->valueAxis()->setSegmentCount(grid.lines);
  graph_->valueAxis()->setRange(0, static_cast<float>(grid.step * grid.lines));
  applyColours();
}

// The camera looks at the floor: bars would fill the upper half alone. A view that reaches out of the window
// below brings the floor down.
void CountBars3D::lowerView() {
  const QSize window = graph_->size();
  if (graph_->scene()->viewport().height() == window.height())
    graph_->scene()->setPrimarySubViewport(
        QRect(0, 0, window.width(), static_cast<int>(window.height() * kViewHeight)));
}

void CountBars3D::applyColours() {
  Q3DTheme* theme = graph_->activeTheme();
  theme->setType(Q3DTheme::ThemeQt);
  QFont label_font = font();
  label_font.setPointSizeF(label_font.pointSizeF() * 1.6);
  theme->setBackgroundEnabled(false);
  theme->setWindowColor(palette().color(QPalette::Base));
  theme->setGridLineColor(colours().line);
  theme->setLabelTextColor(palette().color(QPalette::Text));
  theme->setLabelBackgroundColor(palette().color(QPalette::Base));
  theme->setLabelBorderEnabled(false);
  theme->setLabelBackgroundEnabled(false);
  theme->setFont(label_font);
  theme->setLightStrength(3);
  theme->setAmbientLightStrength(0.55F);
  theme->setHighlightLightStrength(4);
  theme->setColorStyle(Q3DTheme::ColorStyleUniform);
  const QColor bars = balls_ == BallColour::red ? colours().red_ball : colours().blue_ball;
  theme->setBaseColors({bars});
  theme->setSingleHighlightColor(bars.lighter(130));
  series_->setBaseColor(bars);
}

bool CountBars3D::eventFilter(QObject* watched, QEvent* event) {
  if (watched == graph_ && event->type() == QEvent::MouseButtonDblClick) {
    Q_EMIT doubleClicked();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

void CountBars3D::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) applyColours();
}

}  // namespace lotmere::ui
