// Logging in, creating and switching users. In single-user mode none of this happens.
#pragma once

#include <string>
#include <string_view>

#include "core/dates.hpp"
#include "core/desk.hpp"
#include "core/home.hpp"
#include "core/platform.hpp"
#include "core/store.hpp"
#include "users/user_table.hpp"

namespace lotmere {

// What the operations of users work on.
struct UserDesk {
  Store& store;
  const Home& home;
  Desk& desk;
  Date today;
  FileSystem& files = real_Files();
};

struct Credentials {
  std::string name;
  std::string password;  // as typed; case matters
};

// The login button. Blanks around name and password are cut. An unknown name becomes a new user with the
// factory conditions, if the person says so; the guest needs no password. What stands against it is told, and
// nothing changes then.
//
// The settings of the session before are saved first; the new user's then take their place, idle users go, and
// all tickets are deleted, in one change. True: current_User() is the new one.
[[nodiscard]] bool log_In(const UserDesk& at, const Credentials& typed);

// Goes on with the session of the current user, or logs in when another one is current. An unknown name is
// refused: only a login makes users.
[[nodiscard]] bool resume_Session(const UserDesk& at, const Credentials& typed);

// Saves the settings of the current user to their profile; nothing to do for the guest or for nobody. False
// when the desk told that it can't be done.
[[nodiscard]] bool save_CurrentUser(const UserDesk& at);

// The end of a session: saved as above, and nobody is current afterwards.
[[nodiscard]] bool log_Out(const UserDesk& at);

// The exit of the program: asks, and logs out in multi-user mode. False: the program goes on and nothing was
// saved. Settings that can't be saved, which is told, stay current for the next start and don't keep anybody
// from leaving.
[[nodiscard]] bool exit_Program(const UserDesk& at);
// The same without the question, for a program that the system ends.
void leave_Program(const UserDesk& at);

// What the button for new users says.
[[nodiscard]] std::string new_UserText();

// The caption of the main window while a user is logged in.
[[nodiscard]] std::string user_Caption(std::string_view user, std::string_view main_caption);

}  // namespace lotmere
