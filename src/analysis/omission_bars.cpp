#include "analysis/omission_bars.hpp"

#include <algorithm>
#include <cmath>

namespace lotmere {
namespace {

constexpr double kCaptionAboveFoot = 285;
constexpr double kBaseAboveFoot = 360;

// Parts of a group's width.
struct Stripe {
  double left;
  double width;
};
constexpr Stripe kClosedStripe{30.0 / 500, 105.0 / 500};
constexpr Stripe kRunningStripe{200.0 / 500, 240.0 / 500};

// What the whole height above the base stands for: the longest closed gap, one more, and a tenth.
int scaleOf(const Omission& omission, const ClosedGaps& gaps) {
  return divideHalfToEven((std::max(omission.largest, gaps.largest) + 1) * 11, 10);
}

}  // namespace

Box placeGroup(BallColour balls, int number, double frame_width, double frame_height) {
  const double unit = frame_width / ballCount(balls);
  return {(number - 1) * unit + unit * 0.1, frame_height * 0.1, unit * 0.8, frame_height * 0.8};
}

OmissionBars drawOmissionBars(const Omission& omission, int number, double width, double height) {
  const OmissionFigures& figures = omission.of(number);
  const ClosedGaps gaps = figures.closed.value_or(ClosedGaps{});
  const double base = std::nearbyint(height - kBaseAboveFoot);
  const double step = base / scaleOf(omission, gaps);
  const auto bar = [&](const Stripe& stripe, int value) {
    return Box{stripe.left * width, base - step * value, stripe.width * width, step * value};
  };
  OmissionBars bars{bar(kClosedStripe, gaps.largest), bar(kClosedStripe, gaps.average),
                    bar(kRunningStripe, figures.running)};
  bars.caption_top = height - kCaptionAboveFoot;
  bars.base_line = height - kBaseAboveFoot;
  bars.ball_centre = bars.running.left + bars.running.width / 2;
  bars.ball_foot = bars.running.top;
  bars.above_average = figures.closed && gaps.average < figures.running;
  return bars;
}

}  // namespace lotmere
