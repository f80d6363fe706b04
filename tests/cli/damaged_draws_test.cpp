// Draws whose numbers were damaged, as a flipped bit or another program may do it.
#include <fmt/format.h>

#include <array>

#include "cli_home.hpp"
#include "history/history_rows.hpp"

namespace lotmere::test {
namespace {

constexpr std::array kDamaged = {"红球1", "红球4", "蓝球"};
// What stands in each of these, as the engine writes a value.
using Damage = std::array<const char*, kDamaged.size()>;

// What every command that reads draws says, in a home with draws, tickets and every condition that looks back
// switched on, where some fields of draws hold `damage`; and what stands in the draws then.
std::string answersWith(const Damage& damage) {
  const CliHome home;
  std::string list = "=336=\n", newest;
  for (const auto& [period, numbers] : inventDraws(30, 11)) {
    newest = std::to_string(period);
    list += fmt::format("{} 2008/01/02 {:02} {:02}\n", period, fmt::join(numbers.reds, " "), numbers.blue);
  }
  const std::string next = std::to_string(std::stoi(newest) + 1);
  const auto damage_fields = [&](const Damage& values) {
    SQLite::Database db(home.home().mainDb().string(), SQLite::OPEN_READWRITE);
    for (std::size_t i = 0; i < values.size(); ++i)
      db.exec(fmt::format(R"(UPDATE "历史记录" SET "{}"={} WHERE "期号">{}-4 OR "期号"%5=0)", kDamaged[i],
                          values[i], newest));
  };
  home.doStep({"draws", "fetch", "--all", home.putFile("list.txt", list)});
  home.doStep({"numbers", "pick", "--red-tuo", "1-9", "--blue-tuo", "1,7"});
  for (const char* name : {"重叠号", "尾数重叠", "合数重叠", "斜位码", "前3期出现个数", "温度5", "温度10",
                           "前2期和值相同组", "尾数形式", "智能优化"})
    static_cast<void>(home.run({"conditions", "use", name, "on"}));
  home.doStep({"tickets", "init", next});
  home.putFile("own.txt", newest + " 01 02 03 04 05 06 07\n");
  home.doStep(
      {"tickets", "import", (home.path() / "own.txt").string(), "--format", "1", "--existing", "keep"});
  damage_fields(damage);
  std::string answers;
  for (const Arguments& call : {Arguments{"draws", "list"},
                                {"draws", "stats", "2003001", newest},
                                {"draws", "distribution", "--all"},
                                {"omission", "red"},
                                {"omission", "blue"},
                                {"counts", "red", "2003001", newest},
                                {"counts", "blue", "2003001", newest},
                                {"numbers", "hints", next},
                                {"conditions", "match", "2003001", newest, "2"},
                                {"conditions", "strength"},
                                {"tickets", "check", newest},
                                {"tickets", "run", next},
                                {"tickets", "list"}}) {
    const Reply reply = home.run(call);
    EXPECT_EQ(reply.status, 0) << call[0] << ' ' << call[1] << ": " << reply.err;
    answers += fmt::format("{} {}\n{}{}", call[0], call[1], reply.out, reply.err);
  }
  // But for the damaged fields themselves, every column agrees as well.
  damage_fields({"0", "0", "0"});
  SQLite::Database db(home.home().mainDb().string());
  SQLite::Statement rows(db, R"(SELECT * FROM "历史记录")");
  while (rows.executeStep())
    for (int i = 0; i < rows.getColumnCount(); ++i) answers += rows.getColumn(i).getString() + '|';
  return answers;
}

TEST(DamagedDraws, ANumberOutsideTheGameIsAMissingOneEverywhere) {
  const std::string missing = answersWith({"0", "0", "0"});
  EXPECT_NE(missing, answersWith({"11", "0", "0"})) << "the fields matter";
  // A number that would be 5 if its upper half were cut off is among them, and half a text.
  const Damage damages[] = {{"-1", "5000", "'abc'"}, {"4294967301", "'7x'", "-1"}, {"NULL", "7.5", "5000"}};
  for (const Damage& damage : damages) EXPECT_EQ(answersWith(damage), missing) << damage[0];
}

}  // namespace
}  // namespace lotmere::test
