// An SQL function that answers from memory: a statement over many rows asks it about each, so that a row
// costs a step of one scan and not a statement of its own.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <span>

#include "store/store.hpp"

namespace lotmere {

class RowFunction {
 public:
  static constexpr std::size_t kMostValues = 16;
  // The whole numbers of one call. What it throws ends the statement and comes out of run() as it was thrown:
  // the engine is C and no exception may cross it.
  using Answer = std::function<int(std::span<const std::int32_t> values)>;

  // Makes the function known to the engine under `name`, with `count` values (up to kMostValues), for as long
  // as this object lives.
  RowFunction(Store& store, const char* name, std::size_t count, Answer answer);
  RowFunction(const RowFunction&) = delete;
  RowFunction& operator=(const RowFunction&) = delete;
  ~RowFunction();

  // Runs a statement that asks the function; result rows of its own are passed over.
  template <class... Values>
  void run(const char* sql, const Values&... values) {
    SQLite::Statement statement(store_.db(), sql);
    int place = 0;
    (statement.bind(++place, values), ...);
    execute(statement);
  }

  // One call by the engine.
  int answer(std::span<const std::int32_t> values) noexcept;
  [[nodiscard]] bool hasFailed() const { return failure_ != nullptr; }

 private:
  void execute(SQLite::Statement& statement);

  Store& store_;
  const char* name_;
  int count_;
  Answer answer_;
  std::exception_ptr failure_;
};

}  // namespace lotmere
