// What every program with the window needs once: language, fonts, look.
#pragma once

#include <QApplication>

#include "ui/look/theme.hpp"

namespace lotmere::ui {

// Chinese texts in standard dialogs, the icon, the appearance of the desktop. To be called before the first
// widget.
void setUpApplication(QApplication& application);

}  // namespace lotmere::ui
