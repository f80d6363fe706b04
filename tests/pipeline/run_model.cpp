#include "pipeline/run_model.hpp"

#include <algorithm>
#include <functional>
#include <map>
#include <set>

#include "core/text.hpp"

namespace lotmere::test {
namespace {

using Figure = std::function<int(const Reds&)>;
using Column = std::array<int, 34>;
enum class Warn { no, with_tickets, always };

const std::string kGap = "\r\n\r\n";
const std::vector<std::string> kSix = {"1,1,1,1,1,1", "2,1,1,1,1", "2,2,1,1", "2,2,2", "3,1,1,1",
                                       "3,2,1",       "3,3",       "4,1,1",   "4,2",   "5,1"};
const std::vector<std::string> kFour = {"2,2,1,1", "2,2,2", "3,1,1,1", "3,2,1", "3,3",
                                        "4,1,1",   "4,2",   "5,1",     "6"};
const std::vector<std::string> kThree = {"2,2,2", "3,2,1", "3,3", "4,1,1", "4,2", "5,1", "6"};

Figure sum_Of(std::function<int(int)> value) {
  return [value](const Reds& reds) {
    int sum = 0;
    for (const int n : reds) sum += value(n);
    return sum;
  };
}

int digit_Root(int n) { return (n - 1) % 9 + 1; }
int big(int n) { return n >= 17 ? n : 0; }
int small(int n) { return n <= 16 ? n : 0; }
int odd(int n) { return n % 2 ? n : 0; }
int even(int n) { return n % 2 ? 0 : n; }
int tail(int n) { return n % 10; }
int same(int n) { return n; }

int largest_Gap(const Reds& reds) {
  const std::set<int> numbers(reds.begin(), reds.end());
  int gap = 0;
  for (auto at = std::next(numbers.begin()); at != numbers.end(); ++at)
    gap = std::max(gap, *at - *std::prev(at));
  return gap;
}

int span_Of(const Reds& reds) {
  return *std::max_element(reds.begin(), reds.end()) - *std::min_element(reds.begin(), reds.end());
}

int ac_Of(const Reds& reds) {
  std::set<int> differences;
  for (int i = 0; i < 6; ++i)
    for (int j = i + 1; j < 6; ++j) differences.insert(std::abs(reds[i] - reds[j]));
  return static_cast<int>(differences.size()) - 5;
}

int run_Shape(const Reds& reds) {
  const std::set<int> numbers(reds.begin(), reds.end());
  int largest = 0, total = 0, length = 0;
  for (int n = 1; n <= 34; ++n) {
    if (numbers.count(n)) {
      ++length;
      continue;
    }
    largest = std::max(largest, length > 1 ? length : 0);
    total += length > 1 ? length : 0;
    length = 0;
  }
  const std::map<std::pair<int, int>, int> numbers_of = {{{0, 0}, 0}, {{2, 2}, 1}, {{2, 4}, 2}, {{2, 6}, 3},
                                                         {{3, 3}, 4}, {{3, 5}, 5}, {{3, 6}, 6}, {{4, 4}, 7},
                                                         {{4, 6}, 8}, {{5, 5}, 9}, {{6, 6}, 10}};
  return numbers_of.at({largest, total});
}

class Model {
 public:
  Model(Store& store, const std::vector<PastDraw>& before, PeriodNo period, std::string stop_in)
      : store_(store), before_(before), period_(period), stop_in_(std::move(stop_in)) {
    Query cells = store.query(R"(SELECT "ID","Value" FROM "过滤条件")");
    while (cells.next()) cell_[cells.number(0)] = cells.number(1);
    Query usages = store.query(R"(SELECT "条件","使用情况" FROM "过滤条件使用情况")");
    while (usages.next()) usage_[usages.number(0)] = usages.number(1);
    for (const char* table : {"号码特性", "号码特性2", "号码特性3"}) read_Table(table);
  }

  Outcome run() {
    std::vector<Row> others;
    for (const Row& row : read_Rows(store_)) (row.period == period_ ? rows_ : others).push_back(row);
    for (Row& row : rows_) row.mark = row.shrink = row.pick = 0;
    line("正读取数据[" + to_QuanJiao(period_) + "期]．．．");
    line("过滤缩水之前共：" + count() + "注．");
    sums_And_Counts();
    relative_And_Positions();
    shapes();
    combinations();
    tail_Steps();
    line((stopped_ ? "用户中止,当前记录余：" : "全部过滤缩水完成,余：") + count() + " 注");
    rows_.insert(rows_.end(), others.begin(), others.end());
    std::sort(rows_.begin(), rows_.end(), [](const Row& a, const Row& b) { return a.id < b.id; });
    return {rows_, text_, tips_};
  }

 private:
  void read_Table(const std::string& table) {
    Query rows = store_.query("SELECT * FROM \"" + table + "\"");
    while (rows.next()) {
      const int number = rows.statement().getColumn("号码").getInt();
      for (int c = 0; c < rows.statement().getColumnCount(); ++c)
        column_[rows.statement().getColumnName(c)][static_cast<std::size_t>(number)] = rows.number(c);
    }
  }

  std::string count() const { return to_QuanJiao(static_cast<std::int64_t>(rows_.size())); }
  void line(const std::string& text) { text_ += kGap + text; }

  void walk(const std::string& start, const std::string& result,
            const std::function<bool(const Row&)>& keep) {
    if (rows_.empty()) return;
    std::vector<Row> kept;
    for (Row& row : rows_) {
      if (!keep(row)) continue;
      row.mark = 1;
      row.seq = static_cast<int>(kept.size()) + 1;
      kept.push_back(row);
    }
    rows_ = kept;
    stopped_ = start == stop_in_;
    line(stopped_ ? start : result + count() + " 注");
  }

  void figure(int usage, const std::string& log, int first, int last, const Figure& value,
              Warn warn = Warn::no) {
    if (stopped_ || usage_[usage] != 1) return;
    const std::string name = log.substr(1, log.find(']') - 1);
    if (warn == Warn::always || (warn == Warn::with_tickets && !rows_.empty()))
      tips_.push_back(model_Warning(name, period_));
    walk(log + "过滤正在进行中．．．", log + "过滤后余：", [&](const Row& row) {
      const int m = value(row.reds);
      return m >= 0 && m <= last - first && cell_[first + m] >= 1;
    });
  }

  Figure members(const std::string& column, int wanted = 1) {
    return sum_Of([flags = column_.at(column), wanted](int n) { return flags[n] == wanted ? 1 : 0; });
  }

  void sums_And_Counts() {
    figure(1, "[ 总和值 ]", 1000, 1170, sum_Of(same));
    figure(2, "[奇数和值]", 2000, 2170, sum_Of(odd));
    figure(3, "[偶数和值]", 3000, 3170, sum_Of(even));
    figure(62, "[ 尾数和值 ]", 4400, 4450, sum_Of(tail));
    figure(64, "[ 大数和值 ]", 4600, 4765, sum_Of(big));
    figure(63, "[ 合数和值 ]", 4500, 4550, sum_Of(digit_Root));
    figure(65, "[ 小数和值 ]", 4800, 4965, sum_Of(small));
    figure(10, "[奇数个数]", 3640, 3649, sum_Of([](int n) { return n % 2; }));
    figure(11, "[偶数个数]", 3650, 3659, sum_Of([](int n) { return 1 - n % 2; }));
    figure(12, "[大数个数]", 3660, 3669, members("大数"));
    figure(13, "[小数个数]", 3670, 3679, members("大数", 0));
    figure(14, "[高尾码个数]", 3680, 3689, members("高尾码"));
    figure(15, "[低尾码个数]", 3690, 3699, members("高尾码", 0));
    for (int r = 1; r <= 14; ++r) {
      const std::string name = r <= 4 ? "区间" + std::to_string(r) : "自定义组" + std::to_string(r - 4);
      const int first = r <= 4 ? 3690 + 10 * r : 3750 + 10 * r;
      figure(15 + r, "[" + name + "]", first, first + 9, members(name));
    }
    figure(4, "[ 跨 度 ]", 3300, 3340, span_Of);
    figure(5, "[最大间距]", 3400, 3440, largest_Gap);
    figure(6, "[连号]", 3450, 3460, run_Shape);
    figure(9, "[AC值]", 3600, 3630, ac_Of);
  }

  // The reds of the newest `draws` draws before the period.
  std::multiset<int> earlier(std::size_t draws, int (*of)(int) = same) const {
    std::multiset<int> numbers;
    for (std::size_t i = 0; i < std::min(draws, before_.size()); ++i)
      for (const int red : before_[i].numbers.reds) numbers.insert(of(red));
    return numbers;
  }
  static Figure among(const std::multiset<int>& numbers, int (*of)(int) = same) {
    return sum_Of([numbers, of](int n) { return numbers.count(of(n)) > 0 ? 1 : 0; });
  }

  void relative_And_Positions() {
    figure(7, "[重叠号]", 3470, 3480, among(earlier(1)), Warn::with_tickets);
    const auto last = earlier(1);
    figure(8, "[斜位码]", 3490, 3500,
           sum_Of([last](int n) { return last.count(n - 1) || last.count(n + 1) ? 1 : 0; }),
           Warn::with_tickets);
    if (!stopped_) positions();
    if (!stopped_) history_Match();
    for (const int w : {5, 10}) {
      const auto heat = earlier(static_cast<std::size_t>(w));
      figure(w == 5 ? 301 : 302, "[温度" + std::to_string(w) + "]", w == 5 ? 6700 : 6800,
             w == 5 ? 6720 : 6820, sum_Of([heat](int n) { return static_cast<int>(heat.count(n)); }),
             Warn::always);
    }
  }

  void positions() {
    int used = 0;
    for (int p = 1; p <= 7; ++p) used += usage_[29 + p] == 1;
    const int tolerance = cell_[3901];
    const std::string name = "[号码定位,容错值=" + std::to_string(tolerance) + "]";
    if (used == 0) return;
    if (tolerance >= used) return line(name + " <容错值太大无法过滤掉号码.>");
    walk("[号码定位]过滤正在进行中．．．", name + "过滤后余：", [&](const Row& row) {
      int wrong = 0;
      for (int p = 1; p <= 7; ++p) {
        const int number = p == 7 ? row.blue : row.reds[static_cast<std::size_t>(p - 1)];
        wrong += usage_[29 + p] == 1 && column_["第" + std::to_string(p)][number] == 0;
      }
      return wrong <= tolerance;
    });
  }

  void history_Match() {
    Query set = store_.query(R"(SELECT "使用状态","最小值","最大值","匹配值" FROM "历史数据过滤")");
    if (!set.next() || set.number(0) != 1) return;
    const int first = set.number(1), match = set.number(3);
    const int last =
        set.number(2) >= period_ ? (before_.empty() ? 2003001 : before_[0].period) : set.number(2);
    std::vector<Reds> draws;
    for (const PastDraw& draw : before_)
      if (draw.period >= first && draw.period <= last) draws.push_back(draw.numbers.reds);
    const std::string result = "[历史数据过滤]过滤后余：";
    if (draws.empty()) {
      if (!rows_.empty()) line(result + count() + " 注");
      return;
    }
    walk("[历史数据过滤]过滤正进行中．．．", result, [&](const Row& row) {
      for (const Reds& draw : draws) {
        long shared = 0;
        for (const int n : row.reds) shared += std::count(draw.begin(), draw.end(), n);
        if (shared >= match) return false;
      }
      return true;
    });
  }

  // The group counts of six reds over columns `prefix`first to `prefix`(first + count - 1).
  std::vector<int> group_Counts(const std::string& prefix, int first, int count, const Reds& reds) {
    std::vector<int> counts;
    for (int g = first; g < first + count; ++g) {
      const Column& flags = column_.at(prefix + std::to_string(g));
      counts.push_back(0);
      for (const int n : reds) counts.back() += flags[n];
    }
    return counts;
  }

  void shape(int usage, const std::string& name, int first, int last, const std::string& prefix, int groups,
             const std::vector<std::string>& texts, int most, int fewest) {
    const int start = prefix == "区间" ? 1 : 0;
    figure(usage, "[" + name + "]", first, last, [&](const Reds& reds) {
      const std::vector<int> counts = group_Counts(prefix, start, groups, reds);
      const int largest = *std::max_element(counts.begin(), counts.end());
      const auto hit = counts.size() - static_cast<std::size_t>(std::count(counts.begin(), counts.end(), 0));
      if (largest < 1 || largest > most || hit < static_cast<std::size_t>(fewest) || hit > 6) return -1;
      for (std::size_t k = 0; k < texts.size(); ++k)
        if (texts[k][0] - '0' == largest && (texts[k].size() + 1) / 2 == hit) return static_cast<int>(k);
      return 0;
    });
  }

  void shapes() {
    shape(37, "尾数形式", 4000, 4019, "尾", 10, kSix, 4, 2);
    shape(38, "间距九", 4020, 4039, "九", 10, kSix, 4, 2);
    shape(39, "间距七", 4040, 4059, "七", 10, kSix, 5, 1);
    shape(40, "间距十一", 4060, 4079, "十一", 11, kSix, 4, 2);
    shape(41, "间距十二", 4050, 4069, "间距十二", 12, kSix, 4, 2);
    shape(43, "间距八", 4090, 4109, "八", 10, kSix, 5, 1);
    shape(45, "间距四", 4130, 4149, "四", 4, kFour, 6, 1);
    shape(42, "区间单双七分组", 4070, 4089, "七分组", 10, kSix, 5, 1);
    shape(44, "大小尾七分组", 4110, 4129, "尾七分组", 10, kSix, 5, 1);
    shape(46, "间距3", 4150, 4159, "间距三", 3, kThree, 6, 1);
    shape(47, "间距6", 4160, 4169, "间距六", 6, kSix, 5, 1);
    const std::pair<const char*, const char*> pairs[] = {
        {"和数33", "和数三三"},   {"和数34", "和数三四"},   {"和数35", "和数三五"},
        {"奇偶连", "奇偶连"},     {"偶奇连", "偶奇连"},     {"等差16组", "等差16组"},
        {"等差17组", "等差17组"}, {"间距11链", "间距11链"}, {"生肖链", "生肖链"}};
    for (int i = 0; i < 9; ++i)
      shape(48 + i, pairs[i].first, 4170 + 10 * i, 4179 + 10 * i, pairs[i].second, 17, kSix, 4, 2);
    shape(57, "四数八分自然段", 4260, 4269, "四数八分自然段", 8, kSix, 5, 1);
    shape(58, "八数四分自然段", 4270, 4279, "八数四分自然段", 4, kFour, 6, 1);
    shape(59, "11数3分自然段", 4280, 4289, "十一数三分自然段", 3, kThree, 6, 1);
    shape(60, "三波排异", 4300, 4309, "三波排异", 17, kSix, 4, 2);
    shape(61, "区间排异", 4310, 4319, "区间排异", 17, kSix, 4, 2);
    shape(66, "间距5", 5020, 5039, "间距五", 5, kSix, 5, 1);
    shape(67, "间距10", 5040, 5059, "间距十", 10, kSix, 4, 2);
    shape(68, "四区间", 5060, 5079, "区间", 4, kFour, 6, 1);
    shape(69, "三波组", 5080, 5099, "三波组", 3, kThree, 6, 1);
    shape(70, "大小奇偶组", 5100, 5119, "大小奇偶组", 4, kFour, 6, 1);
    shape(71, "双尾5分组", 5120, 5139, "双尾5分组", 5, kSix, 5, 1);
    shape(72, "大小奇偶尾", 5140, 5159, "大小奇偶尾", 4, kFour, 6, 1);
    shape(73, "间距12三分组", 5000, 5019, "十二", 3, kThree, 6, 1);
  }

  std::string group_Text(int turn, const std::string& prefix, int groups, const Reds& reds) {
    const auto counts = group_Counts(prefix, prefix == "区间" ? 1 : 0, groups, reds);
    std::string text;
    for (int g = 0; g < groups; ++g)
      for (int i = 0; i < counts[static_cast<std::size_t>(g)]; ++i)
        text += (text.empty() ? "" : ",") + std::to_string(turn == 0 ? g : g + 1);
    return "[" + text + "]";
  }

  void combinations() {
    const struct {
      const char *prefix, *name;
      int groups;
    } turns[32] = {{"尾", "尾数形式", 10},
                   {"七", "间距七", 10},
                   {"九", "间距九", 10},
                   {"十一", "间距十一", 11},
                   {"十二", "间距十二3分组", 12},
                   {"八", "间距八", 10},
                   {"七分组", "七分组", 10},
                   {"尾七分组", "大小尾七分组", 10},
                   {"四", "间距四", 4},
                   {"间距三", "间距3", 3},
                   {"间距六", "间距6", 6},
                   {"和数三三", "和数33", 17},
                   {"和数三四", "和数34", 17},
                   {"和数三五", "和数35", 17},
                   {"奇偶连", "奇偶连", 17},
                   {"偶奇连", "偶奇连", 17},
                   {"等差16组", "等差16组", 17},
                   {"等差17组", "等差17组", 17},
                   {"间距11链", "间距11链", 17},
                   {"生肖链", "生肖链", 17},
                   {"四数八分自然段", "四数八分自然段", 8},
                   {"八数四分自然段", "八数四分自然段", 4},
                   {"三波排异", "三波排异", 17},
                   {"区间排异", "区间排异", 17},
                   {"间距五", "间距5", 5},
                   {"间距十", "间距10", 10},
                   {"区间", "四区间", 4},
                   {"三波组", "三波组", 3},
                   {"大小奇偶组", "大小奇偶组", 4},
                   {"双尾5分组", "双尾5分组", 5},
                   {"大小奇偶尾", "大小奇偶尾", 4},
                   {"间距十二", "间距十二", 12}};
    for (int r = 0; r < 32 && !stopped_; ++r) {
      const auto& [prefix, name, groups] = turns[r];
      if (usage_[100 + r] <= 0) {
        line("[" + std::string(name) + "（具体）] <未使用这个条件>");
        continue;
      }
      if (before_.empty()) continue;
      const std::string reference = group_Text(r, prefix, groups, before_[0].numbers.reds);
      for (Row& row : rows_)
        if (row.mark >= -1 && reference == group_Text(r, prefix, groups, row.reds)) --row.mark;
    }
    std::erase_if(rows_, [](const Row& row) { return row.mark < -1; });
    std::vector<Row*> by_seq;
    for (Row& row : rows_) by_seq.push_back(&row);
    std::stable_sort(by_seq.begin(), by_seq.end(), [](Row* a, Row* b) { return a->seq < b->seq; });
    for (std::size_t i = 0; i < by_seq.size(); ++i) {
      by_seq[i]->mark = 1;
      by_seq[i]->seq = static_cast<int>(i) + 1;
    }
    line("[组合（具体）]过滤后余：" + count() + " 注");
  }

  void sum_Families() {
    if (stopped_ || usage_[266] != 1 || rows_.empty()) return;
    tips_.push_back(model_Warning("前2期和值相同组", period_));
    walk("[前2期和值相同组]过滤正在进行中．．．", "[前2期和值相同组]过滤后余：", [&](const Row& row) {
      int hits = 0;
      for (std::size_t k = 0; k < 7; ++k) {
        bool hit = false;
        for (std::size_t d = 0; d < std::min<std::size_t>(2, before_.size()); ++d)
          hit |= before_[d].sums[k] == true_Sums(row.reds)[k];
        hits += hit && cell_[6680 + static_cast<int>(k)] > 0;
      }
      return hits <= 2;
    });
  }

  void tail_Steps() {
    figure(263, "[尾数重叠]", 6650, 6659, among(earlier(1, tail), tail), Warn::with_tickets);
    figure(264, "[合数重叠]", 6660, 6669, among(earlier(1, digit_Root), digit_Root), Warn::with_tickets);
    figure(265, "[前3期出现个数]", 6670, 6679, among(earlier(3)), Warn::with_tickets);
    sum_Families();
    int turn = 0;
    for (const std::string division : {"六", "七", "八", "九", "十", "十一", "十二"}) {
      const int intervals = division == "十一"   ? 11
                            : division == "十二" ? 12
                            : division == "十"   ? 10
                            : division == "九"   ? 9
                            : division == "八"   ? 8
                            : division == "七"   ? 7
                                                 : 6;
      for (int i = 1; i <= intervals; ++i, ++turn) {
        const std::string name = division + "区间" + std::to_string(i);
        figure(401 + turn, "[" + name + "]", 7000 + 10 * turn, 7009 + 10 * turn, members(name));
      }
    }
    if (!stopped_) shrink();
  }

  void shrink() {
    const int type = cell_[3900];
    const std::vector<std::string> captions = {"保三型", "保四型", "保五型", "保六型", "保七型"};
    line("[ 智能优化 ] <未使用这个条件>");
    if (type < 7) {
      for (std::size_t centre = 0; centre < rows_.size(); ++centre) {
        rows_[centre].shrink = type;
        rows_[centre].seq = static_cast<int>(centre) + 1;
        const Row kept = rows_[centre];
        const auto covered = [&](const Row& row) {
          int shared = row.blue == kept.blue;
          for (const int n : row.reds)
            shared += std::find(kept.reds.begin(), kept.reds.end(), n) != kept.reds.end();
          return shared >= type;
        };
        rows_.erase(
            std::remove_if(rows_.begin() + static_cast<std::ptrdiff_t>(centre) + 1, rows_.end(), covered),
            rows_.end());
      }
    }
    line("[" + captions[static_cast<std::size_t>(type - 3)] + "]缩水后余：" + count() + " 注");
  }

  Store& store_;
  const std::vector<PastDraw>& before_;
  PeriodNo period_;
  std::string stop_in_;
  std::map<int, int> cell_, usage_;
  std::map<std::string, Column> column_;
  std::vector<Row> rows_;
  std::string text_;
  std::vector<std::string> tips_;
  bool stopped_ = false;
};

}  // namespace

std::array<int, 7> true_Sums(const Reds& reds) {
  return {sum_Of(tail)(reds), sum_Of(digit_Root)(reds), sum_Of(big)(reds), sum_Of(small)(reds),
          sum_Of(odd)(reds),  sum_Of(even)(reds),       sum_Of(same)(reds)};
}

Outcome model_Run(Store& store, const std::vector<PastDraw>& before, PeriodNo period,
                  const std::string& stop_in) {
  return Model(store, before, period, stop_in).run();
}

std::string model_Warning(const std::string& name, PeriodNo period) {
  return "注意，本次过滤使用了[" + name + "]这个过滤条件,[" + name + "]的设置与历史开奖记录相关！\r\n\r\n" +
         "在不同的期号中由于对应的历史记录不同,有可能得出不同的结果。这是正常情况。\r\n\r\n" +
         "【注意，此次过滤结果仅适用于 " + to_QuanJiao(period) + " 期！！！】";
}

}  // namespace lotmere::test
