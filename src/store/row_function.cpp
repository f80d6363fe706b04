#include "store/row_function.hpp"

#include <sqlite3.h>

#include <utility>

namespace lotmere {
namespace {

void answerEngine(sqlite3_context* context, int count, sqlite3_value** values) {
  auto& function = *static_cast<RowFunction*>(sqlite3_user_data(context));
  std::array<std::int32_t, RowFunction::kMostValues> numbers{};
  for (int i = 0; i < count; ++i) numbers.at(i) = sqlite3_value_int(values[i]);
  sqlite3_result_int(context, function.answer({numbers.data(), static_cast<std::size_t>(count)}));
  if (function.hasFailed()) sqlite3_result_error(context, "stopped by a failure", -1);
}

}  // namespace

RowFunction::RowFunction(Store& store, const char* name, std::size_t count, Answer answer)
    : store_(store), name_(name), count_(static_cast<int>(count)), answer_(std::move(answer)) {
  store_.db().createFunction(name_, count_, false, this, answerEngine);
}

RowFunction::~RowFunction() {
  sqlite3_create_function(store_.db().getHandle(), name_, count_, SQLITE_UTF8, nullptr, nullptr, nullptr,
                          nullptr);
}

int RowFunction::answer(std::span<const std::int32_t> values) noexcept {
  try {
    return answer_(values);
  } catch (...) {
    failure_ = std::current_exception();
    return 0;
  }
}

void RowFunction::execute(SQLite::Statement& statement) {
  try {
    while (statement.executeStep()) {
    }
  } catch (const SQLite::Exception&) {
    if (const auto failure = std::exchange(failure_, nullptr)) std::rethrow_exception(failure);
    throw;
  }
}

}  // namespace lotmere
