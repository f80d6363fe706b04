// What differs between two condition sets, row by row: how a change is saved, kept and taken back.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "conditions/condition_set.hpp"

namespace lotmere {

struct SettingChange {
  // The value of a key in the one set and in the other.
  struct Value {
    int key = 0;
    int before = 0;
    int after = 0;

    friend bool operator==(const Value&, const Value&) = default;
  };
  struct Column {
    AttributeTable table = AttributeTable::first;
    std::string name;
    Members before = 0;
    Members after = 0;

    friend bool operator==(const Column&, const Column&) = default;
  };

  std::vector<Value> cells;
  std::vector<Value> switches;
  std::vector<Column> columns;
  std::vector<Value> intervals;  // the key is the red
  std::optional<std::pair<HistoryMatch, HistoryMatch>> match;

  friend bool operator==(const SettingChange&, const SettingChange&) = default;

  [[nodiscard]] bool isEmpty() const;
};

// What leads from one set to the other. Keys that `before` lacks are left out.
[[nodiscard]] SettingChange changeBetween(const ConditionSet& before, const ConditionSet& after);

// Whether a change is made or taken back.
enum class Direction { forward, back };
// The set with the change made or taken back, whatever stands where it applies. Keys and columns that the set
// lacks are passed over.
[[nodiscard]] ConditionSet applyChange(ConditionSet set, const SettingChange& change, Direction direction);

// The change as a text of one line a row, and back; nothing where the text is none of these.
[[nodiscard]] std::string packChange(const SettingChange& change);
[[nodiscard]] std::optional<SettingChange> unpackChange(std::string_view text);

}  // namespace lotmere
