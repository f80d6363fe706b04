// What a run says while it walks: the lines of the running text and the tips, step by step.
#pragma once

#include <string>

#include "base/desk.hpp"
#include "pipeline/thin.hpp"

namespace lotmere {

// How many tickets a run begins with, and how many it ends with.
[[nodiscard]] std::string beforeLine(std::int64_t tickets);
[[nodiscard]] std::string endLine(std::int64_t tickets, bool stopped);

// The lines of a step in the running text: both stand on the same base, so that the second replaces the
// first.
struct StepLines {
  std::string start;   // "[连号]过滤正在进行中．．．"
  std::string result;  // "[连号]过滤后余：", the count follows
};
[[nodiscard]] StepLines linesOf(const FilterPlan& plan, std::size_t step);

// Writes them as the steps begin and end. A condition that judges against earlier draws warns with a tip
// first, which waits for the user or ten seconds.
class RunText final : public StepWatcher {
 public:
  RunText(Desk& desk, const FilterPlan& plan) : desk_(desk), plan_(plan) {}

  void stepBegins(std::size_t step, std::int64_t tickets) override;
  void stepEnds(std::size_t step, const StepResult& result) override;
  void judgingBegins() override;
  void judgingEnds(std::int64_t left) override;

 private:
  void warn(const Condition& condition) const;
  void tellFailing(std::size_t step, const StepResult& result);
  void tellTurns(const StepResult& result) const;
  void tellResult(std::size_t step, std::int64_t tickets) const;

  Desk& desk_;
  const FilterPlan& plan_;
  std::string base_;      // the running text in front of the step under way
  bool judging_ = false;  // and behind it the line that all steps are being judged
};

}  // namespace lotmere
