// Writing a ticket set down. For rows that stand there already two statements do it, a DELETE and an UPDATE
// over the rows of the period, which ask the set about each row through an SQL function.
#include <algorithm>

#include "store/row_function.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 4096;

// What the function is asked for.
enum Question : int { is_gone, has_changed, new_seq, new_mark, new_shrink, new_score };

// Answers for the rows of the store by ID. IDs are asked for in ascending order, so the place of the last
// answer is nearly always the place of the next one or the one before it.
class RowAnswers {
 public:
  RowAnswers(const TicketSet& tickets, const RowsDone& done) : tickets_(tickets), done_(done) {}

  // The answer for one row; a row that the set never read is neither gone nor changed.
  int answer(Question question, std::int32_t id) {
    serve();
    const auto& ids = tickets_.stored.id;
    if (place_ >= ids.size() || ids[place_] != id) find(id);
    if (place_ >= ids.size() || ids[place_] != id) return 0;
    if (row_ >= tickets_.size() || tickets_.origin[row_] != place_) return question == is_gone ? 1 : 0;
    switch (question) {
      case is_gone:
        return 0;
      case has_changed:
        return changed() ? 1 : 0;
      case new_seq:
        return tickets_.seq[row_];
      case new_mark:
        return tickets_.mark[row_];
      case new_shrink:
        return tickets_.shrink[row_];
      case new_score:
        return tickets_.score[row_];
    }
    return 0;
  }

 private:
  void serve() {
    if (++asked_ % kBlock == 0) done_(std::min(row_, tickets_.size()));
  }

  // Goes to the stored row of an ID and to the ticket that stands for it, or to the first one behind it.
  void find(std::int32_t id) {
    const auto& ids = tickets_.stored.id;
    if (place_ + 1 < ids.size() && ids[place_ + 1] == id)
      ++place_;
    else
      place_ = static_cast<std::size_t>(std::lower_bound(ids.begin(), ids.end(), id) - ids.begin());
    const auto& origin = tickets_.origin;
    if (row_ < origin.size() && origin[row_] < place_) ++row_;
    if (row_ < origin.size() && origin[row_] == place_) return;
    row_ = static_cast<std::size_t>(std::lower_bound(origin.begin(), origin.end(), place_) - origin.begin());
  }

  [[nodiscard]] bool changed() const {
    const TicketSet::Stored& stored = tickets_.stored;
    return tickets_.seq[row_] != stored.seq[place_] || tickets_.mark[row_] != stored.mark[place_] ||
           tickets_.shrink[row_] != stored.shrink[place_] || tickets_.score[row_] != stored.score[place_];
  }

  const TicketSet& tickets_;
  const RowsDone& done_;
  std::size_t place_ = static_cast<std::size_t>(-2);  // among the stored rows; before the first one
  std::size_t row_ = 0;                               // among the tickets
  std::size_t asked_ = 0;
};

}  // namespace

void saveTickets(Store& store, const TicketSet& tickets, const RowsDone& done) {
  StoreChange change(store);
  RowAnswers answers(tickets, done);
  RowFunction function(store, "lotmere_ticket", 2, [&](std::span<const std::int32_t> values) {
    return answers.answer(static_cast<Question>(values[0]), values[1]);
  });
  function.run(R"(DELETE FROM "日志表" WHERE "期号"=? AND lotmere_ticket(0,"ID"))", tickets.period);
  function.run(R"(UPDATE "日志表" SET "精选标记"=0 WHERE "期号"=? AND "精选标记"<>0)", tickets.period);
  function.run(R"(UPDATE "日志表" SET "序号"=lotmere_ticket(2,"ID"),"过滤标记"=lotmere_ticket(3,"ID"),
                  "缩水标记"=lotmere_ticket(4,"ID"),"临时数据"=lotmere_ticket(5,"ID")
                  WHERE "期号"=? AND lotmere_ticket(1,"ID"))",
               tickets.period);
  change.commit();
}

void insertTickets(Store& store, const TicketSet& tickets, std::size_t from, std::int64_t last_id,
                   const RowsDone& done) {
  Query insert = store.query(
      R"(INSERT INTO "日志表" ("ID","序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球",
         "过滤标记","缩水标记","临时数据")
         VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?))");
  for (std::size_t row = from; row < tickets.size(); ++row) {
    if (row % kBlock == 0) done(row);
    const auto& [r1, r2, r3, r4, r5, r6] = redsOf(tickets.balls[row]);
    insert.bind(++last_id, tickets.seq[row], tickets.period, r1, r2, r3, r4, r5, r6,
                blueOf(tickets.balls[row]), tickets.mark[row], tickets.shrink[row], tickets.score[row]);
    insert.run();
  }
}

}  // namespace lotmere
