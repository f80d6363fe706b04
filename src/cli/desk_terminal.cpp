#include "cli/desk_terminal.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>

namespace lotmere {
namespace {

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

std::atomic<bool> TerminalDesk::interrupted_{false};

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

void TerminalDesk::serve() {
  // Between two jobs it waits for the next one.
  if (jobs_.empty() || !interrupted_.exchange(false)) return;
  requestStop();
  if (jobs_.back()) {
    was_interrupted_ = true;
    return;
  }
  clearBar();
  err_ << "这一步不能中断，要等它完成。\n" << std::flush;
}

void TerminalDesk::settleInterrupt() {
  if (interrupted_.exchange(false)) err_ << "来不及中断，命令已经完成。\n";
}

void TerminalDesk::beginJob(std::int64_t maximum, bool can_stop) {
  jobs_.push_back(can_stop);
  // A stop that came in front of this job ends it.
  was_interrupted_ = was_interrupted_ || (can_stop && stopRequested());
  maximum_ = maximum;
  percent_ = -1;
}

void TerminalDesk::showProgress(std::int64_t value) {
  if (!show_bar_ || maximum_ <= 0) return;
  const int percent = static_cast<int>(std::min<std::int64_t>(100, value * 100 / maximum_));
  if (percent == percent_) return;
  percent_ = percent;
  err_ << fmt::format("\r{:3}%", percent) << std::flush;
}

void TerminalDesk::endJob() {
  jobs_.pop_back();
  clearBar();
}

void TerminalDesk::clearBar() {
  if (show_bar_ && percent_ >= 0) err_ << "\r    \r" << std::flush;
  percent_ = -1;
}

}  // namespace lotmere
