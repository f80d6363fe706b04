#include "world.hpp"

#include <fmt/format.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <numeric>
#include <random>
#include <stdexcept>

#include "catalogue/attributes.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/own_sets.hpp"
#include "history/draw_stats.hpp"
#include "pipeline/metric.hpp"
#include "tickets/init.hpp"
#include "tickets/selection.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere::bench {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kSeed = 20261122;
constexpr double kHeld = 0.995;  // the part of the tickets whose figures a condition allows

// Allows the most frequent cells of a condition up to the part held.
void allowFrequent(ConditionSet& set, const Condition& condition, const std::vector<std::int64_t>& tickets,
                   std::int64_t all) {
  std::vector<int> order(static_cast<std::size_t>(cellCount(condition)));
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return tickets[a] > tickets[b]; });
  std::int64_t held = 0;
  for (const int k : order) {
    const bool allowed = static_cast<double>(held) < kHeld * static_cast<double>(all);
    set.allow(condition.first + k, allowed);
    if (allowed) held += tickets[k];
  }
}

void allowFigures(ConditionSet& set, const DrawTable& draws, const Condition& condition,
                  const TicketSet& tickets) {
  const auto metric = prepareMetric(set, condition, draws.before(kTarget));
  if (!metric) return;
  std::vector<std::int64_t> counts(256);
  for (const Balls balls : tickets.balls) {
    const int value = metricValue(*metric, redsOf(balls));
    if (value >= 0) ++counts[static_cast<std::size_t>(value)];
  }
  allowFrequent(set, condition, counts, static_cast<std::int64_t>(tickets.size()));
}

}  // namespace

DrawNumbers randomDraw(std::mt19937& random) {
  std::array<int, kRedCount> reds{};
  std::iota(reds.begin(), reds.end(), 1);
  std::shuffle(reds.begin(), reds.end(), random);
  DrawNumbers numbers;
  std::copy_n(reds.begin(), kRedsPerTicket, numbers.reds.begin());
  std::sort(numbers.reds.begin(), numbers.reds.end());
  numbers.blue = static_cast<int>(random() % kBlueCount) + 1;
  return numbers;
}

World::World() {
  std::string name = (fs::temp_directory_path() / "lotmere-bench-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  folder_ = name;
  Store::create(folder_ / "Lotmere.db");
  store_ = std::make_unique<Store>(folder_ / "Lotmere.db");
}

World::~World() {
  store_.reset();
  std::error_code left_over;
  fs::remove_all(folder_, left_over);
}

DiskFolder::DiskFolder() {
  for (const fs::path& folder : {fs::path("/var/tmp"), fs::current_path()}) {
    struct statfs kind {};
    std::string name = (folder / "lotmere-bench-XXXXXX").string();
    if (::statfs(folder.c_str(), &kind) != 0 || kind.f_type == TMPFS_MAGIC) continue;
    if (::mkdtemp(name.data()) == nullptr) continue;
    path_ = name;
    return;
  }
  throw std::runtime_error("no folder on a disk");
}

DiskFolder::~DiskFolder() {
  std::error_code left_over;
  fs::remove_all(path_, left_over);
}

std::unique_ptr<Store> World::otherStore() {
  const fs::path path = folder_ / "other.db";
  Store::create(path);
  return std::make_unique<Store>(path);
}

void World::addDraws(int count) {
  std::mt19937 random(kSeed);
  StoreChange change(*store_);
  Date date = Date{std::chrono::January / 1 / 2001};
  for (int i = 0; i < count; ++i) {
    const DrawNumbers numbers = randomDraw(random);
    const auto& [r1, r2, r3, r4, r5, r6] = numbers.reds;
    store_
        ->query(
            R"(INSERT INTO "历史记录" ("期号","开奖日期","红球1","红球2","红球3","红球4",
               "红球5","红球6",
               "蓝球")
               VALUES (?,?,?,?,?,?,?,?,?))")
        .bind((2001 + i / 150) * 1000 + i % 150 + 1, formatDate(date), r1, r2, r3, r4, r5, r6, numbers.blue)
        .run();
    date = nextDrawDate(date);
  }
  change.commit();
  QuietDesk desk;
  computeDrawStatistics(*store_, desk, 2001001, kTarget - 1);
}

void World::pick(int reds, int blues) {
  NumberSelection selection;
  // Spread over all 33, so that no condition sees a corner of the game only.
  for (int i = 0; i < reds; ++i) selection.red[1 + i * (kRedCount - 1) / (reds - 1)] = PickState::tuo;
  for (int n = 1; n <= blues; ++n) selection.blue[n] = PickState::tuo;
  changeSettings(*store_, [&](ConditionSet& set) { putSelection(set, selection); });
}

void World::useAllConditions(const TicketSet& tickets) {
  std::vector<int> numbers(static_cast<std::size_t>(kRedCount));
  std::iota(numbers.begin(), numbers.end(), 1);
  const DrawTable draws = loadDrawTable(*store_);
  changeSettings(*store_, [&](ConditionSet& set) {
    for (int place = 1; place <= kPlaceCount; ++place) setPlace(set, place, numbers);
    for (const Condition& condition : allConditions()) {
      set.use(condition.usage, true);
      allowFigures(set, draws, condition, tickets);
    }
    set.match = {true, 2001001, 2098999, kRedsPerTicket};
  });
}

void World::setShrinkType(int type) {
  changeSettings(*store_, [type](ConditionSet& set) { set.cells.set(kShrinkTypeCell, type); });
}

NumberSelection selectionIn(Store& store) { return selectionOf(loadConditionSet(store)); }

TicketSet makeTickets(const NumberSelection& selection, PeriodNo period) {
  TicketSet tickets;
  tickets.period = period;
  tickets.reserve(static_cast<std::size_t>(countCombos(selection).tickets));
  expandSelection(selection, [&](const Reds& six, const std::vector<int>& blues) {
    for (const int blue : blues) tickets.add(packBalls(six, blue));
    return true;
  });
  return tickets;
}

NumberSelection wholeGame() {
  NumberSelection selection;
  selection.red.fill(PickState::tuo);
  selection.blue.fill(PickState::tuo);
  selection.red[0] = PickState::none;
  selection.blue[0] = PickState::none;
  return selection;
}

double peakMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
  return 0;
}

}  // namespace lotmere::bench
