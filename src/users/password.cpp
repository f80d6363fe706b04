#include "users/password.hpp"

#include <sodium.h>

#include <array>
#include <cerrno>
#include <stdexcept>

namespace lotmere {
namespace {

[[noreturn]] void fail() { throw std::runtime_error("内存不足，无法核对密码。"); }

void makeReady() {
  static const bool ready = sodium_init() >= 0;
  if (!ready) throw std::runtime_error("系统的随机数不能使用，无法保护密码。");
}

}  // namespace

HashLimits HashLimits::interactive() {
  return {crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE};
}

HashLimits HashLimits::lowest() { return {crypto_pwhash_OPSLIMIT_MIN, crypto_pwhash_MEMLIMIT_MIN}; }

std::string hashPassword(std::string_view password, HashLimits limits) {
  makeReady();
  std::array<char, crypto_pwhash_STRBYTES> hash{};
  if (crypto_pwhash_str_alg(hash.data(), password.data(), password.size(), limits.passes, limits.memory,
                            crypto_pwhash_ALG_ARGON2ID13) != 0)
    fail();
  return hash.data();
}

bool isHashOf(const std::string& hash, std::string_view password) {
  makeReady();
  errno = 0;
  if (crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0) return true;
  if (errno == ENOMEM) fail();
  return false;
}

}  // namespace lotmere
