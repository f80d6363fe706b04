#include "analysis/draw_range.hpp"

namespace lotmere {
namespace {

constexpr std::int64_t kRowsWorthABar = 200;
// Writing a row takes some hundredths of a millisecond.
constexpr std::int64_t kRowsBetweenLooks = 64;

}  // namespace

std::string_view ballName(BallColour balls) { return balls == BallColour::red ? "红球" : "蓝球"; }

WalkProgress::WalkProgress(Desk& desk, std::int64_t rows) {
  if (rows >= kRowsWorthABar) job_.emplace(desk.course(), rows, Course::Stop::impossible);
}

void WalkProgress::step() {
  ++done_;
  if (job_ && done_ % kRowsBetweenLooks == 0) job_->advance(done_);
}

}  // namespace lotmere
