// What can be done with a user besides logging in: passwords kept as hashes, a new password, removal.
//
// A password keeps users of one machine from taking each other's settings by mistake. It isn't a lock:
// whoever sits at the machine may set a new one or remove a user, and whoever reads the files of the home
// reads the settings.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.hpp"
#include "users/user_desk.hpp"
#include "users/user_table.hpp"

namespace lotmere {

// Tells an error; always refused.
Outcome refuseUser(const UserDesk& at, std::string_view text);

// Whether a typed password is that of the user's row. The guest's row has none and takes any.
[[nodiscard]] bool fits(const User& user, const std::string& password);

// Hashes every password that an older version kept as plain text, in one change; afterwards the plain text
// stands neither in the store nor in its journal nor in the backup, which is renewed. That it can't be
// renewed is told and fails nothing. Nothing happens where all are hashed.
void hashPlainPasswords(const UserDesk& at);

// Removes the profile files of users whose rows are gone. One that can't be removed is told and keeps nobody.
void removeProfiles(const UserDesk& at, const std::vector<std::string>& names);

// Sets a new password for a user. `before` is the old one as typed; without it, somebody forgot theirs, and
// the desk asks whether a new one is to be set all the same. Refused, with nothing changed: no such user, the
// guest, a wrong old password, an empty new one, or the question's answer.
[[nodiscard]] Outcome changePassword(const UserDesk& at, const std::string& name,
                                     const std::optional<std::string>& before, const std::string& after);

// Removes a user with their profile, after asking. Refused, with nothing changed: no such user, the guest,
// whoever is current, or the question's answer.
[[nodiscard]] Outcome removeUser(const UserDesk& at, const std::string& name);

}  // namespace lotmere
