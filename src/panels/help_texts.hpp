// The fixed texts that explain the condition pages. Lines end in CR LF.
#pragma once

#include <string_view>

namespace lotmere {

// Beside the seven places.
extern const std::string_view kPlaceHelp;
// Beside the custom groups.
extern const std::string_view kGroupHelp;
// On the page of the match with past draws.
extern const std::string_view kMatchHelp;
// How the intervals are divided.
extern const std::string_view kDivisionHelp;

}  // namespace lotmere
