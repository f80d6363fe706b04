// Draws whose numbers were damaged, as a flipped bit or another program may do it.
#include <fmt/format.h>

#include <array>

#include "cli_home.hpp"
#include "history/history_rows.hpp"

namespace lotmere::test {
namespace {

constexpr int kDraws = 30;
constexpr std::array kDamaged = {"红球1", "红球4", "蓝球"};
// What stands in each of these, as the engine writes a value.
using Damage = std::array<const char*, kDamaged.size()>;

// A home with draws, tickets and every condition that looks back switched on; some fields of draws hold `damage`.
class DamagedHome : public CliHome {
 public:
  explicit DamagedHome(const Damage& damage) {
    std::string list = "=336=\n";
    for (const auto& [period, numbers] : invent_Draws(kDraws, 11))
      list += fmt::format("{} 2008/01/02 {:02} {:02}\n", newest_ = period, fmt::join(numbers.reds, " "),
                          numbers.blue);
    do_Step({"draws", "fetch", "--all", put_File("list.txt", list)});
    do_Step({"numbers", "pick", "--red-tuo", "1-9", "--blue-tuo", "1,7"});
    for (const char* name : {"重叠号", "尾数重叠", "合数重叠", "斜位码", "前3期出现个数", "温度5", "温度10",
                             "前2期和值相同组", "尾数形式", "智能优化"})
      static_cast<void>(run({"conditions", "use", name, "on"}));
    const std::string next = std::to_string(newest_ + 1);
    do_Step({"tickets", "init", next});
    do_Step({"tickets", "import", put_Path("own.txt", "01 02 03 04 05 06 07\n"), "--period",
             std::to_string(newest_), "--existing", "keep"});
    damage_Fields(damage);
  }

  // What every command that reads draws says, and what stands in the store then.
  [[nodiscard]] std::string all_Answers() const {
    const std::string newest = std::to_string(newest_), next = std::to_string(newest_ + 1);
    const std::vector<Arguments> calls = {{"draws", "list"},
                                          {"draws", "stats", "2003001", newest},
                                          {"draws", "distribution", "--all"},
                                          {"omission", "red"},
                                          {"omission", "blue"},
                                          {"counts", "red", "2003001", newest},
                                          {"counts", "blue", "2003001", newest},
                                          {"numbers", "hints", next},
                                          {"conditions", "strength"},
                                          {"conditions", "match", "2003001", newest, "2"},
                                          {"conditions", "strength"},
                                          {"tickets", "check", newest},
                                          {"tickets", "run", next},
                                          {"tickets", "list"}};
    std::string answers;
    for (const Arguments& call : calls) {
      const Reply reply = run(call);
      EXPECT_EQ(reply.status, 0) << call[0] << ' ' << call[1] << ": " << reply.err;
      answers += fmt::format("{}\n{}{}", call[0] + ' ' + call[1], reply.out, reply.err);
    }
    // But for the damaged fields themselves, every column agrees as well.
    damage_Fields({"0", "0", "0"});
    SQLite::Database db(home().main_Db().string());
    SQLite::Statement rows(db, R"(SELECT * FROM "历史记录")");
    while (rows.executeStep())
      for (int i = 0; i < rows.getColumnCount(); ++i) answers += rows.getColumn(i).getString() + '|';
    return answers;
  }

 private:
  void damage_Fields(const Damage& damage) const {
    SQLite::Database db(home().main_Db().string(), SQLite::OPEN_READWRITE);
    for (std::size_t i = 0; i < damage.size(); ++i)
      db.exec(fmt::format(R"(UPDATE "历史记录" SET "{}"={} WHERE "期号">{} OR "期号"%5=0)", kDamaged[i],
                          damage[i], newest_ - 4));
  }
  // The path of a new file in this folder.
  [[nodiscard]] std::string put_Path(const std::string& name, const std::string& text) const {
    return put_File(name, text).substr(std::string_view("file://").size());
  }

  PeriodNo newest_ = 0;
};

TEST(DamagedDraws, ANumberOutsideTheGameIsAMissingOneEverywhere) {
  const std::string missing = DamagedHome({"0", "0", "0"}).all_Answers();
  EXPECT_NE(missing, DamagedHome({"11", "0", "0"}).all_Answers()) << "the fields matter";
  // A number that would be 5 if its upper half were cut off is among them, and half a text.
  const Damage damages[] = {{"-1", "5000", "'abc'"}, {"4294967301", "'7x'", "-1"}, {"NULL", "7.5", "5000"}};
  for (const Damage& damage : damages) EXPECT_EQ(DamagedHome(damage).all_Answers(), missing) << damage[0];
}

}  // namespace
}  // namespace lotmere::test
