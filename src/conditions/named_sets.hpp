// The sets of settings that a user keeps under a name.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "conditions/condition_set.hpp"
#include "conditions/set_text.hpp"
#include "store/store.hpp"

namespace lotmere {

struct NamedSet {
  std::string name;
  bool with_picks = false;
  std::string text;  // as setText() writes it, or a part of that

  friend bool operator==(const NamedSet&, const NamedSet&) = default;
};

// By name.
[[nodiscard]] std::vector<NamedSet> allNamedSets(Store& store);
[[nodiscard]] std::optional<NamedSet> findNamedSet(Store& store, std::string_view name);
// The first by name whose settings, without picked numbers, are these; nothing where none is like that.
[[nodiscard]] std::optional<std::string> nameOfSet(Store& store, const ConditionSet& set);

// Keeps a set under its name, trimmed: 1 to 40 characters without control characters, else it is refused and
// told. Asks before one of this name with another content is replaced.
Outcome keepNamedSet(Store& store, Desk& desk, NamedSet set);
// Asks first. Refused, told, where there is none of this name.
Outcome deleteNamedSet(Store& store, Desk& desk, std::string_view name);

// The settings with those of the set over them. Picked numbers stay as they are unless asked for. A range of
// 历史数据过滤 that comes with the set counts as chosen. Lines that this program doesn't know change nothing.
[[nodiscard]] ConditionSet putNamedSet(const ConditionSet& base, const NamedSet& set, WithPicks with_picks);

// Puts a set over what stands, as one step that can be undone, and tells what changed, also that custom
// divisions and 历史数据过滤 change for all users where they do. Refused, told, where there is none of this
// name or it holds no picked numbers and they are asked for.
Outcome loadNamedSet(Store& store, Desk& desk, std::string_view name, WithPicks with_picks);

// A file's text as a set of this name. Refused, told, where it is no text of a set, cut off, or has a line
// whose value breaks a rule; lines that this program doesn't know are told and kept.
[[nodiscard]] std::optional<NamedSet> readNamedSet(Desk& desk, std::string name, std::string_view text,
                                                   const ConditionSet& base);

// The same of a file, whose name without its ending is the set's where none is given. Throws as TextFile
// does.
[[nodiscard]] std::optional<NamedSet> readNamedSetFile(Desk& desk, const std::filesystem::path& file,
                                                       const std::optional<std::string>& name,
                                                       const ConditionSet& base);

}  // namespace lotmere
