// Composes the two lines of text at the lower left of the screen: which picture this is, what it shows, where, when.
//
// Threads: any; pure functions.
// Units:   degrees for positions.
// Errors:  none; a line without content is empty.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "imaging/Geocoder.h"

namespace lumivane {

// Which parts of its path name a picture on the screen.
struct FilenameDisplay {
  bool displayFilename = true;
  bool showImagePath = true;
  bool showFileExtension = true;
};

// The path as it is logged: a colon, which older file browsers show for a slash, is written as "\/".
[[nodiscard]] std::string loggedFilename(std::string_view path);
// What of a path is shown, colons written as in the log.
[[nodiscard]] std::string shownFilename(std::string_view path, const FilenameDisplay& display);

// The last component of a path without its extension.
[[nodiscard]] std::string baseName(std::string_view path);
// The path without its last component; without its extension.
[[nodiscard]] std::string folderPart(std::string_view path);
[[nodiscard]] std::string withoutExtension(std::string_view path);

// Characters with the codes 1 to 31 become blanks.
[[nodiscard]] std::string replaceNonPrintingChars(std::string text);
// Without white space at both ends.
[[nodiscard]] std::string trimmed(std::string_view text);

// Caption and keywords in one text; absent when there are none. A caption that only repeats the file's base name
// is left out.
[[nodiscard]] std::optional<std::string> imageDescription(std::string_view path,
                                                          const std::optional<std::string>& caption,
                                                          const std::optional<std::string>& keywords);
// "GPS: +11.58 +48.14": the longitude first, on purpose.
[[nodiscard]] std::string coordinatesText(double latitude, double longitude);

// "Munich, Germany", or the country alone where no town is known; "(null)" for a country that is missing.
[[nodiscard]] std::string placeName(const Placemark& place);

// Description, place and date, those that are there, with ". " between them.
[[nodiscard]] std::string informationLine(const std::optional<std::string>& description,
                                          const std::optional<std::string>& place,
                                          const std::optional<std::string>& date);

// What the text layer shows, from the kept lines and the state of the show.
struct ScreenTextState {
  bool muted = false;
  bool blank = false;
  bool paused = false;
  bool zoomPaused = false;
};
[[nodiscard]] std::string screenText(std::string_view firstLine, const std::optional<std::string>& infoLine,
                                     const ScreenTextState& state);

}  // namespace lumivane
