#include "base/text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace lotmere {

std::string toFullWidth(std::string_view text) {
  std::string wide;
  wide.reserve(text.size() * 3);
  for (const char c : text) {
    if (c >= '0' && c <= '9') {
      // U+FF10 is EF BC 90 in UTF-8, and the ten digits follow one another.
      wide += "\xEF\xBC";
      wide += static_cast<char>(0x90 + (c - '0'));
    } else {
      wide += c;
    }
  }
  return wide;
}

std::string toFullWidth(std::int64_t number) { return toFullWidth(std::to_string(number)); }

std::string_view trim(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::int64_t leadingNumber(std::string_view text) {
  std::int64_t value = 0;
  int digits = 0;
  for (const char c : trim(text)) {
    if (c < '0' || c > '9' || ++digits > 10) break;
    value = value * 10 + (c - '0');
  }
  return value;
}

std::string plainDigits(std::string_view text) {
  constexpr std::string_view wide_blank = "\xE3\x80\x80";
  constexpr std::string_view wide_digit = "\xEF\xBC";  // and 90 to 99 behind it
  std::string plain;
  while (!text.empty()) {
    const auto third = text.size() > 2 ? static_cast<unsigned char>(text[2]) : 0U;
    const bool digit = text.starts_with(wide_digit) && third >= 0x90 && third <= 0x99;
    const bool blank = text.starts_with(wide_blank);
    plain += digit ? static_cast<char>('0' + (third - 0x90)) : blank ? ' ' : text.front();
    text.remove_prefix(digit || blank ? 3 : 1);
  }
  return std::string(trim(plain));
}

std::string halfWidth(std::string_view text) {
  constexpr std::string_view wide_blank = "\xE3\x80\x80";
  std::string plain;
  plain.reserve(text.size());
  while (!text.empty()) {
    const auto byte = [text](std::size_t at) {
      return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    // U+FF01 to U+FF3F are EF BC 81 to BF in UTF-8, U+FF40 to U+FF5E are EF BD 80 to 9E.
    const bool wide = byte(0) == 0xEF && ((byte(1) == 0xBC && byte(2) >= 0x81) ||
                                          (byte(1) == 0xBD && byte(2) >= 0x80 && byte(2) <= 0x9E));
    const bool blank = text.starts_with(wide_blank);
    const unsigned code = byte(1) == 0xBC ? byte(2) - 0x81 + '!' : byte(2) - 0x80 + '`';
    plain += wide ? static_cast<char>(code) : blank ? ' ' : text.front();
    text.remove_prefix(wide || blank ? 3 : 1);
  }
  return plain;
}

std::optional<std::int64_t> parseWhole(std::string_view text) {
  const std::string plain = plainDigits(text);
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
  if (error != std::errc{} || end != plain.data() + plain.size()) return std::nullopt;
  return value;
}

std::size_t countCharacters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string quoteTyped(std::string_view text, std::size_t longest) {
  std::string shown = "“";
  std::size_t characters = 0;
  for (const char c : text) {
    characters += countCharacters({&c, 1});
    if (characters > longest || shown.size() > 4 * longest) {  // the latter for what isn't UTF-8
      shown += "…";
      break;
    }
    const bool steers = static_cast<unsigned char>(c) < ' ' || c == '\x7F';
    shown += steers ? '?' : c;
  }
  return shown + "”";
}

std::string decodeText(std::string_view text, int mode, std::string_view key) {
  constexpr int shift = 5;
  constexpr std::size_t key_length = 8;
  if (mode == 0 && key.size() != key_length) return {};
  std::string result(text.rbegin(), text.rend());
  for (char& c : result) c = static_cast<char>(static_cast<unsigned char>(c) + (mode == 0 ? -shift : shift));
  return result;
}

}  // namespace lotmere
