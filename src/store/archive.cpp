#include "store/archive.hpp"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>
#include <sqlite3.h>
#include <zlib.h>

#include <algorithm>

#include "base/failure.hpp"
#include "store/store.hpp"
#include "store/store_files.hpp"

namespace lotmere {
namespace {

namespace fs = std::filesystem;

constexpr int kApplication = 0x4C6F744D;  // "LotM" in the header, by which an archive is known
constexpr int kFormat = 1;
constexpr std::size_t kChunk = 1 << 20;  // bytes between two looks at the stop button

struct Stopped {};

// Of the name too, so that no file's bytes pass for another's.
std::int64_t checksum(const ArchivedFile& file) {
  const auto add = [](uLong sum, const std::string& bytes) {
    return crc32_z(sum, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size());
  };
  return static_cast<std::int64_t>(add(add(0, file.name + '\n'), file.bytes));
}

std::int64_t allBytes(const std::vector<ArchivedFile>& archived) {
  std::int64_t sum = 0;
  for (const ArchivedFile& file : archived) sum += static_cast<std::int64_t>(file.bytes.size());
  return sum;
}

void advance(CourseLeg& job, std::int64_t done) {
  if (job.advance(done)) throw Stopped{};
}

void fillArchive(SQLite::Database& db, const std::vector<ArchivedFile>& archived, CourseLeg& job) {
  db.exec(fmt::format(R"(PRAGMA application_id = {}; PRAGMA user_version = {};
      CREATE TABLE "目录" ("名称" TEXT PRIMARY KEY, "字节数" INTEGER NOT NULL, "校验" INTEGER NOT NULL);
      CREATE TABLE "总数" ("文件数" INTEGER NOT NULL);
      CREATE TABLE "内容" ("名称" TEXT NOT NULL, "序号" INTEGER NOT NULL, "字节" BLOB NOT NULL,
                           PRIMARY KEY ("名称","序号")))",
                      kApplication, kFormat));
  SQLite::Statement total(db, R"(INSERT INTO "总数" VALUES (?))");
  total.bind(1, static_cast<std::int64_t>(archived.size()));
  total.exec();
  SQLite::Statement add(db, R"(INSERT INTO "目录" VALUES (?,?,?))");
  SQLite::Statement put(db, R"(INSERT INTO "内容" VALUES (?,?,?))");
  std::int64_t done = 0;
  for (const ArchivedFile& file : archived) {
    add.bind(1, file.name);
    add.bind(2, static_cast<std::int64_t>(file.bytes.size()));
    add.bind(3, checksum(file));
    add.exec();
    add.reset();
    for (std::size_t from = 0; from < file.bytes.size(); from += kChunk) {
      const std::size_t size = std::min(kChunk, file.bytes.size() - from);
      put.bind(1, file.name);
      put.bind(2, static_cast<std::int64_t>(from / kChunk));
      put.bindNoCopy(3, file.bytes.data() + from, static_cast<int>(size));
      put.exec();
      put.reset();
      advance(job, done += static_cast<std::int64_t>(size));
    }
  }
}

ArchivedFile readFile(SQLite::Database& db, const std::string& name, CourseLeg& job, std::int64_t& done) {
  ArchivedFile file{name, {}};
  SQLite::Statement chunks(db, R"(SELECT "字节" FROM "内容" WHERE "名称"=? ORDER BY "序号")");
  chunks.bind(1, name);
  while (chunks.executeStep()) {
    const SQLite::Column bytes = chunks.getColumn(0);
    file.bytes.append(static_cast<const char*>(bytes.getBlob()), static_cast<std::size_t>(bytes.getBytes()));
    advance(job, done += bytes.getBytes());
  }
  return file;
}

Archive readSound(SQLite::Database& db, Desk& desk) {
  Archive archive;
  CourseLeg job(desk.course(), db.execAndGet(R"(SELECT ifnull(sum("字节数"),0) FROM "目录")").getInt64(),
                Course::Stop::possible);
  std::int64_t done = 0;
  SQLite::Statement row(db, R"(SELECT "名称","字节数","校验" FROM "目录" ORDER BY "名称")");
  while (row.executeStep()) {
    const ArchivedFile& file =
        archive.files.emplace_back(readFile(db, row.getColumn(0).getString(), job, done));
    if (row.getColumn(1).getInt64() != static_cast<std::int64_t>(file.bytes.size()) ||
        row.getColumn(2).getInt64() != checksum(file))
      return {ArchiveState::damaged, {}};
  }
  const auto total = db.execAndGet(R"(SELECT "文件数" FROM "总数")").getInt64();
  if (total != static_cast<std::int64_t>(archive.files.size())) return {ArchiveState::damaged, {}};
  return archive;
}

}  // namespace

bool writeArchive(const fs::path& path, const std::vector<ArchivedFile>& archived, Desk& desk,
                  FileSystem& files) {
  const StopScope stop(desk.course());
  CourseLeg job(desk.course(), allBytes(archived), Course::Stop::possible);
  try {
    writeDatabase(path, files, [&](SQLite::Database& db) { fillArchive(db, archived, job); });
    return true;
  } catch (const Stopped&) {
    return false;
  }
}

bool isArchive(std::string_view bytes) {
  constexpr std::string_view database{"SQLite format 3\0", 16};
  constexpr std::size_t application = 68;  // place of the application's number, its highest byte first
  if (!bytes.starts_with(database) || bytes.size() < application + 4) return false;
  int number = 0;
  for (const char c : bytes.substr(application, 4)) number = number << 8 | static_cast<unsigned char>(c);
  return number == kApplication;
}

Archive readArchive(const fs::path& path, Desk& desk) {
  requirePlainFile(path);
  if (!fs::exists(path))
    throw fs::filesystem_error("open", path, std::make_error_code(std::errc::no_such_file_or_directory));
  const StopScope stop(desk.course());
  try {
    SQLite::Database db(path.string(), SQLite::OPEN_READONLY);
    if (db.execAndGet("PRAGMA application_id").getInt() != kApplication) return {ArchiveState::foreign, {}};
    const int format = db.execAndGet("PRAGMA user_version").getInt();
    if (format != kFormat) return {format > kFormat ? ArchiveState::newer : ArchiveState::damaged, {}};
    return readSound(db, desk);
  } catch (const Stopped&) {
    return {ArchiveState::stopped, {}};
  } catch (const SQLite::Exception& failure) {
    if (failure.getErrorCode() == SQLITE_NOTADB) return {ArchiveState::foreign, {}};
    if (isDamage(failure)) return {ArchiveState::damaged, {}};
    throw StoreFailure(path, failure);
  }
}

}  // namespace lotmere
