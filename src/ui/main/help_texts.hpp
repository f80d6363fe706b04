// The longer texts that the window shows for reading.
#pragma once

#include <QString>

namespace lotmere::ui {

[[nodiscard]] QString stepsText();        // the five steps of the work (`Text_BZ`)
[[nodiscard]] QString rulesText();        // the rules of the game (`Text_yxgz`)
[[nodiscard]] QString definitionsText();  // the words of the game (`Text_dingyi`)

}  // namespace lotmere::ui
