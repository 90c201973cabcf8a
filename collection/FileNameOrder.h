// Sorts paths the way a file browser lists them: case aside, numbers by their value, letters as the user's language
// has them.
//
// Threads: any; pure functions.
// Units:   the locale as ICU names it ("de_DE", "en_US"); empty = the root order of Unicode.
// Errors:  none; where no order for a language can be had, bytes decide.
#pragma once

#include <string>
#include <vector>

namespace lumivane {

// Paths are compared folder by folder, so that what lies in one folder stays together and "/a" with all its
// content comes before "/a b": a slash comes before every other character. Case and accents decide only between
// names that are equal otherwise, and bytes between those that the language holds for equal.
void sortByFileName(std::vector<std::string>& paths, const std::string& locale);

}  // namespace lumivane
