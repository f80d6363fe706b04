// What the operations of users work on.
#pragma once

#include <string>

#include "base/dates.hpp"
#include "base/desk.hpp"
#include "base/platform.hpp"
#include "start/home.hpp"
#include "store/store.hpp"
#include "users/password.hpp"

namespace lotmere {

struct UserDesk {
  Store& store;
  const Home& home;
  Desk& desk;
  Date today;
  FileSystem& files = realFiles();
  HashLimits limits = HashLimits::interactive();  // of the hashes that are made
};

struct Credentials {
  std::string name;
  std::string password;  // as typed; case matters
};

}  // namespace lotmere
