// What a list of draws looks like that the program can read, in the words of its dialogs.
#pragma once

#include <QString>

namespace lotmere::ui {

[[nodiscard]] inline QString listHint() {
  return QStringLiteral(
      "每行一期，有期号、开奖日期和七个号码，例如：\n2007001 2007-01-02 01 05 07 14 21 33 + 08");
}

}  // namespace lotmere::ui
