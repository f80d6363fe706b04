#include "base/failure.hpp"

#include <fmt/format.h>
#include <sqlite3.h>

#include "base/platform.hpp"
#include "base/text.hpp"

namespace lotmere {
namespace {

std::string storeReason(const SQLite::Exception& failure) {
  switch (failure.getErrorCode()) {
    case SQLITE_FULL:
      return "磁盘已满";
    case SQLITE_IOERR:
      return "读写磁盘出错";
    case SQLITE_READONLY:
      return "没有写入权限";
    case SQLITE_CANTOPEN:
      return "无法打开";
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "正被别的程序使用";
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return "已损坏";
    default:
      return failure.what();
  }
}

}  // namespace

std::string failureText(const std::exception& failure) {
  constexpr std::size_t longest_path = 120;
  if (const auto* engine = dynamic_cast<const SQLite::Exception*>(&failure)) {
    const auto* named = dynamic_cast<const StoreFailure*>(engine);
    return fmt::format("数据库操作失败，数据保持原样：{}（{}）",
                       quoteTyped(named == nullptr ? "Lotmere.db" : named->file().string(), longest_path),
                       storeReason(*engine));
  }
  if (const auto* file = dynamic_cast<const std::filesystem::filesystem_error*>(&failure))
    return fmt::format("文件操作失败：{}（{}）", quoteTyped(file->path1().string(), longest_path),
                       reasonText(file->code()));
  return fmt::format("操作失败，数据保持原样：{}", failure.what());
}

}  // namespace lotmere
