#include "draw_model.hpp"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <vector>

namespace lotmere::test {
namespace {

using Six = std::vector<int>;
using Texts = std::vector<std::string>;

const Texts kSix = {"1,1,1,1,1,1", "2,1,1,1,1", "2,2,1,1", "2,2,2", "3,1,1,1",
                    "3,2,1",       "3,3",       "4,1,1",   "4,2",   "5,1"};
const Texts kFour = {"2,2,1,1", "2,2,2", "3,1,1,1", "3,2,1", "3,3", "4,1,1", "4,2", "5,1", "6"};
const Texts kThree = {"2,2,2", "3,2,1", "3,3", "4,1,1", "4,2", "5,1", "6"};

struct ModelFamily {
  const char* draw_column;
  const char* table;
  const char* prefix;
  int first;
  int groups;
  const Texts& shapes;
};
const ModelFamily kModelFamilies[] = {
    {"尾数形式", "号码特性", "尾", 0, 10, kSix},
    {"间距七", "号码特性", "七", 0, 10, kSix},
    {"间距八", "号码特性", "八", 0, 10, kSix},
    {"七分组", "号码特性", "七分组", 0, 10, kSix},
    {"大小尾七分组", "号码特性", "尾七分组", 0, 10, kSix},
    {"间距九", "号码特性", "九", 0, 10, kSix},
    {"间距十一", "号码特性", "十一", 0, 11, kSix},
    {"间距十二", "号码特性2", "间距十二", 0, 12, kSix},
    {"间距十二3分组", "号码特性", "十二", 0, 12, kThree},
    {"间距四", "号码特性", "四", 0, 4, kFour},
    {"间距3", "号码特性2", "间距三", 0, 3, kThree},
    {"间距6", "号码特性2", "间距六", 0, 6, kSix},
    {"间距5", "号码特性2", "间距五", 0, 5, kSix},
    {"间距10", "号码特性2", "间距十", 0, 10, kSix},
    {"三波排异", "号码特性2", "三波排异", 0, 17, kSix},
    {"区间排异", "号码特性2", "区间排异", 0, 17, kSix},
    {"和数33", "号码特性", "和数三三", 0, 17, kSix},
    {"和数34", "号码特性", "和数三四", 0, 17, kSix},
    {"和数35", "号码特性", "和数三五", 0, 17, kSix},
    {"奇偶连", "号码特性", "奇偶连", 0, 17, kSix},
    {"偶奇连", "号码特性", "偶奇连", 0, 17, kSix},
    {"等差16组", "号码特性", "等差16组", 0, 17, kSix},
    {"等差17组", "号码特性", "等差17组", 0, 17, kSix},
    {"间距11链", "号码特性", "间距11链", 0, 17, kSix},
    {"生肖链", "号码特性2", "生肖链", 0, 17, kSix},
    {"四数八分自然段", "号码特性2", "四数八分自然段", 0, 8, kSix},
    {"八数四分自然段", "号码特性2", "八数四分自然段", 0, 4, kFour},
    {"四区间", "号码特性", "区间", 1, 4, kFour},
    {"三波组", "号码特性2", "三波组", 0, 3, kThree},
    {"大小奇偶组", "号码特性2", "大小奇偶组", 0, 4, kFour},
    {"双尾5分组", "号码特性2", "双尾5分组", 0, 5, kSix},
    {"大小奇偶尾", "号码特性2", "大小奇偶尾", 0, 4, kFour},
};

std::vector<Six> select_Reds(Store& store, const std::string& rest) {
  SQLite::Statement rows(store.db(), "SELECT 红球1,红球2,红球3,红球4,红球5,红球6 FROM 历史记录 " + rest);
  std::vector<Six> draws;
  while (rows.executeStep()) {
    Six reds;
    for (int i = 0; i < kRedsPerTicket; ++i) reds.push_back(rows.getColumn(i).getInt());
    draws.push_back(reds);
  }
  return draws;
}

bool holds(const Six& reds, int n) { return std::find(reds.begin(), reds.end(), n) != reds.end(); }

int members(Store& store, const std::string& table, const std::string& column, const Six& reds) {
  std::string list = "0";
  for (const int n : reds) list += "," + std::to_string(n);
  const auto select = "SELECT sum(\"" + column + "\") FROM " + table + " WHERE 号码 IN (" + list + ")";
  return store.db().execAndGet(select).getInt();
}

int heat(Store& store, int period, int window, const Six& reds) {
  SQLite::Statement count(
      store.db(),
      "SELECT count(*) FROM 历史记录 WHERE 期号<?1 AND 期号>=(SELECT min(期号) FROM (SELECT 期号 "
      "FROM 历史记录 WHERE 期号<?1 ORDER BY 期号 DESC LIMIT ?2)) "
      "AND ?3 IN (红球1,红球2,红球3,红球4,红球5,红球6)");
  int sum = 0;
  for (const int n : reds) {
    count.bind(1, period);
    count.bind(2, window);
    count.bind(3, n);
    count.executeStep();
    sum += count.getColumn(0).getInt();
    count.reset();
  }
  return sum;
}

std::string run_Form(const Six& reds) {
  std::vector<int> runs;
  for (int n = 1; n <= kRedCount; ++n) {
    if (!holds(reds, n)) continue;
    if (n > 1 && holds(reds, n - 1))
      ++runs.back();
    else
      runs.push_back(1);
  }
  std::sort(runs.rbegin(), runs.rend());
  std::string form;
  for (const int run : runs)
    if (run > 1) form += (form.empty() ? "" : "+") + std::to_string(run);
  return form.empty() ? "0" : form;
}

std::string group_Form(Store& store, const ModelFamily& family, const Six& reds) {
  std::string ids;
  int largest = 0;
  std::size_t hit = 0;
  for (int g = 0; g < family.groups; ++g) {
    const int count = members(store, family.table, family.prefix + std::to_string(family.first + g), reds);
    const int id = std::string(family.draw_column) == "尾数形式" ? g : g + 1;
    for (int i = 0; i < count; ++i) ids += (ids.empty() ? "" : ",") + std::to_string(id);
    largest = std::max(largest, count);
    if (count > 0) ++hit;
  }
  std::string shape = family.shapes.front();
  for (const std::string& text : family.shapes)
    if (text[0] - '0' == largest && (text.size() + 1) / 2 == hit) shape = text;
  if (hit == 0) shape = "0";
  return "[" + ids + "]（" + shape + "）";
}

int root(int n) { return n == 0 ? 0 : (n - 1) % 9 + 1; }

}  // namespace

ModelRow model_Row(Store& store, PeriodNo period, bool has_previous) {
  const std::string p = std::to_string(period);
  const Six reds = select_Reds(store, "WHERE 期号=" + p).front();
  const auto earlier = select_Reds(store, "WHERE 期号<" + p + " ORDER BY 期号 DESC LIMIT 3");
  const Six previous = has_previous ? earlier.front() : Six(kRedsPerTicket, 0);

  ModelRow row;
  std::map<std::string, int> sum;
  for (const char* name : {"奇数和值", "偶数和值", "奇数个数", "偶数个数", "大数和值", "小数和值"})
    sum[name] = 0;
  for (const char* name : {"重叠号", "尾数重叠", "合数重叠", "斜位码", "前3期出现个数", "最大间距"})
    sum[name] = 0;
  std::set<int> differences;
  for (const int n : reds) {
    sum["和值"] += n;
    sum[n % 2 == 1 ? "奇数和值" : "偶数和值"] += n;
    sum[n % 2 == 1 ? "奇数个数" : "偶数个数"] += 1;
    sum[n >= 17 ? "大数和值" : "小数和值"] += n;
    sum["尾数和值"] += n % 10;
    sum["合数和值"] += root(n);
    if (holds(previous, n)) ++sum["重叠号"];
    if (holds(previous, n - 1) || holds(previous, n + 1)) ++sum["斜位码"];
    if (std::any_of(previous.begin(), previous.end(), [n](int m) { return m % 10 == n % 10; }))
      ++sum["尾数重叠"];
    if (std::any_of(previous.begin(), previous.end(), [n](int m) { return root(m) == root(n); }))
      ++sum["合数重叠"];
    if (earlier.size() == 3 &&
        std::any_of(earlier.begin(), earlier.end(), [n](const Six& draw) { return holds(draw, n); }))
      ++sum["前3期出现个数"];
    for (const int m : reds)
      if (m > n) differences.insert(m - n);
  }
  for (std::size_t i = 1; i < reds.size(); ++i)
    sum["最大间距"] = std::max(sum["最大间距"], reds[i] - reds[i - 1]);
  sum["跨度"] = reds.back() - reds.front();
  sum["AC值"] = static_cast<int>(differences.size()) - 5;
  sum["大数个数"] = members(store, "号码特性", "大数", reds);
  sum["小数个数"] = kRedsPerTicket - sum["大数个数"];
  sum["低尾码个数"] = members(store, "号码特性", "低尾码", reds);
  sum["高尾码个数"] = kRedsPerTicket - sum["低尾码个数"];
  for (int i = 1; i <= 10; ++i) {
    const std::string number = std::to_string(i);
    if (i <= 4) sum["区间" + number] = members(store, "号码特性", "区间" + number, reds);
    sum["自定义组" + number] = members(store, "号码特性", "自定义组" + number, reds);
  }
  sum["温度5"] = heat(store, period, 5, reds);
  sum["温度10"] = heat(store, period, 10, reds);
  for (const auto& [name, value] : sum) row[name] = std::to_string(value);
  for (const ModelFamily& family : kModelFamilies) row[family.draw_column] = group_Form(store, family, reds);
  row["连号"] = run_Form(reds);
  row["已完成"] = "Y";
  return row;
}

}  // namespace lotmere::test
