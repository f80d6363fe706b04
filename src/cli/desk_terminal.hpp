// The desk of the command line: results go to one stream, questions and progress to another.
#pragma once

#include <atomic>
#include <iosfwd>
#include <vector>

#include "base/desk.hpp"

namespace lotmere {

class TerminalDesk final : public Desk {
 public:
  enum class Answer { none, yes, no };
  // `answer` is what the person typed ahead for every question: without it a plain question is answered yes,
  // and one that guards a slip is refused. `out` takes information, `err` warnings, errors, questions and
  // progress. With `show_bar` the progress stands as a percentage on one line of `err`.
  TerminalDesk(std::ostream& out, std::ostream& err, Answer answer, bool show_bar)
      : out_(out), err_(err), answer_(answer), show_bar_(show_bar) {}

  // Asks the job under way to stop as soon as it serves the desk, for the only desk of the process; safe in a
  // signal's handler. A job that can't be stopped says so and goes on.
  static void interrupt() { interrupted_ = true; }
  // Whether a job that can be stopped was asked to.
  [[nodiscard]] bool wasInterrupted() const { return was_interrupted_; }
  // Behind the last job of a command: one that nobody looked at any more came too late, which is said.
  void settleInterrupt();

  void tell(std::string_view text, Tone tone, std::string_view title) override;
  bool ask(std::string_view text, std::string_view title) override;
  std::size_t choose(std::string_view text, std::span<const std::string_view> buttons, std::size_t cancel,
                     std::string_view title) override;
  // Nobody types at a command that takes no input: always cancelled.
  std::optional<std::string> askText(std::string_view prompt, std::string_view title,
                                     std::string_view proposed) override;
  void showTip(std::string_view text, std::string_view title) override;
  void serve() override;

 protected:
  void beginJob(std::int64_t maximum, bool can_stop) override;
  void showProgress(std::int64_t value) override;
  void endJob() override;

 private:
  void clearBar();

  static std::atomic<bool> interrupted_;
  std::ostream& out_;
  std::ostream& err_;
  Answer answer_;
  bool show_bar_;
  std::vector<bool> jobs_;  // of each open job, whether it can be stopped; the innermost last
  bool was_interrupted_ = false;
  std::int64_t maximum_ = 0;
  int percent_ = -1;
};

}  // namespace lotmere
