// The longer texts that the window shows for reading.
#pragma once

#include <QString>

namespace lotmere::ui {

[[nodiscard]] QString stepsText();        // the five steps of the work
[[nodiscard]] QString rulesText();        // the rules of the game
[[nodiscard]] QString definitionsText();  // the words of the game

}  // namespace lotmere::ui
