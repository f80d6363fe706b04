// A machine that refuses.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "base/platform.hpp"

namespace lotmere::test {

// The real machine, but the step with the number `fail_at` (from 1) is refused; `before_step` is told of
// every step.
class FaultyFiles final : public FileSystem {
 public:
  using Path = const std::filesystem::path&;
  explicit FaultyFiles(int fail_at = 0) : fail_at_(fail_at) {}
  std::function<void()> before_step = [] {};
  std::string steps;  // what was done, as "sync Lotmere.db.new "
  [[nodiscard]] bool failed() const { return step_ >= fail_at_; }
  bool exists(Path path) override { return realFiles().exists(path); }
  void remove(Path path) override { pass("remove", path), realFiles().remove(path); }
  void sync(Path path) override { pass("sync", path), realFiles().sync(path); }
  void replace(Path from, Path to) override { pass("replace", to), realFiles().replace(from, to); }
  void move(Path from, Path to) override { pass("move", to), realFiles().move(from, to); }
  void writeWhole(Path path, const std::string& text) override { realFiles().writeWhole(path, text); }
  void writeNew(Path path, const std::string& text) override {
    pass("write", path), realFiles().writeNew(path, text);
  }

 private:
  void pass(const char* step, Path path) {
    before_step();
    steps += step + (' ' + path.filename().string()) + ' ';
    if (++step_ == fail_at_) throw std::filesystem::filesystem_error("refused", path, {});
  }
  int fail_at_;
  int step_ = 0;
};

// Runs `work` again and again, refusing its first step, its second, ..., until a run meets no refusal.
inline void refuseEachStep(const std::function<void(FaultyFiles&)>& work) {
  for (int step = 1;; ++step) {
    SCOPED_TRACE("refused step " + std::to_string(step));
    FaultyFiles files(step);
    work(files);
    if (!files.failed()) return;
  }
}

}  // namespace lotmere::test
