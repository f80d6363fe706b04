#include "ui/conditions/condition_facts.hpp"

#include <algorithm>
#include <utility>

namespace lotmere::ui {
namespace {

constexpr std::size_t kAtOnce = 12;  // conditions that one question works out

}  // namespace

ConditionFacts::ConditionFacts(Session& session, QObject* parent)
    : QObject(parent), session_(session), answers_(session.desk) {}

void ConditionFacts::forget() {
  answers_.drop();
  draws_.reset();
  reading_ = false;
  facts_.clear();
  match_.reset();
}

bool ConditionFacts::isKnown(const Condition& condition) const { return facts_.contains(condition.usage); }

void ConditionFacts::dropStale() {
  const ConditionSet& set = session_.settings.set();
  if (set.match != counted_.match) match_.reset();
  if (draws_ != nullptr && set != counted_) {
    const bool members = set.columns != counted_.columns;
    std::erase_if(facts_, [&](const auto& fact) {
      const Condition& condition = conditionOfUsage(fact.first);
      if (!fact.second.shares)
        return condition.kind == CellKind::combination ? members : condition.kind == CellKind::sum_family;
      return members && !holdsFor(*fact.second.shares, set, draws_->table, condition, draws_->next);
    });
  }
  counted_ = set;
}

void ConditionFacts::workOut(const std::vector<const Condition*>& front) {
  dropStale();
  wanted_.clear();
  for (const Condition* condition : front)
    if (!isKnown(*condition)) wanted_.push_back(condition);
  for (const Condition& condition : allConditions())
    if (!isKnown(condition) && std::ranges::find(wanted_, &condition) == wanted_.end())
      wanted_.push_back(&condition);
  if (!wanted_.empty() || !match_) ask();
}

void ConditionFacts::ask() {
  if (draws_ == nullptr) return readDraws();
  const std::size_t count = std::min(kAtOnce, wanted_.size());
  const std::vector<const Condition*> now(wanted_.begin(),
                                          wanted_.begin() + static_cast<std::ptrdiff_t>(count));
  answers_.ask([this, now, match = !match_, set = session_.settings.set(),
                draws = draws_](Course& course) -> AnswerThread::Answer {
    Facts facts;
    for (const Condition* condition : now) {
      if (course.stopRequested()) return {};
      Fact& fact = facts[condition->usage];
      fact.shares = valueShares(set, draws->table, *condition, draws->next, kStrengthDraws);
      if (!fact.shares && condition->kind != CellKind::setting)
        fact.strength = conditionStrength(set, draws->table, *condition, draws->next, kStrengthDraws);
    }
    std::optional<Strength> strength;
    if (match) strength = lotmere::matchStrength(set, draws->table, draws->next, kStrengthDraws);
    return [this, facts = std::move(facts), strength, set] {
      for (const auto& [usage, fact] : facts) facts_.insert_or_assign(usage, fact);
      if (strength && session_.settings.set().match == set.match) match_ = strength;
      counted_ = set;  // a change that came meanwhile may have made some of it stale
      workOut(wanted_);
      Q_EMIT known();
    };
  });
}

void ConditionFacts::readDraws() {
  if (std::exchange(reading_, true)) return;
  answers_.ask(
      session_.store, [this, date = session_.entry_date](Store& store, Course&) -> AnswerThread::Question {
        auto draws = std::make_shared<const Draws>(Draws{loadDrawTable(store), nextPeriod(store, date)});
        return [this, draws](Course&) -> AnswerThread::Answer {
          return [this, draws] {
            draws_ = draws;
            counted_ = session_.settings.set();
            workOut(wanted_);
          };
        };
      });
}

const ValueShares* ConditionFacts::shares(const Condition& condition) const {
  const auto found = facts_.find(condition.usage);
  return found == facts_.end() || !found->second.shares ? nullptr : &*found->second.shares;
}

std::optional<Strength> ConditionFacts::strength(const Condition& condition) const {
  const auto found = facts_.find(condition.usage);
  if (found == facts_.end()) return std::nullopt;
  const Fact& fact = found->second;
  return fact.shares ? strengthOf(*fact.shares, session_.settings.set(), condition) : fact.strength;
}

std::optional<NumberGroups> ConditionFacts::groups(const Condition& condition) const {
  if (draws_ == nullptr) return numberGroups(session_.settings.set(), DrawTable{}, condition, 0);
  return numberGroups(session_.settings.set(), draws_->table, condition, draws_->next);
}

}  // namespace lotmere::ui
