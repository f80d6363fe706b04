// What most tests start from.
#pragma once

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/desk_script.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {

// A fresh store and a desk without a script.
class StoreTest : public testing::Test {
 protected:
  TempHome home_;
  Store& store_ = home_.store();
  ScriptedDesk desk_;
};

// What `work` returns, or an empty value where it fails with std::runtime_error.
auto valueOrNothing(auto work) -> decltype(work()) {
  try {
    return work();
  } catch (const std::runtime_error&) {
    return {};
  }
}

}  // namespace lotmere::test
