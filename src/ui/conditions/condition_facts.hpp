// What the list and the editors tell about each condition: the shares of its values, what it lets through.
// Worked out beside the window and kept as long as it holds.
#pragma once

#include <QObject>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "advice/number_groups.hpp"
#include "advice/value_shares.hpp"
#include "ui/shell/answer_thread.hpp"
#include "ui/shell/session.hpp"

namespace lotmere::ui {

class ConditionFacts : public QObject {
  Q_OBJECT

 public:
  explicit ConditionFacts(Session& session, QObject* parent = nullptr);

  // The draws changed, or may have: everything is worked out anew when it is next asked for.
  void forget();
  // Works out what isn't known for the settings as they are, the conditions in front first.
  void workOut(const std::vector<const Condition*>& front = {});

  // What is known for the settings as they are; nothing while it isn't.
  [[nodiscard]] const ValueShares* shares(const Condition& condition) const;
  [[nodiscard]] std::optional<Strength> strength(const Condition& condition) const;
  [[nodiscard]] std::optional<Strength> matchStrength() const { return match_; }
  [[nodiscard]] std::optional<NumberGroups> groups(const Condition& condition) const;
  // The draws that all of it rests on, nullptr until they are read.
  [[nodiscard]] const DrawTable* draws() const { return draws_ == nullptr ? nullptr : &draws_->table; }

 Q_SIGNALS:
  // More is known than before.
  void known();

 private:
  struct Draws {
    DrawTable table;
    PeriodNo next = 0;
  };
  struct Fact {
    std::optional<ValueShares> shares;
    std::optional<Strength> strength;  // of a condition without such shares, with its cells as they were
  };
  using Facts = std::map<UsageId, Fact>;

  [[nodiscard]] bool isKnown(const Condition& condition) const;
  void dropStale();
  void ask();
  void readDraws();

  Session& session_;
  std::shared_ptr<const Draws> draws_;
  bool reading_ = false;  // they are asked for
  ConditionSet counted_;  // the settings that the facts were last compared with
  Facts facts_;
  std::optional<Strength> match_;
  std::vector<const Condition*> wanted_;
  AnswerThread answers_;
};

}  // namespace lotmere::ui
