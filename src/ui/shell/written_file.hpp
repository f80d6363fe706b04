// Where a file that the user asked for is written, and what is told of it behind that.
#pragma once

#include <QString>

#include "ui/shell/window_desk.hpp"

namespace lotmere::ui {

// A file that the user names to be written, in the folder used last; one that stands there is asked about.
// Empty when the user cancels.
[[nodiscard]] QString chooseTarget(WindowDesk& desk, const QString& title, const QString& filter,
                                   const QString& proposed);
// Says in the status line that it is written, and offers to open it with the desktop's program.
void tellWritten(WindowDesk& desk, const QString& done, const QString& path);

}  // namespace lotmere::ui
