#include "conditions/named_sets.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "base/text_file.hpp"
#include "conditions/condition_store.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kLongestName = 40;  // characters

Outcome refuse(Desk& desk, const std::string& text) {
  desk.tell(text, Tone::warning);
  return Outcome::refused;
}

Outcome refuseUnknown(Desk& desk, std::string_view name) {
  return refuse(desk, fmt::format("没有名为{}的方案。", quoteTyped(name)));
}

bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

NamedSet rowOf(const Query& row) { return {row.text(0), row.number(1) != 0, row.text(2)}; }

// Whether one of these differs: what all users have in common.
bool changesForAll(const ConditionSet& before, const ConditionSet& after) {
  constexpr auto third = static_cast<std::size_t>(AttributeTable::third);
  return before.match != after.match || before.columns[third] != after.columns[third];
}

std::string loadedText(const std::string& name, const ConditionSet& before, const ConditionSet& after) {
  const auto differences = differencesBetween(before, after);
  if (differences.empty()) return fmt::format("方案“{}”与现在的设置相同，没有改变。", name);
  std::string text = fmt::format("已载入方案“{}”，改变了：{}。", name, differenceNames(differences));
  if (changesForAll(before, after)) text += "自定义区间和历史数据过滤是所有用户共用的，对所有用户都改变了。";
  return text;
}

}  // namespace

std::vector<NamedSet> allNamedSets(Store& store) {
  std::vector<NamedSet> sets;
  Query rows = store.query(R"(SELECT "名称","含选号","内容" FROM "命名方案" ORDER BY "名称")");
  while (rows.next()) sets.push_back(rowOf(rows));
  return sets;
}

std::optional<NamedSet> findNamedSet(Store& store, std::string_view name) {
  Query row = store.query(R"(SELECT "名称","含选号","内容" FROM "命名方案" WHERE "名称"=?)");
  row.bind(std::string(trim(name)));
  if (!row.next()) return std::nullopt;
  return rowOf(row);
}

std::optional<std::string> nameOfSet(Store& store, const ConditionSet& set) {
  for (const NamedSet& named : allNamedSets(store))
    if (differencesBetween(putNamedSet(set, named, WithPicks::no), set, WithPicks::no).empty())
      return named.name;
  return std::nullopt;
}

Outcome keepNamedSet(Store& store, Desk& desk, NamedSet set) {
  set.name = trim(set.name);
  if (set.name.empty()) return refuse(desk, "方案的名称不能为空。");
  if (countCharacters(set.name) > kLongestName || std::ranges::any_of(set.name, isControl))
    return refuse(desk, fmt::format("方案的名称最多 {} 个字，不能含控制字符。", kLongestName));
  const auto standing = findNamedSet(store, set.name);
  if (standing && *standing != set) {
    constexpr std::array<std::string_view, 2> buttons{"替换", "取消"};
    if (desk.choose(fmt::format("已有方案“{}”，要替换它吗？", set.name), buttons, 1) != 0)
      return Outcome::refused;
  }
  store.query(R"(INSERT OR REPLACE INTO "命名方案" ("名称","含选号","内容") VALUES (?,?,?))")
      .bind(set.name, set.with_picks ? 1 : 0, set.text)
      .run();
  return Outcome::done;
}

Outcome deleteNamedSet(Store& store, Desk& desk, std::string_view name) {
  const auto set = findNamedSet(store, name);
  if (!set) return refuseUnknown(desk, name);
  constexpr std::array<std::string_view, 2> buttons{"删除", "取消"};
  if (desk.choose(fmt::format("确认要删除方案“{}”吗？删除后不能恢复。", set->name), buttons, 1) != 0)
    return Outcome::refused;
  store.query(R"(DELETE FROM "命名方案" WHERE "名称"=?)").bind(set->name).run();
  return Outcome::done;
}

ConditionSet putNamedSet(const ConditionSet& base, const NamedSet& set, WithPicks with_picks) {
  auto read = readSetText(set.text, base, with_picks);
  if (!read) return base;
  if (read->set.match != base.match) read->set.match.chosen = true;
  return std::move(read->set);
}

Outcome loadNamedSet(Store& store, Desk& desk, std::string_view name, WithPicks with_picks) {
  const auto set = findNamedSet(store, name);
  if (!set) return refuseUnknown(desk, name);
  if (with_picks == WithPicks::yes && !set->with_picks)
    return refuse(desk, fmt::format("方案“{}”里没有选号。", set->name));
  const ConditionSet before = loadConditionSet(store);
  const ConditionSet after = putNamedSet(before, *set, with_picks);
  saveConditionSet(store, before, after, {.name = fmt::format("载入方案“{}”", set->name)});
  desk.tell(loadedText(set->name, before, after));
  return Outcome::done;
}

std::optional<NamedSet> readNamedSet(Desk& desk, std::string name, std::string_view text,
                                     const ConditionSet& base) {
  const auto read = readSetText(text, base);
  if (!read) {
    refuse(desk, "这不是条件方案文件，或者是更新版本的程序写的。");
    return std::nullopt;
  }
  const auto broken = std::ranges::find(read->skipped, true, &SkippedLine::broken);
  if (broken != read->skipped.end()) {
    refuse(desk, fmt::format("方案文件第 {} 行的值不对：{}", broken->number, quoteTyped(broken->text)));
    return std::nullopt;
  }
  if (!read->complete) {
    refuse(desk, "方案文件不完整：最后没有“完”这一行。");
    return std::nullopt;
  }
  if (!read->skipped.empty())
    desk.tell(fmt::format("有 {} 行不认识，跳过了，第一处在第 {} 行：{}", read->skipped.size(),
                          read->skipped.front().number, quoteTyped(read->skipped.front().text)),
              Tone::warning);
  return NamedSet{std::move(name), read->with_picks, std::string(text)};
}

std::optional<NamedSet> readNamedSetFile(Desk& desk, const std::filesystem::path& path,
                                         const std::optional<std::string>& name, const ConditionSet& base) {
  TextFile file(path);
  CourseLeg job(desk.course(), static_cast<std::int64_t>(file.size()), Course::Stop::impossible);
  const auto text = decodeBytes(file.bytes(job), job);
  if (!text) {
    desk.tell("这不是文本文件。", Tone::warning);
    return std::nullopt;
  }
  return readNamedSet(desk, name.value_or(path.stem().string()), *text, base);
}

}  // namespace lotmere
