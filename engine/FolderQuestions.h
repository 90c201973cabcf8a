// The questions for a folder that the user is asked: where the pictures are, and whether a folder behind a link may be
// included.
//
// Threads: main only.
// Errors:  none; a folder that nobody can be asked about is denied.
#pragma once

#include <optional>
#include <string>

#include "collection/MainThreadQuestion.h"
#include "platform/FolderChooser.h"

namespace lumivane {

// The dialog opens in the user's home folder, wherever the pictures are now; in the start folder only where there is
// no home.
[[nodiscard]] FolderQuestion folderQuestion(const std::optional<std::string>& startFolder, bool isAlias,
                                            const std::string& homeFolder);

// `chooser` may be nullptr: the answer is a denial, at once.
void askUserToOpenDirectory(FolderChooser* chooser, const FolderQuestion& question,
                            FolderChooser::Completion completion);

// The same question as a walk puts it: about the folder that a link leads to.
[[nodiscard]] MainThreadQuestion::Present aliasQuestions(FolderChooser* chooser, std::string homeFolder);

// The folder that is kept when the user chose this one. All that begins like the folder for temporary files counts as
// that folder, by the name that it has on the platform that the settings come from.
[[nodiscard]] std::string picturesFolderFor(const std::string& chosen);

// The folder by the name that is compared and kept; only the root ends in a slash.
[[nodiscard]] std::string withoutTrailingSlashes(std::string folder);

}  // namespace lumivane
