#include "base/platform.hpp"

#include <fcntl.h>
#include <iconv.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <optional>
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

void writeAll(const Descriptor& file, const fs::path& path, const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t n = ::write(file.get(), bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) fail("write", path);
    done += static_cast<std::size_t>(n);
  }
}

constexpr mode_t kModeBits = 07777;
constexpr int kMostLinks = 40;  // as many as the system follows

// What stands at the end of a path that is to be replaced; nothing where nothing does. Throws when it may not
// be replaced.
std::optional<struct stat> statusOfReplaced(const fs::path& path) {
  struct stat old {};
  if (::stat(path.c_str(), &old) != 0) {
    if (errno != ENOENT) fail("write", path);
    return std::nullopt;
  }
  const auto refuse = [&](std::errc reason) {
    throw fs::filesystem_error("write", path, std::make_error_code(reason));
  };
  if (S_ISDIR(old.st_mode)) refuse(std::errc::is_a_directory);
  if (!S_ISREG(old.st_mode)) refuse(std::errc::invalid_argument);
  if (old.st_uid != ::geteuid()) refuse(std::errc::permission_denied);
  if (::access(path.c_str(), W_OK) != 0) fail("write", path);
  return old;
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
    move(from, to);
    sync(to.has_parent_path() ? to.parent_path() : fs::path("."));
  }

  void move(const fs::path& from, const fs::path& to) override { fs::rename(from, to); }

  void writeNew(const fs::path& path, const std::string& bytes) override {
    const Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR),
                          path);
    writeAll(file, path, bytes);
    if (::fsync(file.get()) != 0) fail("fsync", path);
  }

  void writeWhole(const fs::path& name, const std::string& bytes) override {
    const auto old = statusOfReplaced(name);
    const fs::path path = followLinks(name);
    std::string beside = path.string() + ".XXXXXX";
    const Descriptor file(::mkostemp(beside.data(), O_CLOEXEC), path);
    try {
      // The group comes first: a change of it takes bits off the mode. One that can't be kept is no reason to
      // fail.
      if (old && old->st_gid != ::getegid())
        static_cast<void>(::fchown(file.get(), static_cast<uid_t>(-1), old->st_gid) != 0);
      if (old && ::fchmod(file.get(), old->st_mode & kModeBits) != 0) fail("chmod", path);
      writeAll(file, path, bytes);
      if (::fsync(file.get()) != 0) fail("fsync", path);
      replace(beside, path);
    } catch (...) {
      ::unlink(beside.c_str());
      throw;
    }
  }
};

constexpr std::array kEndSignals = {SIGINT, SIGTERM, SIGHUP};

std::atomic<void (*)()> react_to_end{nullptr};
std::atomic<int> pipe_end{-1};
static_assert(std::atomic<void (*)()>::is_always_lock_free && std::atomic<int>::is_always_lock_free);
std::array<struct sigaction, kEndSignals.size()> handlers_before{};

void onEndSignal(int /*signal*/) {
  if (void (*const react)() = react_to_end) react();
}

class RealClock final : public Clock {
 public:
  Date today() override {
    // The user's own day, not the one at Greenwich.
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    return Date{std::chrono::year{local.tm_year + 1900} / (local.tm_mon + 1) / local.tm_mday};
  }
};

}  // namespace

std::string reasonText(const std::error_code& code) {
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

fs::path followLinks(const fs::path& path) {
  if (std::error_code missing; fs::exists(path, missing)) return fs::canonical(path);
  fs::path end = path;
  for (int links = 0; fs::is_symlink(end); ++links) {
    if (links == kMostLinks)
      throw fs::filesystem_error("open", path,
                                 std::make_error_code(std::errc::too_many_symbolic_link_levels));
    end = end.parent_path() / fs::read_symlink(end);
  }
  return fs::weakly_canonical(end);
}

std::optional<std::string> readFirstLine(const fs::path& path, std::size_t longest,
                                         const std::function<bool()>& stopped) {
  const bool standard = path == "-";
  // Without waiting for whoever writes into a pipe: the wait below can be stopped.
  const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
  const Descriptor file(standard ? ::dup(STDIN_FILENO) : ::open(path.c_str(), flags), path);
  constexpr int wait_ms = 100;
  std::string line;
  // Byte by byte: what follows in a pipe is for whoever reads next.
  for (char c = 0; line.size() <= longest;) {
    pollfd ready{file.get(), POLLIN, 0};
    const bool waits = ::poll(&ready, 1, wait_ms) <= 0;
    if (stopped && stopped()) return std::nullopt;
    if (waits) continue;
    const ssize_t n = ::read(file.get(), &c, 1);
    if (n < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (n < 0) fail("read", path);
    if (n == 0 || c == '\n') return line;
    line += c;
  }
  return std::nullopt;
}

std::string readStandardInput(std::size_t most, const std::function<bool()>& stopped) {
  constexpr int wait_ms = 100;
  constexpr std::size_t chunk = std::size_t{64} * 1024;
  std::string bytes;
  while (!stopped()) {
    pollfd ready{STDIN_FILENO, POLLIN, 0};
    if (::poll(&ready, 1, wait_ms) <= 0) continue;
    const std::size_t size = bytes.size();
    bytes.resize(size + chunk);
    const ssize_t n = ::read(STDIN_FILENO, bytes.data() + size, chunk);
    if (n < 0 && errno != EINTR && errno != EAGAIN) fail("read", "-");
    bytes.resize(size + static_cast<std::size_t>(std::max<ssize_t>(n, 0)));
    if (n == 0) break;
    if (bytes.size() <= most) continue;
    errno = EFBIG;
    fail("read", "-");
  }
  return bytes;
}

void requirePlainFile(const fs::path& path) {
  const fs::file_status found = fs::status(path);
  if (fs::exists(found) && !fs::is_regular_file(found))
    throw fs::filesystem_error("open", path, std::make_error_code(std::errc::invalid_argument));
}

void prepareProcess() {
  // The lowest free number is given, so each call fills the gap that the one before found.
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd)
    if (::fcntl(fd, F_GETFD) < 0 && errno == EBADF)
      static_cast<void>(::open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY));
  ::umask(S_IRWXG | S_IRWXO);
  std::signal(SIGXFSZ, SIG_IGN);
}

bool errorsGoToTerminal() { return ::isatty(STDERR_FILENO) != 0; }

fs::path programFile() {
  std::error_code unknown;
  return fs::read_symlink("/proc/self/exe", unknown);
}

bool mayWrite(const fs::path& path) { return ::access(path.c_str(), W_OK) == 0; }

std::unique_ptr<FileLock> FileLock::take(const fs::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (descriptor < 0) fail("open", path);
  if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    ::close(descriptor);
    return nullptr;
  }
  return std::unique_ptr<FileLock>(new FileLock(descriptor));
}

FileLock::~FileLock() { ::close(descriptor_); }

MemoryFile::MemoryFile() : descriptor_(::memfd_create("memory", MFD_CLOEXEC)) {
  std::error_code unknown;
  if (descriptor_ < 0) fail("open", fs::temp_directory_path(unknown));
}

MemoryFile::~MemoryFile() { ::close(descriptor_); }

fs::path MemoryFile::name() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

std::string MemoryFile::bytes() const {
  std::string bytes(fs::file_size(name()), '\0');
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t n =
        ::pread(descriptor_, bytes.data() + done, bytes.size() - done, static_cast<off_t>(done));
    if (n == 0) errno = EIO;  // somebody has cut the file
    if (n <= 0) fail("read", name());
    done += static_cast<std::size_t>(n);
  }
  return bytes;
}

constexpr std::size_t kMostBytes = 4;  // of a character in UTF-8

TextConverter::TextConverter(const char* encoding, std::size_t chunk)
    : handle_(::iconv_open("UTF-8", encoding)), chunk_(chunk), buffer_(kMostBytes * chunk) {
  // NOLINTNEXTLINE(*-int-to-ptr,*-reinterpret-cast): the library's own sign of failure
  if (handle_ == reinterpret_cast<iconv_t>(-1))
    throw std::system_error(errno, std::generic_category(), encoding);
}

TextConverter::~TextConverter() { ::iconv_close(handle_); }

bool TextConverter::convert(std::string_view& rest, std::string& text) {
  // The call moves the pointer over what it read, and takes no pointer to const for old systems' sake.
  char* in = const_cast<char*>(rest.data());  // NOLINT(*-const-cast)
  std::size_t left = std::min(rest.size(), chunk_);
  const std::size_t size = left;
  char* out = buffer_.data();
  std::size_t room = buffer_.size();
  const bool ended = ::iconv(handle_, &in, &left, &out, &room) != static_cast<std::size_t>(-1);
  const int reason = ended ? 0 : errno;
  text.append(buffer_.data(), buffer_.size() - room);
  rest.remove_prefix(size - left);
  // A character on the edge of the chunk is whole in the next one.
  return reason == 0 || reason == E2BIG || (reason == EINVAL && left < rest.size());
}

FileSystem& realFiles() {
  static RealFiles files;
  return files;
}

Clock& realClock() {
  static RealClock clock;
  return clock;
}

EndSignals::EndSignals(void (*react)()) {
  react_to_end = react;
  for (std::size_t i = 0; i < kEndSignals.size(); ++i) {
    struct sigaction now {};
    now.sa_handler = &onEndSignal;
    now.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    ::sigemptyset(&now.sa_mask);
    struct sigaction& before = handlers_before.at(i);
    ::sigaction(kEndSignals.at(i), nullptr, &before);
    if (before.sa_handler != SIG_IGN) ::sigaction(kEndSignals.at(i), &now, nullptr);
  }
}

EndSignals::~EndSignals() {
  for (std::size_t i = 0; i < kEndSignals.size(); ++i)
    ::sigaction(kEndSignals.at(i), &handlers_before.at(i), nullptr);
  react_to_end = nullptr;
}

EndSignalPipe::EndSignalPipe() {
  if (::pipe2(ends_.data(), O_CLOEXEC | O_NONBLOCK) != 0)
    throw std::system_error(errno, std::generic_category(), "pipe");
  pipe_end = ends_[1];
  signals_.emplace(&EndSignalPipe::writeByte);
}

EndSignalPipe::~EndSignalPipe() {
  signals_.reset();
  pipe_end = -1;
  for (const int end : ends_) ::close(end);
}

void EndSignalPipe::drain() const {
  std::array<char, 16> bytes{};
  while (::read(ends_[0], bytes.data(), bytes.size()) > 0) continue;
}

void EndSignalPipe::writeByte() {
  const int before = errno;
  // A pipe that is full tells it already.
  static_cast<void>(::write(pipe_end, "", 1) != 1);
  errno = before;
}

}  // namespace lotmere
