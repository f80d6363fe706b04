#include "core/platform.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <system_error>

namespace lotmere {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const char* step, const fs::path& path) {
  throw fs::filesystem_error(step, path, std::error_code(errno, std::generic_category()));
}

// A file descriptor that closes itself.
class Descriptor {
 public:
  // Takes over an open file; fails in the name of `path` where opening it failed.
  Descriptor(int fd, const fs::path& path) : fd_(fd) {
    if (fd_ < 0) fail("open", path);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { ::close(fd_); }
  [[nodiscard]] int get() const { return fd_; }

 private:
  int fd_;
};

void write_All(const Descriptor& file, const fs::path& path, const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t n = ::write(file.get(), bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) fail("write", path);
    done += static_cast<std::size_t>(n);
  }
}

class RealFiles final : public FileSystem {
 public:
  bool exists(const fs::path& path) override { return fs::exists(path); }

  void remove(const fs::path& path) override { fs::remove(path); }

  void sync(const fs::path& path) override {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC), path);
    if (::fsync(file.get()) != 0) fail("fsync", path);
  }

  void replace(const fs::path& from, const fs::path& to) override {
    fs::rename(from, to);
    sync(to.has_parent_path() ? to.parent_path() : fs::path("."));
  }

  void write_Whole(const fs::path& name, const std::string& bytes) override {
    // What a link names is replaced, not the link.
    const fs::path path = fs::is_symlink(name) ? fs::weakly_canonical(name) : name;
    // A device or a pipe is no file to be replaced, and one that nobody may write stays.
    if (fs::exists(path) && !fs::is_regular_file(path))
      throw fs::filesystem_error("write", path, std::make_error_code(std::errc::invalid_argument));
    if (fs::exists(path) && ::access(path.c_str(), W_OK) != 0) fail("write", path);
    std::string beside = path.string() + ".XXXXXX";
    const Descriptor file(::mkstemp(beside.data()), path);
    try {
      write_All(file, path, bytes);
      if (::fsync(file.get()) != 0) fail("fsync", path);
      replace(beside, path);
    } catch (...) {
      ::unlink(beside.c_str());
      throw;
    }
  }
};

class RealClock final : public Clock {
 public:
  Date today() override {
    // The person's own day, not the one at Greenwich.
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    return Date{std::chrono::year{local.tm_year + 1900} / (local.tm_mon + 1) / local.tm_mday};
  }
};

}  // namespace

std::string reason_Text(const std::error_code& code) {
  if (code == std::errc::no_such_file_or_directory) return "没有这个文件或文件夹";
  if (code == std::errc::permission_denied || code == std::errc::read_only_file_system) return "没有权限";
  if (code == std::errc::no_space_on_device) return "磁盘已满";
  if (code == std::errc::file_too_large) return "文件太大";
  if (code == std::errc::is_a_directory || code == std::errc::not_a_directory) return "文件和文件夹弄混了";
  if (code == std::errc::invalid_argument) return "不是普通文件";
  if (code == std::errc::io_error) return "读写出错";
  if (code == std::errc::filename_too_long) return "文件名太长";
  if (code == std::errc::too_many_symbolic_link_levels) return "链接绕了圈子";
  return code.message();
}

FileSystem& real_Files() {
  static RealFiles files;
  return files;
}

Clock& real_Clock() {
  static RealClock clock;
  return clock;
}

}  // namespace lotmere
