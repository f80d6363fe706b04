// What a failure of the machine or of the store is called in the person's language.
#pragma once

#include <exception>
#include <string>

namespace lotmere {

// One line without a line end: what failed, where and why. Everything that throws here rolled its change back,
// so the line may say that the data stand as they were.
[[nodiscard]] std::string failure_Text(const std::exception& failure);

}  // namespace lotmere
