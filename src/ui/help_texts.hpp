// The longer texts that the window shows for reading.
#pragma once

#include <QString>

namespace lotmere::ui {

[[nodiscard]] QString steps_Text();        // the five steps of the work (`Text_BZ`)
[[nodiscard]] QString rules_Text();        // the rules of the game (`Text_yxgz`)
[[nodiscard]] QString division_Text();     // how the intervals are divided (`Text_FenQuTip`)
[[nodiscard]] QString definitions_Text();  // the words of the game (`Text_dingyi`)

}  // namespace lotmere::ui
