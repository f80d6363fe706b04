#include "tickets/run_note.hpp"

#include <fmt/format.h>

#include "conditions/set_text.hpp"
#include "tickets/ticket_steps.hpp"

namespace lotmere {
namespace {

std::string noteOf(PeriodNo period, const RunSettings& run, const ConditionSet& now) {
  std::string text =
      fmt::format("{} 期的号码按{}过滤", period,
                  run.name.empty() ? std::string("当时的设置") : fmt::format("方案“{}”", run.name));
  const auto then = readSetText(run.text, now, WithPicks::no);
  if (!then) return text + "。";
  const auto changed = differencesBetween(then->set, now, WithPicks::no);
  return text +
         (changed.empty() ? "，设置至今未变。" : fmt::format("，此后改变了：{}。", differenceNames(changed)));
}

}  // namespace

std::vector<std::string> runNotes(Store& store, const ConditionSet& now, PeriodNo period) {
  std::vector<std::string> notes;
  for (const PeriodNo one : runPeriods(store))
    if (const auto run = loadRunSettings(store, one); run && (period == 0 || period == one))
      notes.push_back(noteOf(one, *run, now));
  return notes;
}

}  // namespace lotmere
