#include "core/desk.hpp"

#include "core/text.hpp"

namespace lotmere {

void RunningText::append_Line(std::string_view line) {
  text_ += kLineBreak;
  text_ += kLineBreak;
  text_ += line;
}

void RunningText::set_Line(const std::string& base, std::string_view line) {
  text_ = base;
  append_Line(line);
}

}  // namespace lotmere
