// The stored conditions: cells of allowed values, switches, and the yes/no columns that a person edits. Every
// write takes effect at once; passes read the tables at the start of each run.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/attributes.hpp"
#include "catalogue/catalogue.hpp"
#include "catalogue/families.hpp"
#include "game/game.hpp"
#include "game/metrics.hpp"
#include "store/store.hpp"

namespace lotmere {

// The work array of one condition. A range that starts at a multiple of ten has the cell of value k at index
// k; the selection rows 1 to 33 and 101 to 116 land on the index of their number.
using ValueArray = std::array<int, 200>;

// Reads the rows of a range in order into the array, from index first modulo 10 on; cells beyond the range
// are 0: not allowed.
[[nodiscard]] ValueArray loadConditionRange(Store& store, ConditionId first, ConditionId last);

// The `Value` of one row, 0 where it is missing.
[[nodiscard]] int conditionValue(Store& store, ConditionId id);
// A pass runs only when its switch is exactly 1.
[[nodiscard]] bool isUsed(Store& store, UsageId usage);
// Panels and the summary show a switch as on when it is above 0.
[[nodiscard]] bool isTicked(Store& store, UsageId usage);

// Cell and switch writes store 1 or 0. False, with nothing written, where the row is missing.
bool setCell(Store& store, ConditionId id, bool allowed);
bool setConditionValue(Store& store, ConditionId id, int value);
bool setUsage(Store& store, UsageId usage, bool on);

// Bulk clears of the selection.
void clearRedPicks(Store& store);
void clearBluePicks(Store& store);

// One yes/no column as a table with 1 for each number that belongs to it.
[[nodiscard]] RedTable readAttributeColumn(Store& store, AttributeTable table, std::string_view column);
// Sets one field.
void writeAttribute(Store& store, AttributeTable table, std::string_view column, int number, bool member);
// Turns one field of `号码特性` over.
void toggleAttribute(Store& store, std::string_view column, int number);
// Makes a column hold exactly these numbers; an empty list clears it.
void setColumn(Store& store, AttributeTable table, std::string_view column, std::span<const int> numbers);

// Reads the first `groups` columns of a family. One select.
[[nodiscard]] GroupTable loadGroupTable(Store& store, const Family& family, int groups);

}  // namespace lotmere
