// The views of the analyses: what is painted, told and counted for a history.
#include <fmt/format.h>

#include <QHelpEvent>
#include <QLineEdit>
#include <QToolTip>

#include "analysis/omission_text.hpp"
#include "base/text.hpp"
#include "game/game.hpp"
#include "ui/analysis/count_bars_3d.hpp"
#include "ui/analysis/count_chart.hpp"
#include "ui/analysis/omission_view.hpp"
#include "ui/look/theme.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

constexpr double kTwips = 15;
constexpr PeriodNo kFirst = 2026001;

template <class View>
class AnalysisViewTest : public DrivenTest {
 protected:
  AnalysisViewTest() : view_(session_) { view_.resize(870, 560); }
  [[nodiscard]] const QWidget& whole() override { return view_; }
  [[nodiscard]] Commands& commands() override { return commands_; }

  // Ten draws: 1 comes at the places 2, 3 and 7, 2 at 0 and 1, 3 at 0 and 6, 4 at the first one only.
  void putTenDraws() {
    const std::vector<std::vector<int>> holds = {{2, 3, 4}, {2}, {1}, {1}, {}, {}, {3}, {1}, {}, {}};
    std::vector<StoredDraw> draws;
    for (const std::vector<int>& reds : holds) {
      DrawNumbers numbers{{28, 29, 30, 31, 32, 33}, 5};
      std::ranges::copy(reds, numbers.reds.begin());
      draws.push_back({kFirst + static_cast<PeriodNo>(draws.size()), numbers});
    }
    lotmere::test::putDraws(store_, draws);
  }
  void putEleventhDraw() {
    lotmere::test::putDraw(store_, kFirst + 10, "2026-01-29", {{1, 2, 3, 4, 5, 6}, 7});
  }
  void show(BallColour balls = BallColour::red) {
    view_.show();
    commands_.runner().run([&] { view_.open(balls); });
  }
  void select(const char* list, int index) { this->template part<QComboBox>(list).setCurrentIndex(index); }

  Store& store_ = home_.store();
  Commands commands_{desk_};
  Session session_{store_, home_.home(), desk_, clock_, commands_};
  View view_;
};

class OmissionViewTest : public AnalysisViewTest<OmissionView> {
 protected:
  [[nodiscard]] OmissionGroup& group(int number) {
    return part<OmissionGroup>("omissionGroup." + std::to_string(number));
  }
  // Whether a group tells the figures of this analysis.
  [[nodiscard]] bool tells(int number, const std::optional<Omission>& omission) {
    return group(number).toolTip() == shown(omissionTip(*omission, number));
  }
  [[nodiscard]] std::optional<Omission> reds(PeriodNo period) {
    return analyseRedOmission(store_, desk_, period);
  }
  [[nodiscard]] std::optional<Omission> blues(PeriodNo period) {
    return analyseBlueOmission(store_, desk_, period);
  }
  void typePeriod(const char* period) {
    auto& line = *part<QComboBox>("omissionPeriod").lineEdit();
    line.selectAll();
    QTest::keyClicks(&line, QString::fromUtf8(period));
    QTest::keyClick(&line, Qt::Key_Return);
  }
  [[nodiscard]] std::string period() { return text("omissionPeriod"); }
  [[nodiscard]] int groupsShown() {
    return static_cast<int>(
        std::ranges::count_if(view_.findChildren<OmissionGroup*>(), &OmissionGroup::isVisible));
  }
};

TEST_F(OmissionViewTest, BarsStandWhereTheGeometrySaysInTheirColours) {
  putTenDraws();
  show();
  const Omission omission = *reds(kFirst + 9);
  const QWidget& frame = part("omissionChart");
  struct Case {
    const char* what;
    int number;
    bool closed;
    QColor Colours::*running;
  };
  const Case cases[] = {{"as long as the average", 1, true, &Colours::running_gap},
                        {"longer than an average of 0", 2, false, &Colours::long_gap},
                        {"shorter than the average", 3, true, &Colours::running_gap},
                        {"once only: no average to compare with", 4, false, &Colours::running_gap}};
  for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
    applyAppearance(*qApp, appearance);
    const QImage picture = view_.findChild<QWidget*>(frame.objectName())->grab().toImage();
    const QRect inner = frame.contentsRect();
    const double width = inner.width() * kTwips, height = inner.height() * kTwips;
    for (const auto& [what, number, closed, running] : cases) {
      const Box box = placeGroup(BallColour::red, number, width, height);
      const OmissionBars bars = drawOmissionBars(omission, number, box.width, box.height);
      const auto colour = [&](const Box& bar, double part) {
        return picture.pixelColor(
            inner.left() + static_cast<int>((box.left + bar.left + bar.width / 2) / kTwips),
            inner.top() + static_cast<int>((box.top + bar.top + bar.height * part) / kTwips));
      };
      EXPECT_EQ(colour(bars.running, 0.9), colours().*running) << what;
      const Box above_base{bars.average.left, bars.base_line - 3 * kTwips, bars.average.width};
      EXPECT_EQ(colour(above_base, 0), closed ? colours().long_gap : frame.palette().color(QPalette::Base))
          << what;
      const bool higher = number == 1;  // of these, only its largest gap looks out above the average
      EXPECT_EQ(colour(bars.largest, 0.1) == colours().largest_gap, higher) << what;
    }
  }
  applyAppearance(*qApp, Appearance::light);
  EXPECT_GT(group(4).bars().ball_foot, 30) << "a gap beyond the scale leaves room for the ball";
}

TEST_F(OmissionViewTest, TipsAndReportsTellTheFigures) {
  putTenDraws();
  show();
  const Omission omission = *reds(kFirst + 9);
  const OmissionBars bars = group(1).bars();
  const auto tip_at = [&](const Box& bar, double part) {
    const QPoint place(static_cast<int>(bar.left + bar.width / 2),
                       static_cast<int>(bar.top + bar.height * part));
    QHelpEvent rest(QEvent::ToolTip, place, group(1).mapToGlobal(place));
    QApplication::sendEvent(&group(1), &rest);
    return QToolTip::text();
  };
  EXPECT_EQ(tip_at(bars.running, 0.5), shown(runningTip(omission, 1)));
  EXPECT_EQ(tip_at(bars.average, 0.5), shown(averageTip(omission, 1))) << "in front of the largest";
  EXPECT_EQ(tip_at(bars.largest, 0.1), shown(largestTip(omission, 1)));
  EXPECT_EQ(tip_at({1, 1, 1, 1}, 0.5), shown(omissionTip(omission, 1)));
  EXPECT_TRUE(tells(30, omission));

  EXPECT_EQ(group(1).focusPolicy(), Qt::StrongFocus);
  QTest::mouseClick(&group(30), Qt::LeftButton);
  EXPECT_EQ(told(), omissionReport(omission, 30));
  for (const auto& [key, number] : {std::pair{Qt::Key_Right, 31},
                                    {Qt::Key_Left, 30},
                                    {Qt::Key_End, 33},
                                    {Qt::Key_Right, 33},
                                    {Qt::Key_Home, 1},
                                    {Qt::Key_Left, 1}}) {
    QTest::keyClick(view_.focusWidget(), key);
    QTest::keyClick(view_.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(told(), omissionReport(omission, number));
    for (int other = 1; other <= kRedCount; ++other)
      EXPECT_EQ(group(other).focusPolicy() == Qt::StrongFocus, other == number) << other;
  }
}

TEST_F(OmissionViewTest, ThePeriodFallsBackIsRefusedOrTaken) {
  putTenDraws();
  show();
  EXPECT_EQ(period() + text("omissionBalls"), "2026010红球号码遗漏分析");
  const std::string malformed = "不对，应为年份加三位期次的7位数字，如 2007001。";
  const struct {
    const char* typed;
    const char* taken;
    std::string says;
  } rows[] = {{"2026003", "2026003", ""},
              {"2026300", "2026010", ""},
              {"2026004", "2026004", ""},
              {"2025001", "2026004", "历史记录里没有 2025001 期，无法统计遗漏。"},
              {"20260041", "2026004", "期号“20260041”" + malformed},
              {"202600", "2026004", "期号“202600”" + malformed}};
  for (const auto& row : rows) {
    desk_.told.clear();
    typePeriod(row.typed);
    EXPECT_EQ(period(), row.taken);
    EXPECT_EQ(told(), row.says);
    EXPECT_TRUE(tells(1, reds(std::stoi(row.taken)))) << row.typed;
  }
  EXPECT_EQ(groupsShown(), kRedCount);
  select("omissionBalls", 1);
  EXPECT_EQ(groupsShown(), kBlueCount);
  EXPECT_EQ(group(16).geometry().right(), part("omissionChart").contentsRect().right());
  EXPECT_TRUE(tells(5, blues(2026004)));
  putEleventhDraw();
  view_.loadOmissionPeriods();
  EXPECT_EQ(period(), "2026011");
  EXPECT_EQ(part<QComboBox>("omissionPeriod").count(), 11);
  press("refreshOmission");
  EXPECT_TRUE(tells(7, blues(2026011)));
}

TEST_F(OmissionViewTest, AnEmptyHistoryIsToldAndShowsNoGroup) {
  show();
  EXPECT_EQ(told(), "历史记录是空的，无法统计遗漏。");
  EXPECT_EQ(groupsShown(), 0);
  putTenDraws();
  press("refreshOmission");
  EXPECT_EQ(groupsShown(), kRedCount);
  store_.query(R"(DELETE FROM "历史记录")").run();
  view_.loadOmissionPeriods();
  view_.showOmission();
  EXPECT_EQ(groupsShown(), 0);
}

TEST_F(OmissionViewTest, ALongWalkShowsItsBarAndTakesNoSecondStart) {
  std::vector<StoredDraw> draws;
  for (PeriodNo period = kFirst; period < kFirst + 300; ++period)
    draws.push_back({period, {{1, 2, 3, 4, 5, 6}, 7}});
  lotmere::test::putDraws(store_, draws);
  int served = 0;
  desk_.on_look = [&] {
    if (!desk_.jobRunning() || ++served > 1) return;
    EXPECT_TRUE(part("omissionProgress").isVisible() && !part("omissionBalls").isEnabled());
    QTest::mouseClick(&group(1), Qt::LeftButton);
  };
  show();
  EXPECT_GT(served, 0);
  EXPECT_TRUE(desk_.told.empty());
  EXPECT_TRUE(!part("omissionProgress").isVisible() && part("omissionBalls").isEnabled());
  typePeriod("2026001");
  EXPECT_EQ(period(), "2026001") << "which isn't among the fifty listed";
}

class CountChartTest : public AnalysisViewTest<CountChart> {
 protected:
  [[nodiscard]] CountBars& bars() { return part<CountBars>("countBars"); }
  // What the chart holds, as the engine would give it.
  void expectRows(const std::vector<CountRow>& rows) {
    QBarSet* set = static_cast<QBarSeries*>(bars().chart()->series().constFirst())->barSets().constFirst();
    ASSERT_EQ(set->count(), rows.size());
    const auto& axis = static_cast<QBarCategoryAxis&>(*bars().chart()->axes(Qt::Horizontal).constFirst());
    ASSERT_EQ(axis.count(), set->count());
    for (int i = 0; i < set->count(); ++i) {
      EXPECT_EQ(set->at(i), rows[i].count) << rows[i].label;
      EXPECT_EQ(utf8(bars().tipOf(i)), fmt::format("{}　{} 次", rows[i].label, rows[i].count));
      EXPECT_EQ(utf8(axis.at(i)), formatBall(i + 1));
    }
    const bool red = set->count() == kRedCount;
    EXPECT_EQ(utf8(axis.titleText()), red ? "红球" : "蓝球");
    EXPECT_EQ(set->color(), red ? colours().red_ball : colours().blue_ball);
  }
};

TEST_F(CountChartTest, TheChartHoldsTheCountsOfTheChosenSpan) {
  show(BallColour::blue);
  expectRows(countBlueDraws(store_, desk_, 0, 0));
  EXPECT_TRUE(desk_.told.empty()) << "an empty history counts nothing";
  putTenDraws();
  view_.loadPeriods();
  select("countBalls", 0);
  EXPECT_EQ(part<QComboBox>("countPeriod.0").currentIndex(), -1) << "ten draws: from the first on";
  expectRows(countRedDraws(store_, desk_, 0, 2026010));
  putEleventhDraw();
  view_.loadPeriods();
  EXPECT_EQ(text("countPeriod.0"), "2026002");
  expectRows(countRedDraws(store_, desk_, 2026002, 2026011));
  select("countPeriod.1", 4);
  expectRows(countRedDraws(store_, desk_, 2026002, 2026007));
  select("countBalls", 1);
  expectRows(countBlueDraws(store_, desk_, 2026002, 2026007));
  select("countPeriod.0", 0);
  expectRows(countBlueDraws(store_, desk_, 2026011, 2026007));
}

TEST(CountGridTest, HasAtMostEightStepsUpToTheHighestBarAndRoomForItsLabel) {
  for (const auto& [largest, step, lines] :
       {std::tuple{0, 1, 2}, {8, 1, 9}, {9, 2, 5}, {80, 10, 9}, {81, 20, 5}, {401, 100, 5}}) {
    const CountGrid grid = gridFor({{1, largest / 2, ""}, {2, largest, ""}, {3, largest / 3, ""}});
    EXPECT_EQ(std::pair(grid.step, grid.lines), std::pair(step, lines)) << largest;
  }
}

TEST_F(CountChartTest, BarsInSpaceNeedOpenGlAndAllBarsLeadBack) {
  putTenDraws();
  show();
  int back = 0;
  QObject::connect(&view_, &CountChart::backWanted, [&] { ++back; });
  press("backToConditions");
  QTest::mouseDClick(bars().viewport(), Qt::LeftButton);
  EXPECT_EQ(back, 2);
  auto& in_space = part<QCheckBox>("inSpace");
  EXPECT_EQ(in_space.isEnabled(), hasOpenGl());
  EXPECT_EQ(in_space.toolTip().contains(QStringLiteral("不支持 OpenGL")), !hasOpenGl());
  in_space.click();
  EXPECT_EQ(view_.findChild<CountBars3D*>() != nullptr, hasOpenGl());
  EXPECT_EQ(bars().isVisible(), !hasOpenGl());
}

}  // namespace
}  // namespace lotmere::ui::test
