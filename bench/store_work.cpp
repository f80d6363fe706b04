// omission-3500 and import-1m: work that reads and writes the store, against the same work done plainly.
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <random>

#include "analysis/omission.hpp"
#include "files/import.hpp"
#include "start/home.hpp"
#include "store/periods.hpp"
#include "workloads.hpp"
#include "world.hpp"

namespace lotmere::bench {
namespace {

using benchmark::State;

constexpr PeriodNo kAll = kTarget;

void renumberDraws(Store& store) {
  Query rows = store.query(R"(SELECT "期号" FROM "历史记录" WHERE "期号"<=? ORDER BY "期号" ASC)");
  rows.bind(kAll);
  for (int place = 0; rows.next(); ++place)
    store.query(R"(UPDATE "历史记录" SET "总期号"=?,"遗漏数据"=0 WHERE "期号"=?)")
        .bind(place, rows.number(0))
        .run();
}

void markDraws(Store& store, int red) {
  Query rows = store.query(
      R"(SELECT "期号" FROM "历史记录" WHERE "期号"<=?1 AND ("红球1"=?2 OR "红球2"=?2 OR "红球3"=?2 OR
         "红球4"=?2 OR
         "红球5"=?2 OR "红球6"=?2))");
  rows.bind(kAll, red);
  while (rows.next())
    store.query(R"(UPDATE "历史记录" SET "遗漏数据"=? WHERE "期号"=?)").bind(red, rows.number(0)).run();
}

OmissionFigures readGaps(Store& store, int red, int total) {
  Query rows = store.query(
      R"(SELECT "总期号" FROM "历史记录" WHERE "期号"<=? AND "遗漏数据"=? ORDER BY "总期号" ASC)");
  rows.bind(kAll, red);
  int previous = -1, hits = 0, sum = 0;
  ClosedGaps gaps;
  for (; rows.next(); ++hits) {
    gaps.last = rows.number(0) - previous - 1;
    gaps.largest = std::max(gaps.largest, gaps.last);
    sum += gaps.last;
    previous = rows.number(0);
  }
  if (hits < 2) return {hits, total - previous, std::nullopt};
  gaps.average = static_cast<int>(std::nearbyint(static_cast<double>(sum) / (hits - 1)));
  return {hits, total - previous, gaps};
}

// All draws numbered and their marks cleared; then for each red one select whose rows are marked one by one,
// and one select of what was marked; in one transaction.
std::vector<OmissionFigures> analyseLiterally(Store& store) {
  std::vector<OmissionFigures> figures;
  StoreChange change(store);
  renumberDraws(store);
  const auto total = static_cast<int>(store.value(R"(SELECT max("总期号") FROM "历史记录")"));
  for (int red = 1; red <= kRedCount; ++red) {
    markDraws(store, red);
    figures.push_back(readGaps(store, red, total));
  }
  change.commit();
  return figures;
}

std::vector<std::array<int, 3>> workColumns(Store& store) {
  Query rows = store.query(R"(SELECT "期号","总期号","遗漏数据" FROM "历史记录" ORDER BY "期号" ASC)");
  std::vector<std::array<int, 3>> columns;
  while (rows.next()) columns.push_back({rows.number(0), rows.number(1), rows.number(2)});
  return columns;
}

enum class Marks { right, other_colour };

// Puts the work columns into a state that a person's clicks lead to.
void prepareMarks(Store& store, Desk& desk, Marks marks) {
  const auto analyse = marks == Marks::right ? analyseRedOmission : analyseBlueOmission;
  check(analyse(store, desk, kAll).has_value(), "omission-3500 has no draws");
}

void omission3500(State& state, const Sizes& sizes, Marks marks) {
  World world;
  Store& store = world.store();
  world.addDraws(sizes.draws);
  QuietDesk desk;
  for (auto _ : state) {
    std::vector<double> floor, subject;
    for (int round = 0; round < sizes.rounds; ++round) {
      std::vector<OmissionFigures> expected;
      prepareMarks(store, desk, marks);
      floor.push_back(seconds([&] { expected = analyseLiterally(store); }));
      const auto columns = workColumns(store);

      std::optional<Omission> omission;
      prepareMarks(store, desk, marks);
      subject.push_back(seconds([&] { omission = analyseRedOmission(store, desk, kAll); }));
      check(omission && omission->numbers == expected, "omission-3500 has other figures than the selects");
      check(workColumns(store) == columns, "omission-3500 leaves other marks than the selects");
    }
    report(state, median(subject), median(floor), median(floor) / median(subject),
           static_cast<std::size_t>(sizes.draws));
  }
}

// A file of invented tickets, a line each.
std::filesystem::path writeLines(const World& world, int lines) {
  auto path = world.folder() / "tickets.txt";
  std::mt19937 random(20261123);
  std::ofstream file(path);
  for (int line = 0; line < lines; ++line) {
    const DrawNumbers numbers = randomDraw(random);
    const auto& [r1, r2, r3, r4, r5, r6] = numbers.reds;
    file << fmt::format("{:02} {:02} {:02} {:02} {:02} {:02}+{:02}\n", r1, r2, r3, r4, r5, r6, numbers.blue);
  }
  check(static_cast<bool>(file.flush()), "import-1m can't write its file");
  return path;
}

// Line by line: seven numbers read, one row inserted; in one transaction.
void importPlainly(Store& store, const std::filesystem::path& path) {
  StoreChange change(store);
  Query insert = store.query(
      R"(INSERT INTO "日志表" ("ID","序号","期号","红球1","红球2","红球3","红球4",
         "红球5","红球6","蓝球")
         VALUES (?,?,?,?,?,?,?,?,?,?))");
  std::ifstream file(path);
  std::int64_t row = 0;
  for (std::string line; std::getline(file, line);) {
    std::array<int, kRedsPerTicket + 1> numbers{};
    const char* at = line.data();
    for (int& number : numbers) at = std::from_chars(at, line.data() + line.size(), number).ptr + 1;
    const auto& [r1, r2, r3, r4, r5, r6, blue] = numbers;
    ++row;
    insert.bind(row, row, kTarget, r1, r2, r3, r4, r5, r6, blue).run();
  }
  change.commit();
}

bool sameTickets(Store& a, Store& b, int count) {
  const char* all = R"(SELECT * FROM "日志表" ORDER BY "ID")";
  Query left = a.query(all), right = b.query(all);
  const int columns = left.statement().getColumnCount();
  int rows = 0;
  for (; left.next(); ++rows) {
    if (!right.next()) return false;
    for (int i = 0; i < columns; ++i)
      if (left.whole(i) != right.whole(i)) return false;
  }
  return !right.next() && rows == count;
}

double timeImport(Store& store, const std::filesystem::path& path, int lines) {
  QuietDesk desk;
  ImportResult result;
  store.db().exec("DELETE FROM \"日志表\"");
  const double time = seconds([&] {
    result = importTickets(store, desk, path, {ImportFormat::numbers, kTarget});
  });
  check(result.count == lines, "import-1m took another number of lines");
  return time;
}

void import1m(State& state, const Sizes& sizes) {
  World world;
  const auto other = world.otherStore();
  const auto path = writeLines(world, sizes.lines);
  for (auto _ : state) {
    std::vector<double> floor, subject;
    for (int round = 0; round < sizes.rounds; ++round) {
      other->db().exec("DELETE FROM \"日志表\"");
      floor.push_back(seconds([&] { importPlainly(*other, path); }));
      subject.push_back(timeImport(world.store(), path, sizes.lines));
    }
    check(sameTickets(world.store(), *other, sizes.lines),
          "import-1m wrote other rows than the plain insert");
    report(state, median(subject), median(floor), median(subject) / median(floor),
           static_cast<std::size_t>(sizes.lines));
  }
}

void importLinear(State& state, const Sizes& sizes) {
  World world;
  const int few = sizes.lines / 10;
  for (auto _ : state) {
    std::vector<double> floor, subject;
    for (int round = 0; round < sizes.rounds; ++round) {
      floor.push_back(timeImport(world.store(), writeLines(world, few), few));
      subject.push_back(timeImport(world.store(), writeLines(world, sizes.lines), sizes.lines));
    }
    report(state, median(subject), median(floor), (median(subject) / sizes.lines) / (median(floor) / few),
           static_cast<std::size_t>(sizes.lines));
  }
}

// Three files of the sizes that a first start makes, each written, flushed and put in its place.
void writeFiles(const std::filesystem::path& folder, const std::filesystem::path& like) {
  for (const auto& entry : std::filesystem::directory_iterator(like))
    if (entry.file_size() > 0)
      realFiles().writeWhole(folder / entry.path().filename(),
                             std::string(static_cast<std::size_t>(entry.file_size()), 'x'));
}

// On a disk: in memory a flush costs nothing, and that a start flushed 11,000 times was seen nowhere.
void firstStart(State& state, const Sizes& sizes) {
  const DiskFolder disk;
  for (auto _ : state) {
    std::vector<double> floor, subject;
    for (int round = 0; round < sizes.rounds; ++round) {
      QuietDesk desk;
      const auto home = disk.path() / fmt::format("home{}", round);
      const auto plain = disk.path() / fmt::format("plain{}", round);
      std::filesystem::create_directories(plain);
      subject.push_back(seconds([&] {
        std::filesystem::create_directories(home);
        check(openHome({home}, desk) != nullptr, "first-start made no store");
      }));
      floor.push_back(seconds([&] { writeFiles(plain, home); }));
    }
    report(state, median(subject), median(floor), median(subject) / median(floor), 0);
  }
}

}  // namespace

void registerStoreWorkloads(const Sizes& sizes) {
  add("omission-3500/repeat", [=](State& state) { omission3500(state, sizes, Marks::right); });
  add("omission-3500/rewrite", [=](State& state) { omission3500(state, sizes, Marks::other_colour); });
  add("import-1m", [=](State& state) { import1m(state, sizes); });
  add("first-start", [=](State& state) { firstStart(state, sizes); });
  add("import-linear", [=](State& state) { importLinear(state, sizes); });
}

}  // namespace lotmere::bench
