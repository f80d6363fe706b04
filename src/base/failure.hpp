// What a failure of the machine or of the store is called in the user's language, and which file it speaks
// of.
#pragma once

#include <SQLiteCpp/Exception.h>

#include <exception>
#include <filesystem>
#include <string>
#include <utility>

namespace lotmere {

// A failure of the engine that knows its file. One without a file speaks of the open store.
class StoreFailure : public SQLite::Exception {
 public:
  StoreFailure(std::filesystem::path file, const SQLite::Exception& failure)
      : SQLite::Exception(failure), file_(std::move(file)) {}
  [[nodiscard]] const std::filesystem::path& file() const { return file_; }

 private:
  std::filesystem::path file_;
};

// Works on a database file; a failure of the engine leaves with the name of that file, or of the one that an
// inner call gave it.
template <class Work>
decltype(auto) workOn(const std::filesystem::path& file, Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (const StoreFailure&) {
    throw;
  } catch (const SQLite::Exception& failure) {
    throw StoreFailure(file, failure);
  }
}

// One line without a line end: what failed, in which file and why. Everything that throws here rolled its
// change back, so the line may say that the data stand as they were.
[[nodiscard]] std::string failureText(const std::exception& failure);

}  // namespace lotmere
