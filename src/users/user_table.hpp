// Who uses the program: the mode, the users' rows, and whose settings the working tables hold.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/dates.hpp"
#include "store/store.hpp"

namespace lotmere {

// The guest: never asked for a password, never removed, nothing saved for it.
inline constexpr std::string_view kGuest = "临时用户";

// A user who hasn't logged in for so many days or more is removed by the next login.
inline constexpr int kIdleDays = 30;

enum class UserMode : int { unchosen = 0, single = 1, multi = 2 };
[[nodiscard]] UserMode userMode(Store& store);
// Answers the question of the first run. The mode is chosen once in the life of a store: false, with nothing
// written, when another one was chosen before.
[[nodiscard]] bool chooseUserMode(Store& store, UserMode mode);

// The text of the first-run question.
[[nodiscard]] std::string userModeText();

struct User {
  std::string name;
  std::string password;            // a hash, or what was typed where `plain`
  bool plain = false;              // kept by an older version; the look of the text says nothing
  std::optional<Date> last_login;  // nothing before the first one
};
// By name, ascending.
[[nodiscard]] std::vector<User> allUsers(Store& store);
[[nodiscard]] std::optional<User> findUser(Store& store, std::string_view name);
// A user whose name is new, with the hash of their password (see users/password.hpp); empty for the guest.
void addUser(Store& store, std::string_view name, const std::string& hash);
// Puts a hash in the place of what the row of a user held; nothing happens without such a row.
void setPassword(Store& store, std::string_view name, const std::string& hash);
void deleteUser(Store& store, std::string_view name);

// The day of the last login becomes today; it never moves backwards, whatever the machine's clock says.
void renewLogin(Store& store, std::string_view name, Date today);

// Removes the rows of all idle users but the guest, and gives their names. Nobody is removed by a day that
// may be a wrong clock's: where no draw is stored, where the newest draw or any login lies after it, or where
// the newest draw lies more than a year before it.
std::vector<std::string> removeIdleUsers(Store& store, Date today);

// Whose settings stand in the working tables (`CurrentUser`); empty when that is nobody: in single-user mode,
// before the first login and after an exit. It outlives the process, so that the settings of a session that
// was cut short are saved before somebody else's take their place.
[[nodiscard]] std::string currentUser(Store& store);
void setCurrentUser(Store& store, std::string_view name);

}  // namespace lotmere
