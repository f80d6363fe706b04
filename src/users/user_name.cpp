#include "users/user_name.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

#include "users/profile.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kLongestFileName = 200;  // leaves room for the endings of a file under construction

struct CodeRange {
  std::uint32_t first;
  std::uint32_t last;
};

// Unicode's general categories Cc, Cf, Zl and Zp, sorted.
constexpr CodeRange kSteering[] = {
    {0x0, 0x1F},        {0x7F, 0x9F},       {0xAD, 0xAD},       {0x600, 0x605},     {0x61C, 0x61C},
    {0x6DD, 0x6DD},     {0x70F, 0x70F},     {0x890, 0x891},     {0x8E2, 0x8E2},     {0x180E, 0x180E},
    {0x200B, 0x200F},   {0x2028, 0x202E},   {0x2060, 0x206F},   {0xFEFF, 0xFEFF},   {0xFFF9, 0xFFFB},
    {0x110BD, 0x110BD}, {0x110CD, 0x110CD}, {0x13430, 0x1343F}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A},
    {0xE0001, 0xE0001}, {0xE0020, 0xE007F}};

// The blanks of all scripts, and what takes room or changes its neighbour without a mark of its own: fillers,
// joiners, variation selectors. Sorted.
constexpr CodeRange kInvisible[] = {{0x20, 0x20},      {0xA0, 0xA0},     {0x34F, 0x34F},   {0x115F, 0x1160},
                                    {0x1680, 0x1680},  {0x17B4, 0x17B5}, {0x180B, 0x180F}, {0x2000, 0x200A},
                                    {0x202F, 0x202F},  {0x205F, 0x205F}, {0x2800, 0x2800}, {0x3000, 0x3000},
                                    {0x3164, 0x3164},  {0xFE00, 0xFE0F}, {0xFFA0, 0xFFA0}, {0x1D159, 0x1D159},
                                    {0xE0100, 0xE01EF}};

template <std::size_t N>
bool standsIn(const CodeRange (&ranges)[N], std::uint32_t code) {
  const auto* found = std::ranges::upper_bound(ranges, code, {}, &CodeRange::first);
  return found != std::begin(ranges) && code <= std::prev(found)->last;
}

bool isSteering(std::uint32_t code) { return standsIn(kSteering, code); }
bool isInvisible(std::uint32_t code) { return standsIn(kInvisible, code) || isSteering(code); }

// Takes the first character off the text. Nothing when the text doesn't begin with one in its shortest UTF-8.
std::optional<std::uint32_t> takeCharacter(std::string_view& text) {
  constexpr std::uint32_t lowest[] = {0, 0x80, 0x800, 0x10000};
  if (text.empty()) return std::nullopt;
  const auto lead = static_cast<unsigned char>(text.front());
  if ((lead >= 0x80 && lead < 0xC0) || lead >= 0xF8) return std::nullopt;  // begins no character
  const std::size_t more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
  if (more >= text.size()) return std::nullopt;
  std::uint32_t code = more == 0 ? lead : lead & (0x3FU >> more);
  for (std::size_t i = 1; i <= more; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0U) != 0x80U) return std::nullopt;
    code = code << 6U | (next & 0x3FU);
  }
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < lowest[more] || code > 0x10FFFF || surrogate) return std::nullopt;
  text.remove_prefix(more + 1);
  return code;
}

}  // namespace

bool isBlankName(std::string_view name) {
  while (!name.empty()) {
    const auto code = takeCharacter(name);
    if (!code || !isInvisible(*code)) return false;
  }
  return true;
}

bool isUserName(std::string_view name) {
  if (isBlankName(name)) return false;
  for (std::string_view rest = name; !rest.empty();) {
    const auto code = takeCharacter(rest);
    if (!code || isSteering(*code)) return false;
  }
  return profileFile({}, name).stem().string().size() <= kLongestFileName;
}

}  // namespace lotmere
