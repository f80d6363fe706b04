// What the fuzz targets share.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "base/desk.hpp"

namespace lotmere::fuzz {

// A rule that doesn't hold ends the process, as a sanitizer does: the fuzzer keeps the input.
inline void expect(bool holds, const char* rule) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", rule);
  std::abort();
}

// A desk with nobody behind it, which counts what it was told.
class CountingDesk final : public Desk {
 public:
  int told = 0;

  void tell(std::string_view /*text*/, Tone /*tone*/, std::string_view /*title*/) override { ++told; }
  bool ask(std::string_view /*text*/, std::string_view /*title*/) override { return false; }
  std::size_t choose(std::string_view /*text*/, std::span<const std::string_view> /*buttons*/,
                     std::size_t cancel, std::string_view /*title*/) override {
    return cancel;
  }
  std::optional<std::string> askText(std::string_view /*prompt*/, std::string_view /*title*/,
                                     std::string_view /*proposed*/) override {
    return std::nullopt;
  }
  void showTip(std::string_view /*text*/, std::string_view /*title*/) override {}
  FreeCourse& course() override { return course_; }

 private:
  FreeCourse course_;
};

}  // namespace lotmere::fuzz
