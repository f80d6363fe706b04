#include "cli/desk_terminal.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>

namespace lotmere {
namespace {

// Takes away what a longer line left on a terminal.
constexpr std::string_view kEraseRest = "\x1B[K";

// A message of several lines becomes one: the line ends turn into blanks.
std::string oneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c == '\r') continue;
    if (c != '\n')
      line += c;
    else if (!line.empty() && line.back() != ' ')
      line += ' ';
  }
  return line;
}

}  // namespace

std::atomic<bool> TerminalCourse::interrupted_{false};

void TerminalCourse::begin(std::int64_t total, Stop stop) {
  can_stop_ = stop == Stop::possible;
  // A stop that came in front of this leg ends it.
  was_interrupted_ = was_interrupted_ || (can_stop_ && stopRequested());
  total_ = total;
  percent_ = -1;
}

bool TerminalCourse::advance(std::int64_t done) {
  showPercent(done);
  takeInterrupt();
  return stopRequested();
}

void TerminalCourse::end() { clearBar(); }

void TerminalCourse::settleInterrupt() {
  if (interrupted_.exchange(false)) err_ << "来不及中断，命令已经完成。\n";
}

void TerminalCourse::showPercent(std::int64_t done) {
  if (!show_bar_ || total_ <= 0) return;
  const int percent = static_cast<int>(std::min<std::int64_t>(100, done * 100 / total_));
  if (percent == percent_ && status_ == shown_status_) return;
  percent_ = percent;
  shown_status_ = status_;
  err_ << fmt::format("\r{:3}%{}{}{}", percent, status_.empty() ? "" : " ", status_, kEraseRest)
       << std::flush;
}

void TerminalCourse::takeInterrupt() {
  if (!interrupted_.exchange(false)) return;
  requestStop();
  if (can_stop_) {
    was_interrupted_ = true;
    return;
  }
  clearBar();
  err_ << "这一步不能中断，要等它完成。\n" << std::flush;
}

void TerminalCourse::clearBar() {
  if (show_bar_ && percent_ >= 0) err_ << '\r' << kEraseRest << std::flush;
  percent_ = -1;
}

void TerminalDesk::tell(std::string_view text, Tone tone, std::string_view /*title*/) {
  (tone == Tone::information ? out_ : err_) << oneLine(text) << '\n';
}

bool TerminalDesk::ask(std::string_view text, std::string_view /*title*/) {
  const bool answer = answer_ != Answer::no;
  err_ << oneLine(text) << (answer ? " [是]" : " [否]") << '\n';
  return answer;
}

std::size_t TerminalDesk::choose(std::string_view text, std::span<const std::string_view> buttons,
                                 std::size_t cancel, std::string_view /*title*/) {
  if (answer_ == Answer::none) {
    err_ << fmt::format("{} 没有执行：请加 --answer yes（{}）或 --answer no（{}）。\n", oneLine(text),
                        buttons[0], buttons[1]);
    return cancel;
  }
  const std::size_t chosen = answer_ == Answer::yes ? 0 : 1;
  err_ << fmt::format("{} [{}]\n", oneLine(text), buttons[chosen]);
  return chosen;
}

std::optional<std::string> TerminalDesk::askText(std::string_view /*prompt*/, std::string_view /*title*/,
                                                 std::string_view /*proposed*/) {
  return std::nullopt;
}

void TerminalDesk::showTip(std::string_view text, std::string_view /*title*/) {
  err_ << oneLine(text) << '\n';
}

}  // namespace lotmere
