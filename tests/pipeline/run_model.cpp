#include "pipeline/run_model.hpp"

#include <algorithm>
#include <functional>
#include <map>
#include <ranges>
#include <set>

#include "base/text.hpp"
#include "catalogue/catalogue.hpp"
#include "game/metrics.hpp"
#include "reduction/cover.hpp"

namespace lotmere::test {
namespace {

using Figure = std::function<int(const Reds&)>;
using Texts = std::vector<std::string>;

const Texts kSix = {"1,1,1,1,1,1", "2,1,1,1,1", "2,2,1,1", "2,2,2", "3,1,1,1",
                    "3,2,1",       "3,3",       "4,1,1",   "4,2",   "5,1"};
const Texts kFour = {"2,2,1,1", "2,2,2", "3,1,1,1", "3,2,1", "3,3", "4,1,1", "4,2", "5,1", "6"};
const Texts kThree = {"2,2,2", "3,2,1", "3,3", "4,1,1", "4,2", "5,1", "6"};

// The families of three and of four groups, and those of the others that have a shape for five reds in one.
const std::set<int> kThreeGroups = {46, 59, 69, 73}, kFourGroups = {45, 58, 68, 70, 72};
// Conditions on earlier draws that warn where tickets are left; the temperatures warn always.
const std::set<int> kRelative = {7, 8, 263, 264, 265};
const std::set<int> kFiveReds = {39, 42, 43, 44, 47, 57, 66, 71};

Figure sumOf(const std::function<int(int)>& value) {
  return [value](const Reds& reds) {
    int sum = 0;
    for (const int n : reds) sum += value(n);
    return sum;
  };
}

int digitRoot(int n) { return (n - 1) % 9 + 1; }
int big(int n) { return n >= 17 ? n : 0; }
int small(int n) { return n <= 16 ? n : 0; }
int odd(int n) { return n % 2 ? n : 0; }
int even(int n) { return n % 2 ? 0 : n; }
int tail(int n) { return n % 10; }
int same(int n) { return n; }

// In the order of their columns.
const Figure kSums[] = {sumOf(tail), sumOf(digitRoot), sumOf(big), sumOf(small),
                        sumOf(odd),  sumOf(even),      sumOf(same)};

class Model {
 public:
  Model(Store& store, std::string stop_in) : store_(store), stop_in_(std::move(stop_in)) {
    Query cells = store.query(R"(SELECT "ID","Value" FROM "过滤条件")");
    while (cells.next()) cell_[cells.number(0)] = cells.number(1);
    Query usages = store.query(R"(SELECT "条件","使用情况" FROM "过滤条件使用情况")");
    while (usages.next()) usage_[usages.number(0)] = usages.number(1);
    for (const Condition& condition : allConditions()) condition_[condition.usage] = condition;
    for (const std::string table : {"号码特性", "号码特性2", "号码特性3"}) {
      Query rows = store.query("SELECT * FROM \"" + table + "\"");
      while (rows.next())
        for (int c = 0; c < rows.statement().getColumnCount(); ++c)
          column_[rows.statement().getColumnName(c)][rows.statement().getColumn("号码").getInt()] =
              rows.number(c);
    }
    Query draws = store.query(
        R"(SELECT "红球1","红球2","红球3","红球4","红球5","红球6","期号","尾数和值","合数和值","大数和值",
           "小数和值","奇数和值","偶数和值","和值" FROM "历史记录" WHERE "期号"<? ORDER BY "期号" DESC)");
    draws.bind(kPeriod);
    while (draws.next()) {
      before_.push_back({});
      for (int c = 0; c < 14; ++c) before_.back().push_back(draws.number(c));
    }
  }

  Outcome run() {
    std::vector<Row> others;
    for (const Row& row : readRows(store_)) (row.period == kPeriod ? rows_ : others).push_back(row);
    for (Row& row : rows_) row.mark = row.shrink = row.pick = 0;
    line("正读取数据[" + toFullWidth(kPeriod) + "期]．．．");
    line("过滤缩水之前共：" + count() + "注．");
    sumsAndCounts();
    relativeAndPositions();
    for (const Family& family : families()) shape(family);
    combinations();
    tailSteps();
    line((stopped_ ? "用户中止,当前记录余：" : "全部过滤缩水完成,余：") + count() + " 注");
    rows_.insert(rows_.end(), others.begin(), others.end());
    std::ranges::sort(rows_, {}, &Row::id);
    return {rows_, text_, tips_};
  }

 private:
  std::string count() const { return toFullWidth(static_cast<std::int64_t>(rows_.size())); }
  void line(const std::string& text) { text_ += "\r\n\r\n" + text; }

  void walk(const std::string& start, const std::string& result,
            const std::function<bool(const Row&)>& keep) {
    if (rows_.empty()) return;
    std::erase_if(rows_, [&](const Row& row) { return !keep(row); });
    number();
    stopped_ = start == stop_in_;
    line(stopped_ ? start : result + count() + " 注");
  }
  void number() {
    int seq = 0;
    for (Row& row : rows_) {
      row.mark = 1;
      row.seq = ++seq;
    }
  }

  void warn(const std::string& name) {
    tips_.push_back("注意，本次过滤使用了[" + name + "]这个过滤条件,[" + name +
                    "]的设置与历史开奖记录相关！\r\n\r\n在不同的期号中由于对应的历史记录不同,"
                    "有可能得出不同的结果。这是正常情况。\r\n\r\n【注意，此次过滤结果仅适用于 " +
                    toFullWidth(kPeriod) + " 期！！！】");
  }

  void figure(int usage, const std::string& log, int first, int last, const Figure& value) {
    if (stopped_ || usage_[usage] != 1) return;
    const bool relative = kRelative.count(usage) && !rows_.empty();
    if (relative || usage == 301 || usage == 302) warn(log.substr(1, log.find(']') - 1));
    walk(log + "过滤正在进行中．．．", log + "过滤后余：", [&](const Row& row) {
      const int m = value(row.reds);
      return m >= 0 && m <= last - first && cell_[first + m] >= 1;
    });
  }

  Figure members(const std::string& column, int wanted = 1) {
    return sumOf([flags = column_.at(column), wanted](int n) { return flags.at(n) == wanted ? 1 : 0; });
  }

  // The counts of the user's own sets: columns with the names of their conditions.
  void series(int first, int last) {
    for (int usage = first; usage <= last; ++usage) {
      const Condition& set = condition_.at(usage);
      figure(usage, "[" + set.name + "]", set.first, set.first + 9, members(set.name));
    }
  }

  void sumsAndCounts() {
    figure(1, "[ 总和值 ]", 1000, 1170, sumOf(same));
    figure(2, "[奇数和值]", 2000, 2170, sumOf(odd));
    figure(3, "[偶数和值]", 3000, 3170, sumOf(even));
    figure(62, "[ 尾数和值 ]", 4400, 4450, sumOf(tail));
    figure(64, "[ 大数和值 ]", 4600, 4765, sumOf(big));
    figure(63, "[ 合数和值 ]", 4500, 4550, sumOf(digitRoot));
    figure(65, "[ 小数和值 ]", 4800, 4965, sumOf(small));
    figure(10, "[奇数个数]", 3640, 3649, sumOf([](int n) { return n % 2; }));
    figure(11, "[偶数个数]", 3650, 3659, sumOf([](int n) { return 1 - n % 2; }));
    figure(12, "[大数个数]", 3660, 3669, members("大数"));
    figure(13, "[小数个数]", 3670, 3679, members("大数", 0));
    figure(14, "[高尾码个数]", 3680, 3689, members("高尾码"));
    figure(15, "[低尾码个数]", 3690, 3699, members("高尾码", 0));
    series(16, 29);
    figure(4, "[ 跨 度 ]", 3300, 3340, spanOf);
    figure(5, "[最大间距]", 3400, 3440, largestGap);
    figure(6, "[连号]", 3450, 3460, runShape);
    figure(9, "[AC值]", 3600, 3630, acValue);
  }

  // How often what `of` makes of a red came in the newest `draws` draws, each at most `most` times.
  Figure repeats(int draws, int (*of)(int) = same, int most = 1) const {
    std::array<int, 35> times{};
    for (std::size_t place = 0; place < std::min(before_.size(), static_cast<std::size_t>(draws)); ++place)
      for (int r = 0; r < 6; ++r) ++times[of(before_[place][r])];
    return sumOf([times, of, most](int n) { return std::min(most, times[of(n)]); });
  }

  void relativeAndPositions() {
    figure(7, "[重叠号]", 3470, 3480, repeats(1));
    const auto near = [last = repeats(1)](int n) { return last({n - 1}) + last({n + 1}) > 0 ? 1 : 0; };
    figure(8, "[斜位码]", 3490, 3500, sumOf(near));
    if (!stopped_) positions();
    if (!stopped_) historyMatch();
    figure(301, "[温度5]", 6700, 6720, repeats(5, same, 5));
    figure(302, "[温度10]", 6800, 6820, repeats(10, same, 10));
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
        const int n = p == 7 ? row.blue : row.reds[p - 1];
        wrong += usage_[29 + p] == 1 && column_["第" + std::to_string(p)][n] == 0;
      }
      return wrong <= tolerance;
    });
  }

  void historyMatch() {
    Query set = store_.query(R"(SELECT "使用状态","最小值","最大值","匹配值" FROM "历史数据过滤")");
    if (!set.next() || set.number(0) != 1) return;
    const auto outside = [&](const auto& draw) { return draw[6] < set.number(1) || draw[6] > set.number(2); };
    const std::string result = "[历史数据过滤]过滤后余：";
    if (rows_.empty() || std::ranges::all_of(before_, outside)) return line(result + count() + " 注");
    walk("[历史数据过滤]过滤正进行中．．．", result, [&](const Row& row) {
      return std::ranges::all_of(before_, [&](const auto& draw) {
        const auto drawn = [&](int n) { return std::count(draw.begin(), draw.begin() + 6, n) > 0; };
        return outside(draw) || std::count_if(row.reds.begin(), row.reds.end(), drawn) < set.number(3);
      });
    });
  }

  // How many of six reds stand in each of the columns of a prefix, or in the first `most` of them.
  std::vector<int> groupCounts(const Family& family, const auto& reds, std::size_t most = 17) {
    const std::string prefix(family.column);
    std::vector<int> counts;
    for (int g = column_.count(prefix + "0") ? 0 : 1; counts.size() < most; ++g) {
      const auto flags = column_.find(prefix + std::to_string(g));
      if (flags == column_.end()) break;
      counts.push_back(0);
      for (int r = 0; r < 6; ++r) counts.back() += flags->second[reds[r]];
    }
    return counts;
  }

  void shape(const Family& family) {
    const bool three = kThreeGroups.count(family.usage), four = kFourGroups.count(family.usage);
    const Texts& texts = three ? kThree : four ? kFour : kSix;
    const int most = three || four ? 6 : kFiveReds.count(family.usage) ? 5 : 4;
    const std::string log = "[" + std::string(family.name) + "]";
    figure(family.usage, log, family.first, family.first + 9, [&](const Reds& reds) {
      const auto counts = groupCounts(family, reds, three ? 3 : 17);
      const int largest = std::ranges::max(counts);
      const auto hit = std::ranges::count_if(counts, [](int c) { return c > 0; });
      if (largest < 1 || largest > most || hit < (most == 4 ? 2 : 1) || hit > 6) return -1;
      const auto fits = [&](const std::string& text) {
        return text[0] - '0' == largest && std::ranges::count(text, ',') + 1 == hit;
      };
      return static_cast<int>(std::ranges::find_if(texts, fits) - texts.begin()) % int(texts.size());
    });
  }

  void combinations() {
    for (int turn = 0; turn < 32 && !stopped_; ++turn) {
      const Family& family = familyOfTurn(turn);
      if (usage_[100 + turn] <= 0) line("[" + std::string(family.draw_column) + "（具体）] <未使用这个条件>");
      if (usage_[100 + turn] <= 0 || before_.empty()) continue;
      const auto reference = groupCounts(family, before_[0]);
      for (Row& row : rows_)
        if (row.mark >= -1 && reference == groupCounts(family, row.reds)) --row.mark;
    }
    std::erase_if(rows_, [](const Row& row) { return row.mark < -1; });
    std::ranges::stable_sort(rows_, {}, &Row::seq);
    number();
    std::ranges::sort(rows_, {}, &Row::id);
    line("[组合（具体）]过滤后余：" + count() + " 注");
  }

  void sumFamilies() {
    if (stopped_ || usage_[266] != 1 || rows_.empty()) return;
    warn("前2期和值相同组");
    walk("[前2期和值相同组]过滤正在进行中．．．", "[前2期和值相同组]过滤后余：", [&](const Row& row) {
      int hits = 0;
      for (int k = 0; k < 7; ++k) {
        const auto agrees = [&](const auto& draw) { return draw[7 + k] == kSums[k](row.reds); };
        const auto end =
            before_.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(before_.size(), 2));
        hits += cell_[6680 + k] > 0 && std::any_of(before_.begin(), end, agrees);
      }
      return hits <= 2;
    });
  }

  void tailSteps() {
    figure(263, "[尾数重叠]", 6650, 6659, repeats(1, tail));
    figure(264, "[合数重叠]", 6660, 6669, repeats(1, digitRoot));
    figure(265, "[前3期出现个数]", 6670, 6679, repeats(3));
    sumFamilies();
    series(401, 463);
    if (!stopped_) shrink();
  }

  void shrink() {
    const int type = cell_[3900];
    line("[ 智能优化 ] <未使用这个条件>");
    std::vector<Row> centres;
    const auto covered = [&](const Row& row) {
      const Balls ticket = packBalls(row.reds, row.blue);
      return std::ranges::any_of(centres, [&](const Row& centre) {
        return countShared(packBalls(centre.reds, centre.blue), ticket) >= type;
      });
    };
    for (Row& row : rows_) {
      if (type == 7 || covered(row)) continue;
      row.shrink = type;
      row.seq = static_cast<int>(centres.size()) + 1;
      centres.push_back(row);
    }
    if (type < 7) rows_ = centres;
    line("[保" + Texts{"三", "四", "五", "六", "七"}[type - 3] + "型]缩水后余：" + count() + " 注");
  }

  Store& store_;
  std::string stop_in_;
  std::map<int, int> cell_, usage_;
  std::map<int, Condition> condition_;
  std::map<std::string, std::array<int, 34>> column_;
  std::vector<std::vector<int>> before_;  // newest first: six reds, the period, the seven sums
  std::vector<Row> rows_;
  std::string text_;
  std::vector<std::string> tips_;
  bool stopped_ = false;
};

}  // namespace

Outcome modelRun(Store& store, const std::string& stop_in) { return Model(store, stop_in).run(); }

}  // namespace lotmere::test
