#include "base/desk.hpp"

#include "base/text.hpp"

namespace lotmere {

void RunningText::appendLine(std::string_view line) {
  text_ += kLineBreak;
  text_ += kLineBreak;
  text_ += line;
}

void RunningText::setLine(const std::string& base, std::string_view line) {
  text_ = base;
  appendLine(line);
}

}  // namespace lotmere
