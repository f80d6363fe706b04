#include "support/test_store.hpp"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "conditions/condition_store.hpp"

namespace lotmere::test {

namespace fs = std::filesystem;

TempHome::TempHome() {
  std::string name = (fs::temp_directory_path() / "lotmere-test-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  home_.folder = name;
}

TempHome::~TempHome() {
  store_.reset();
  std::error_code left_over;
  fs::permissions(home_.folder, fs::perms::owner_all, left_over);
  fs::remove_all(home_.folder, left_over);
}

Store& TempHome::store() {
  if (!store_) {
    if (!fs::exists(home_.mainDb())) Store::create(home_.mainDb());
    store_ = std::make_unique<Store>(home_.mainDb());
  }
  return *store_;
}

const ConditionSet& factorySet() {
  static const ConditionSet set = loadConditionSet(TempHome().store());
  return set;
}

void putDraw(Store& store, PeriodNo period, const std::string& date, const DrawNumbers& numbers) {
  const auto& [r1, r2, r3, r4, r5, r6] = numbers.reds;
  store
      .query(
          R"(INSERT OR REPLACE INTO "历史记录" ("期号","开奖日期","红球1","红球2","红球3","红球4","红球5",
             "红球6","蓝球")
                VALUES (?,?,?,?,?,?,?,?,?))")
      .bind(period, date, r1, r2, r3, r4, r5, r6, numbers.blue)
      .run();
}

void putDraws(Store& store, const std::vector<StoredDraw>& draws) {
  StoreChange change(store);
  for (const auto& [period, numbers] : draws) putDraw(store, period, "2007-01-02", numbers);
  change.commit();
}

void putTicket(Store& store, int id, int seq, PeriodNo period, const DrawNumbers& numbers) {
  const auto& [r1, r2, r3, r4, r5, r6] = numbers.reds;
  store
      .query(
          R"(INSERT INTO "日志表" ("ID","序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球")
                VALUES (?,?,?,?,?,?,?,?,?,?))")
      .bind(id, seq, period, r1, r2, r3, r4, r5, r6, numbers.blue)
      .run();
}

void putPick(Store& store, int code, PickState state) {
  store.query(R"(UPDATE "过滤条件" SET "Value"=? WHERE "ID"=?)").bind(int(state), code).run();
}

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void loseRow(const fs::path& path, const std::string& table) {
  SQLite::Database db(path.string());
  const int page = db.execAndGet("SELECT rootpage FROM sqlite_master WHERE name='" + table + "'").getInt();
  std::string bytes = readFile(path);
  --bytes[std::size_t(page - 1) * db.execAndGet("PRAGMA page_size").getUInt() + 4];
  realFiles().writeWhole(path, bytes);
}

}  // namespace lotmere::test
