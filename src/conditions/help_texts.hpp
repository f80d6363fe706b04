// The fixed texts that explain the condition pages. Lines end in CR LF.
#pragma once

#include <string_view>

namespace lotmere {

// Tool tips of the two temperature lists.
// Beside the seven places (`Text_dingweiTip`).
extern const std::string_view kPlaceHelp;
// Beside the custom groups (`Text_ZDYhelp`).
extern const std::string_view kGroupHelp;
// On the page of the match with past draws.
extern const std::string_view kMatchHelp;

}  // namespace lotmere
