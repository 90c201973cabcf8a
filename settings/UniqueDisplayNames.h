// Tells displays of the same name apart.
//
// Threads: any; a pure function.
// Errors:  none.
#pragma once

#include <string>
#include <vector>

#include "platform/Displays.h"

namespace lumivane {

// Every name that occurs more than once gets "_" and its display's number appended, the first one too: A, B, A with
// the numbers 5, 6, 7 become A_5, B, A_7. A name that has its suffix no longer matches later ones. Should a suffix
// make a name equal to what another display is really called, those two are told apart in the same manner, so that
// no two displays ever share their files.
// Requires: as many numbers as names, no two alike.
void makeNamesUnique(std::vector<std::string>& names, const std::vector<DisplayNumber>& numbers);

}  // namespace lumivane
