// The one door to the user: messages, questions and the running text, with the course of long jobs beside it.
// The window puts widgets behind it, the command line a terminal, a test a script of answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/course.hpp"

namespace lotmere {

enum class Tone { information, warning, error };

// The text of the course of jobs. Line breaks are CR LF. The work writes it while the
// face, on a thread of its own, shows it.
class RunningText {
 public:
  [[nodiscard]] std::string text() const;
  void set(std::string text);
  // Two line breaks and then the line, behind what stands.
  void appendLine(std::string_view line);
  // Two line breaks and then the line behind a base saved earlier: so a result line takes the place of the
  // line that said the step is under way.
  void setLine(const std::string& base, std::string_view line);

 private:
  mutable std::mutex mutex_;
  std::string text_;
};

class Desk {
 public:
  Desk() = default;
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  virtual ~Desk() = default;

  // A message that the user closes.
  virtual void tell(std::string_view text, Tone tone = Tone::information, std::string_view title = {}) = 0;
  // A question answered by yes or no.
  [[nodiscard]] virtual bool ask(std::string_view text, std::string_view title = {}) = 0;
  // A question whose answers do something that a slip must not do. Each button says what it does; gives the
  // index of the one pressed. `cancel` is the one that changes nothing: what Esc, the close box and Enter on
  // the fresh dialog give. The first button is what "yes" means, the second what "no" means, where a face
  // knows only these words.
  [[nodiscard]] virtual std::size_t choose(std::string_view text, std::span<const std::string_view> buttons,
                                           std::size_t cancel, std::string_view title = {}) = 0;
  // A text typed by the user; nothing when they cancel.
  [[nodiscard]] virtual std::optional<std::string> askText(std::string_view prompt, std::string_view title,
                                                           std::string_view proposed) = 0;
  // A message that goes away by itself after ten seconds.
  virtual void showTip(std::string_view text, std::string_view title) = 0;
  // A passing message beside the work, in the place of the one before; an empty text takes it away.
  virtual void showStatus(std::string_view /*text*/) {}

  [[nodiscard]] RunningText& runningText() { return running_text_; }

  // The course of the operations that go over this desk.
  [[nodiscard]] virtual Course& course() = 0;

 private:
  RunningText running_text_;
};

// The passing messages of an operation: none is left when it ends, on the route of a failure as well.
class StatusScope {
 public:
  explicit StatusScope(Desk& desk) : desk_(desk) {}
  StatusScope(const StatusScope&) = delete;
  StatusScope& operator=(const StatusScope&) = delete;
  ~StatusScope() { desk_.showStatus({}); }

 private:
  Desk& desk_;
};

}  // namespace lotmere
