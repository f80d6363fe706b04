#include "users/profile.hpp"

#include <fmt/format.h>

#include "core/failure.hpp"
#include "core/row_copy.hpp"
#include "core/schema.hpp"
#include "core/store_files.hpp"

namespace lotmere {
namespace {

namespace fs = std::filesystem;

constexpr int kBusyTimeoutMs = 2000;

bool is_Control(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

std::string encode_FileName(std::string_view name) {
  constexpr std::string_view unsafe = "/\\:*?\"<>|%";
  constexpr std::string_view unsafe_at_ends = ". ";
  std::string text;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    const bool leads = name.find_first_not_of(unsafe_at_ends) >= i;
    const bool trails = name.find_first_not_of(unsafe_at_ends, i) == std::string_view::npos;
    const bool at_end = unsafe_at_ends.find(c) != std::string_view::npos && (leads || trails);
    if (is_Control(c) || unsafe.find(c) != std::string_view::npos || at_end)
      text += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    else
      text += c;
  }
  return text;
}

// The template holds nothing that isn't in the store: each filling makes it anew, so that one that is broken or
// falls short is mended too.
void refill_Template(Store& store, const fs::path& path, FileSystem& files) {
  std::vector<TableRows> tables;
  for (const KeyedTable& table : profile_Tables())
    tables.push_back(read_Rows(store.db(), table.name, table.key));
  write_Database(path, files, [&](SQLite::Database& form) {
    create_Profile(form);
    for (std::size_t i = 0; i < tables.size(); ++i) write_Rows(form, profile_Tables()[i], tables[i]);
  });
}

// Copies the tables of a profile one by one, each whole or not at all. What the file lacks, as that of an older version
// does, takes its factory value. False when the file breaks off.
bool copy_Profile(Store& store, const fs::path& path) {
  try {
    const bool sound = check_Store(path, StoreKind::profile) != StoreState::damaged;
    SQLite::Database profile(path.string(), SQLite::OPEN_READWRITE, kBusyTimeoutMs);
    for (const KeyedTable& table : profile_Tables()) {
      StoreChange change(store);
      write_Rows(store.db(), table, read_Rows(profile, table.name, table.key),
                 read_Rows(store.db(), factory_Twin(table), table.key));
      change.commit();
    }
    return sound;
  } catch (const SQLite::Exception& failure) {
    if (is_Damage(failure)) return false;
    throw StoreFailure(path, failure);
  }
}

}  // namespace

fs::path profile_File(const Home& home, std::string_view name) {
  return home.folder / (encode_FileName(name) + std::string(kProfileExtension));
}

bool save_Profile(Store& store, const Home& home, Desk& desk, std::string_view name, FileSystem& files) {
  const fs::path form = home.template_File();
  if (!files.exists(form)) {
    desk.tell("数据模板文件丢失无法导出，请重新安装！", Tone::error);
    return false;
  }
  refill_Template(store, form, files);
  if (copy_Database(form, profile_File(home, name), files, StoreKind::profile)) return true;
  throw fs::filesystem_error("copy", form, std::make_error_code(std::errc::io_error));
}

void restore_Profile(Store& store, const Home& home, Desk& desk, std::string_view name, FileSystem& files) {
  const fs::path path = profile_File(home, name);
  if (!files.exists(path)) return;
  if (copy_Profile(store, path)) return;
  desk.tell("用户文件丢失或损坏,无法打开！", Tone::error);
  keep_Damaged(path, files);
}

}  // namespace lotmere
