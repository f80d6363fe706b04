// Logging in, creating and switching users. In single-user mode none of this happens.
#pragma once

#include <string>
#include <string_view>

#include "base/outcome.hpp"
#include "users/user_desk.hpp"
#include "users/user_table.hpp"

namespace lotmere {

// What becomes of a name that nobody has: only somebody who said so makes a user, a slip doesn't.
enum class NewUser { refused, asked, made };

// The login button. Blanks around name and password are cut. The guest needs no password; an unknown name
// becomes a new user with the factory conditions, as far as `new_user` lets it. Asked before anything
// changes:
//
//   - whether to take the settings of a profile that lies there under a new user's name already; on no its
//     file is kept under a free name (NAME.uLotmere.old, .old2, ...);
//   - whether to empty the tickets that stand, which belong to whoever made them.
//
// What stands against the login is told, and nothing changes then. The settings of the session before are
// saved and passwords of an older version hashed (see hashPlainPasswords); the new user's settings then take
// their place, idle users go, and all tickets are deleted, in one change. Done: currentUser() is the new one.
[[nodiscard]] Outcome logIn(const UserDesk& at, const Credentials& typed,
                            NewUser new_user = NewUser::refused);

// Goes on with the session of the current user, tickets and all, or logs in as above when another one is
// current.
[[nodiscard]] Outcome resumeSession(const UserDesk& at, const Credentials& typed);

// Saves the settings of the current user to their profile; nothing to do for the guest or for nobody.
// Refused when the desk told that it can't be done.
[[nodiscard]] Outcome saveCurrentUser(const UserDesk& at);

// The end of a session: saved as above, and nobody is current afterwards.
[[nodiscard]] Outcome logOut(const UserDesk& at);

// What is asked before the program ends.
inline constexpr std::string_view kExitQuestion = "确认要退出吗？";

// The exit of the program: asks, and logs out in multi-user mode. Refused: the program goes on and nothing
// was saved. Settings that can't be saved, which is told, stay current for the next start and don't keep
// anybody from leaving.
[[nodiscard]] Outcome exitProgram(const UserDesk& at);
// The same without the question, for a program that the system ends.
void leaveProgram(const UserDesk& at);

// What the button for new users says.
[[nodiscard]] std::string newUserText();

// The caption of the main window while a user is logged in.
[[nodiscard]] std::string userCaption(std::string_view user, std::string_view main_caption);

}  // namespace lotmere
