// A desk for tests: answers come from a script, and everything said is kept.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "base/desk.hpp"
#include "support/scripted_course.hpp"

namespace lotmere {

class ScriptedDesk : public Desk {
 public:
  // Answers of ask(), first to last; an unscripted question throws std::logic_error, so that no test answers
  // by accident.
  std::deque<bool> answers;
  // Answers of choose(), the index of a button each; nothing stands for Esc or the close box.
  std::deque<std::optional<std::size_t>> choices;
  // Answers of askText(); an empty entry stands for cancel.
  std::deque<std::optional<std::string>> texts;
  struct Said {
    std::string text;
    std::string title;
    Tone tone;
  };
  std::vector<Said> told;
  std::vector<std::string> asked;
  std::vector<std::string> proposed;  // what stood in the box of each askText()
  std::vector<std::string> buttons;   // of the last choose()
  std::vector<Said> tips;
  std::vector<std::string> statuses;  // an empty one each time the message went away

  void tell(std::string_view text, Tone tone, std::string_view title) override;
  bool ask(std::string_view text, std::string_view title) override;
  std::size_t choose(std::string_view text, std::span<const std::string_view> captions, std::size_t cancel,
                     std::string_view title) override;
  std::optional<std::string> askText(std::string_view prompt, std::string_view title,
                                     std::string_view text) override;
  void showTip(std::string_view text, std::string_view title) override;
  void showStatus(std::string_view text) override;
  test::WatchedCourse& course() override { return course_; }

 private:
  test::WatchedCourse course_;
};

}  // namespace lotmere
