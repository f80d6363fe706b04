#include <gtest/gtest.h>

#include "core/desk_script.hpp"
#include "pipeline/filter_pass.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

// A stop between two blocks: what was judged is settled, what wasn't reached stands as it was, in its old order.
TEST(Walk, AStopBetweenBlocksLeavesTheRestAsItStood) {
  constexpr std::size_t rows = 20'000;
  test::TempHome home;
  TicketSet tickets;
  for (std::size_t row = 0; row < rows; ++row)
    tickets.add(pack_Balls({static_cast<int>(row % 33) + 1, 2, 3, 4, 5, 6}, 1));
  ScriptedDesk desk;
  desk.on_serve = [&] { desk.request_Stop(); };
  PipelineRun run{home.store(), desk, tickets, 2026001};
  const auto kept =
      walk_Tickets(run, lines_Of("[x]"), judge_ByReds([](Balls balls) { return reds_Of(balls)[0] > 11; }));

  const auto passed = static_cast<std::size_t>(kept);
  const std::size_t left = tickets.size() - passed;
  ASSERT_GT(passed, 0U);
  ASSERT_GT(left, 0U);
  EXPECT_NEAR(static_cast<double>(passed) / static_cast<double>(rows - left), 2.0 / 3, 0.01);
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    const bool judged = row < passed;
    ASSERT_EQ(tickets.mark[row], judged ? 1 : 0) << row;
    ASSERT_EQ(tickets.seq[row], judged ? row + 1 : tickets.origin[row] + 1U) << row;
    if (!judged) {
      ASSERT_EQ(tickets.origin[row], rows - (tickets.size() - row)) << row;
    }
  }
  EXPECT_TRUE(desk.running_Text().text().ends_with("[x]过滤正在进行中．．．"));
}

}  // namespace
}  // namespace lotmere
