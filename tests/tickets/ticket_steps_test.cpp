// The way back for tickets, and the packing of their rows.
#include "tickets/ticket_steps.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "conditions/condition_store.hpp"
#include "support/store_test.hpp"
#include "tickets/init.hpp"
#include "tickets/packed_tickets.hpp"
#include "tickets/ticket_rows.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {
namespace {

constexpr PeriodNo kPeriod = 2026050;

std::string packRows(const std::vector<TicketFields>& rows) {
  RowPacker packer;
  for (const TicketFields& row : rows) packer.add(row);
  return packer.finish();
}

TEST(PackedTickets, ComeBackAsTheyWere) {
  std::mt19937_64 random(3 + GTEST_FLAG_GET(random_seed));
  for (const std::size_t count : {0, 1, 2, 500}) {
    std::vector<TicketFields> rows(count);
    for (TicketFields& row : rows) {
      const auto wild = [&] { return random() % 4 == 0 ? static_cast<std::int64_t>(random()) : 1; };
      row = {wild(), wild(), wild(), {}, wild(), wild(), wild(), wild(), wild(), wild()};
      for (int& red : row.numbers.reds) red = static_cast<int>(random() % 256);
      row.numbers.blue = static_cast<int>(random() % 256);
    }
    if (count > 0) rows[0].score = std::numeric_limits<std::int64_t>::min();
    const std::string bytes = packRows(rows);
    EXPECT_EQ(unpackRows(bytes), rows);
    for (const std::size_t cut : {std::size_t{0}, bytes.size() / 2, bytes.size() - 1}) {
      const auto part = unpackRows(std::string_view(bytes).substr(0, cut));
      EXPECT_TRUE(!part) << count << " cut at " << cut;
    }
  }
}

TEST(PackedTickets, BrokenBytesAreRefusedOrReadAndAskForNoMemory) {
  std::mt19937 random(4 + GTEST_FLAG_GET(random_seed));
  const std::string bytes =
      packRows(std::vector<TicketFields>(50, {.id = 7, .numbers = {{1, 2, 3, 4, 5, 6}, 7}}));
  for (int turn = 0; turn < 2000; ++turn) {
    std::string broken = bytes;
    broken[random() % broken.size()] = static_cast<char>(random());
    const auto rows = unpackRows(broken);
    EXPECT_TRUE(!rows || rows->size() <= 50 + 127) << "a longer table has no columns";
  }
  EXPECT_EQ(unpackRows("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"), std::nullopt);
}

class TicketSteps : public test::StoreTest {
 protected:
  void init(PeriodNo period, int last) {
    changeSettings(store_, [&](ConditionSet& set) {
      for (int n = 1; n <= last; ++n) set.cells.set(n, 1);
      set.cells.set(kBlueCodeBase + 3, 1);
      set.cells.set(kBlueCodeBase + 9, 1);
    });
    ASSERT_EQ(initTickets(store_, desk_, period, Existing::replace).outcome, Outcome::done);
  }
  // A run without its filters: marks, and every third ticket gone in front of the shrink, every second in it.
  void run(PeriodNo period, const std::string& name) {
    const auto never = [](std::size_t) { return false; };
    TicketSet tickets = loadTickets(store_, period, never).value();
    StoreChange change(store_);
    BeforeRun before(store_, tickets);
    const auto drop = [&](std::size_t nth) {
      std::size_t kept = 0;
      for (std::size_t row = 0; row < tickets.size(); ++row)
        if (row % nth != 0) tickets.moveRow(row, kept++);
      tickets.truncate(kept);
    };
    drop(3);
    before.markBeforeShrink(tickets);
    drop(2);
    for (auto& mark : tickets.shrink) mark = 5;
    before.keep(store_, name, "text of " + name);
    saveTickets(store_, tickets, never);
    change.commit();
  }
  // Every column of every row.
  [[nodiscard]] std::string everything() {
    std::string text;
    SQLite::Statement row(store_.db(), R"(SELECT * FROM "日志表" ORDER BY "ID")");
    while (row.executeStep())
      for (int i = 0; i < row.getColumnCount(); ++i) text += row.getColumn(i).getString() + ' ';
    return text;
  }
  [[nodiscard]] std::string settingsOf(PeriodNo period) {
    const auto settings = loadRunSettings(store_, period);
    return settings ? settings->name + "/" + settings->text : "none";
  }
};

TEST_F(TicketSteps, EachActionIsTakenBackAndMadeAgain) {
  test::writeRows(
      store_, {{5, 9, kPeriod, {6, 5, 40, 4, 4, 1}, 16, 1, 2, 3, 4}, {8, 1, 2026049, {1, 2, 3, 4, 5, 6}, 7}});
  store_.db().exec(R"(UPDATE "日志表" SET "红球中"=3,"蓝球中"=1 WHERE "ID"=5)");
  const struct {
    const char* name;
    std::function<void()> act;
    std::string settings;
  } actions[] = {{"run", [&] { run(kPeriod, "a"); }, "a/text of a"},
                 {"init", [&] { init(kPeriod, 9); }, "none"},
                 {"run of many", [&] { run(kPeriod, "b"); }, "b/text of b"},
                 {"second run", [&] { run(kPeriod, "c"); }, "c/text of c"},
                 {"removal",
                  [&] {
                    desk_.choices = {0};
                    ASSERT_EQ(clearAllTickets(store_, desk_), Outcome::done);
                  },
                  "none"}};
  for (const auto& [name, act, settings] : actions) {
    const std::string before = everything(), settings_before = settingsOf(kPeriod);
    act();
    const std::string after = everything();
    EXPECT_EQ(settingsOf(kPeriod), settings) << name;
    EXPECT_EQ(nextTicketSteps(store_).redo, std::nullopt) << name;
    for (int round = 0; round < 2; ++round) {
      ASSERT_EQ(undoTickets(store_, desk_), Outcome::done) << name;
      EXPECT_EQ(everything(), before) << name;
      EXPECT_EQ(settingsOf(kPeriod), settings_before) << name;
      EXPECT_EQ(undoTickets(store_, desk_), Outcome::refused) << "one step alone is kept";
      ASSERT_EQ(redoTickets(store_, desk_), Outcome::done) << name;
      EXPECT_EQ(everything(), after) << name;
      EXPECT_EQ(settingsOf(kPeriod), settings) << name;
      EXPECT_EQ(redoTickets(store_, desk_), Outcome::refused) << name;
    }
  }
}

TEST_F(TicketSteps, TheOriginOfARunIsThatOfTheLastActionAlone) {
  init(kPeriod, 8);
  const auto stood = test::readRows(store_);
  EXPECT_FALSE(loadRunOrigin(store_, kPeriod));
  run(kPeriod, "a");
  EXPECT_FALSE(loadRunOrigin(store_, kPeriod - 1));
  for (int round = 0; round < 2; ++round) {
    const auto origin = loadRunOrigin(store_, kPeriod);
    ASSERT_TRUE(origin);
    ASSERT_EQ(origin->tickets.size(), stood.size());
    for (std::size_t row = 0; row < stood.size(); ++row) {
      EXPECT_EQ(origin->tickets[row], packBalls(stood[row].reds, stood[row].blue));
      EXPECT_EQ(origin->before_shrink[row], row % 3 != 0);
    }
    ASSERT_EQ(undoTickets(store_, desk_), Outcome::done);
    EXPECT_FALSE(loadRunOrigin(store_, kPeriod)) << "taken back";
    ASSERT_EQ(redoTickets(store_, desk_), Outcome::done);
  }
  init(kPeriod, 8);
  EXPECT_FALSE(loadRunOrigin(store_, kPeriod));
}

TEST_F(TicketSteps, AHundredThousandTicketsTakeLittleRoom) {
  changeSettings(store_, [](ConditionSet& set) {
    for (int n = 1; n <= 17; ++n) set.cells.set(2 * n - 1, 1);
    for (int n = 1; n <= 8; ++n) set.cells.set(kBlueCodeBase + 2 * n, 1);
  });
  ASSERT_EQ(initTickets(store_, desk_, kPeriod, Existing::replace).rows, 99'008);
  run(kPeriod, "a");
  EXPECT_LT(store_.value(R"(SELECT sum(length("号码")+length("缩水前")) FROM "号码步骤")"), 1'000'000);
}

}  // namespace
}  // namespace lotmere
