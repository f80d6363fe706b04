#include <fmt/format.h>

#include <ostream>
#include <thread>

#include "advice/guarantee.hpp"
#include "base/text.hpp"
#include "cli/ticket_commands.hpp"
#include "tickets/ticket_set.hpp"
#include "tickets/ticket_steps.hpp"

namespace lotmere {
namespace {

// What the tickets that the last run left are worth, were the draw one of those that it began with.
class GuaranteeCommand final : public PeriodCommand {
 public:
  GuaranteeCommand()
      : PeriodCommand("tickets", "guarantee",
                      "把过滤缩水前的每一注当作开奖号码，核对余下的号码，按最高奖级统计，并列出成本") {}

  void addOptions(CLI::App& app) override {
    PeriodCommand::addOptions(app);
    app.add_option("--of", of_, "用哪时的号码当作开奖号码：run 过滤缩水前（不写时），shrink 过滤后、缩水前")
        ->check(CLI::IsMember({"run", "shrink"}));
  }

 protected:
  Outcome runPeriod(Session& session, PeriodNo period) override {
    const auto origin = loadRunOrigin(session.store, period);
    if (!origin)
      return refuse(session.desk,
                    fmt::format("第 {} 期的号码没有过滤缩水，或之后又改变过，无法核对。请先过滤缩水。",
                                toFullWidth(period)));
    const bool of_shrink = of_ == "shrink";
    std::vector<Balls> draws;
    for (std::size_t row = 0; row < origin->tickets.size(); ++row)
      if (!of_shrink || origin->before_shrink[row]) draws.push_back(origin->tickets[row]);
    const auto held = loadTickets(session.store, period, [](std::size_t) { return false; });
    const StopScope stop(session.desk.course());
    const auto guarantee = checkGuarantee(draws, held->balls, session.desk.course(),
                                          static_cast<int>(std::thread::hardware_concurrency()));
    if (!guarantee) return refuse(session.desk, "用户中止，没有算完。");
    session.out << guaranteeText(*guarantee, of_shrink ? "缩水前" : "过滤缩水前");
    return Outcome::done;
  }

 private:
  std::string of_ = "run";
};

}  // namespace

void addTicketAdviceCommands(CommandList& list) { list.push_back(std::make_unique<GuaranteeCommand>()); }

}  // namespace lotmere
