#include "support/desk_script.hpp"

#include <stdexcept>

namespace lotmere {
namespace {

template <class T>
T take(std::deque<T>& answers, std::string_view question) {
  if (answers.empty()) throw std::logic_error("no scripted answer to: " + std::string(question));
  T answer = std::move(answers.front());
  answers.pop_front();
  return answer;
}

}  // namespace

void ScriptedDesk::tell(std::string_view text, Tone tone, std::string_view title) {
  told.push_back({std::string(text), std::string(title), tone});
}

bool ScriptedDesk::ask(std::string_view text, std::string_view /*title*/) {
  asked.emplace_back(text);
  return take(answers, text);
}

std::size_t ScriptedDesk::choose(std::string_view text, std::span<const std::string_view> captions,
                                 std::size_t cancel, std::string_view /*title*/) {
  asked.emplace_back(text);
  buttons.assign(captions.begin(), captions.end());
  return take(choices, text).value_or(cancel);
}

std::optional<std::string> ScriptedDesk::askText(std::string_view prompt, std::string_view /*title*/,
                                                 std::string_view text) {
  asked.emplace_back(prompt);
  proposed.emplace_back(text);
  return take(texts, prompt);
}

void ScriptedDesk::showTip(std::string_view text, std::string_view title) {
  tips.push_back({std::string(text), std::string(title), Tone::information});
}

void ScriptedDesk::showStatus(std::string_view text) { statuses.emplace_back(text); }

}  // namespace lotmere
