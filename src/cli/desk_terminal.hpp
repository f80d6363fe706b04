// The desk of the command line: results go to one stream, questions and progress to another.
#pragma once

#include <atomic>
#include <iosfwd>
#include <string>

#include "base/desk.hpp"

namespace lotmere {

// The course of a command: the progress as a percentage on one line, and Ctrl-C.
class TerminalCourse final : public StoppableCourse {
 public:
  TerminalCourse(std::ostream& err, bool show_bar) : err_(err), show_bar_(show_bar) {}

  void begin(std::int64_t total, Stop stop) override;
  bool advance(std::int64_t done) override;
  void end() override;

  // A passing message behind the percentage, from the next look on.
  void showStatus(std::string_view text) { status_ = text; }
  // Asks the leg under way to stop at its next look, for the only course of the process; safe in a signal's
  // handler. A leg that can't be stopped says so and goes on. Between two legs it waits for the next one.
  static void interrupt() { interrupted_ = true; }
  // Whether a leg that can be stopped was asked to.
  [[nodiscard]] bool wasInterrupted() const { return was_interrupted_; }
  // Behind the last leg of a command: one that nobody looked at any more came too late, which is said.
  void settleInterrupt();

 private:
  void showPercent(std::int64_t done);
  void takeInterrupt();
  void clearBar();

  static std::atomic<bool> interrupted_;
  std::ostream& err_;
  bool show_bar_;
  bool can_stop_ = false;
  bool was_interrupted_ = false;
  std::int64_t total_ = 0;
  int percent_ = -1;
  std::string status_;
  std::string shown_status_;
};

class TerminalDesk final : public Desk {
 public:
  enum class Answer { none, yes, no };
  // `answer` is what the user typed ahead for every question: without it a plain question is answered yes,
  // and one that guards a slip is refused. `out` takes information, `err` warnings, errors, questions and
  // progress. With `show_bar` the progress stands as a percentage on one line of `err`.
  TerminalDesk(std::ostream& out, std::ostream& err, Answer answer, bool show_bar)
      : out_(out), err_(err), answer_(answer), course_(err, show_bar) {}

  void tell(std::string_view text, Tone tone, std::string_view title) override;
  bool ask(std::string_view text, std::string_view title) override;
  std::size_t choose(std::string_view text, std::span<const std::string_view> buttons, std::size_t cancel,
                     std::string_view title) override;
  // Nobody types at a command that takes no input: always cancelled.
  std::optional<std::string> askText(std::string_view prompt, std::string_view title,
                                     std::string_view proposed) override;
  void showTip(std::string_view text, std::string_view title) override;
  // Stands with the progress, where that is shown.
  void showStatus(std::string_view text) override { course_.showStatus(text); }
  TerminalCourse& course() override { return course_; }

 private:
  std::ostream& out_;
  std::ostream& err_;
  Answer answer_;
  TerminalCourse course_;
};

}  // namespace lotmere
