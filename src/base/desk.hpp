// The one door to the person: messages, questions, the running text and the course of a long job. The window
// puts widgets behind it, the command line a terminal, a test a script of answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/course.hpp"

namespace lotmere {

enum class Tone { information, warning, error };

// The text of the course of jobs (`TextChaoZuoTip`). Line breaks are CR LF.
class RunningText {
 public:
  [[nodiscard]] const std::string& text() const { return text_; }
  void set(std::string text) { text_ = std::move(text); }
  // Two line breaks and then the line, behind what stands.
  void appendLine(std::string_view line);
  // Two line breaks and then the line behind a base saved earlier: so a result line takes the place of the
  // line that said the step is under way.
  void setLine(const std::string& base, std::string_view line);

 private:
  std::string text_;
};

class Desk {
 public:
  Desk() = default;
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  virtual ~Desk() = default;

  // A message that the person closes.
  virtual void tell(std::string_view text, Tone tone = Tone::information, std::string_view title = {}) = 0;
  // A question answered by yes or no.
  [[nodiscard]] virtual bool ask(std::string_view text, std::string_view title = {}) = 0;
  // A question whose answers do something that a slip must not do. Each button says what it does; gives the
  // index of the one pressed. `cancel` is the one that changes nothing: what Esc, the close box and Enter on
  // the fresh dialog give. The first button is what "yes" means, the second what "no" means, where a face
  // knows only these words.
  [[nodiscard]] virtual std::size_t choose(std::string_view text, std::span<const std::string_view> buttons,
                                           std::size_t cancel, std::string_view title = {}) = 0;
  // A text typed by the person; nothing when they cancel.
  [[nodiscard]] virtual std::optional<std::string> askText(std::string_view prompt, std::string_view title,
                                                           std::string_view proposed) = 0;
  // A message that goes away by itself after ten seconds.
  virtual void showTip(std::string_view text, std::string_view title) = 0;
  // A passing message beside the work, in the place of the one before; an empty text takes it away.
  virtual void showStatus(std::string_view /*text*/) {}

  [[nodiscard]] RunningText& runningText() { return running_text_; }

  // Lets the face repaint and take clicks; called at least every 16 ms by every long loop.
  virtual void serve() {}

  // The `StopFlag`: set by the stop button, read by every loop that can be stopped, cleared at the end of the
  // job.
  [[nodiscard]] bool stopRequested() const { return stop_requested_; }
  void requestStop() { stop_requested_ = true; }
  void clearStop() { stop_requested_ = false; }

 protected:
  friend class Job;
  // The progress bar and the stop button appear, other commands are disabled.
  virtual void beginJob(std::int64_t /*maximum*/, bool /*can_stop*/) {}
  virtual void showProgress(std::int64_t /*value*/) {}
  virtual void endJob() {}

 private:
  RunningText running_text_;
  bool stop_requested_ = false;
};

// An operation that a person can stop: the `StopFlag` is down again when it ends, on the route of a failure
// as well, so that the next one doesn't stop at once.
class StopScope {
 public:
  explicit StopScope(Desk& desk) : desk_(desk) {}
  StopScope(const StopScope&) = delete;
  StopScope& operator=(const StopScope&) = delete;
  ~StopScope() { desk_.clearStop(); }

 private:
  Desk& desk_;
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

// A job under way: the bar from 0 to `maximum`, which is 0 where nobody knows how long it takes. Its end puts
// the controls back, on the route of a failure as well.
class Job {
 public:
  enum class Stop { possible, impossible };

  Job(Desk& desk, std::int64_t maximum, Stop stop) : desk_(desk), can_stop_(stop == Stop::possible) {
    desk_.beginJob(maximum, can_stop_);
  }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;
  ~Job() { desk_.endJob(); }

  // Shows how far the job is and serves the person; true when they asked to stop and the job can be stopped.
  bool advance(std::int64_t value) {
    desk_.showProgress(value);
    desk_.serve();
    return can_stop_ && desk_.stopRequested();
  }

 private:
  Desk& desk_;
  bool can_stop_;
};

// A desk as the course of a piece of work: its legs are jobs, its stop is the `StopFlag`.
class DeskCourse final : public Course {
 public:
  explicit DeskCourse(Desk& desk) : desk_(desk) {}

  void begin(std::int64_t total, Stop stop) override {
    job_.emplace(desk_, total, stop == Stop::possible ? Job::Stop::possible : Job::Stop::impossible);
  }
  bool advance(std::int64_t done) override { return job_ && job_->advance(done); }
  void end() override { job_.reset(); }
  [[nodiscard]] bool stopRequested() const override { return desk_.stopRequested(); }

 private:
  Desk& desk_;
  std::optional<Job> job_;
};

}  // namespace lotmere
