#include "base/desk.hpp"

#include "base/text.hpp"

namespace lotmere {

std::string RunningText::text() const {
  const std::lock_guard lock(mutex_);
  return text_;
}

void RunningText::set(std::string text) {
  const std::lock_guard lock(mutex_);
  text_ = std::move(text);
}

void RunningText::appendLine(std::string_view line) {
  const std::lock_guard lock(mutex_);
  text_ += kLineBreak;
  text_ += kLineBreak;
  text_ += line;
}

void RunningText::setLine(const std::string& base, std::string_view line) {
  std::string text = base;
  text += kLineBreak;
  text += kLineBreak;
  text += line;
  set(std::move(text));
}

}  // namespace lotmere
