#include "engine/FolderQuestions.h"

#include <string_view>
#include <utility>

namespace lumivane {
namespace {

std::string lastComponent(const std::string& folder) {
  const std::size_t end = folder.find_last_not_of('/');
  if (end == std::string::npos) return folder.empty() ? folder : "/";
  const std::size_t begin = folder.rfind('/', end) + 1;  // 0 when there is no slash
  return folder.substr(begin, end + 1 - begin);
}

PermissionAnswer permissionOf(const FolderAnswer& answer) {
  const bool usable = answer.response == kUserConfirmed && answer.folder.starts_with('/');
  if (usable) return {kUserConfirmed, answer.folder};
  return {answer.response == kUserConfirmed ? 0 : answer.response, {}};
}

}  // namespace

FolderQuestion folderQuestion(const std::optional<std::string>& startFolder, bool isAlias,
                              const std::string& homeFolder) {
  FolderQuestion question;
  question.startFolder = homeFolder.empty() ? startFolder.value_or(std::string()) : homeFolder;
  if (!isAlias) return question;
  question.message = "The scan encountered an alias pointing to folder \"" +
                     lastComponent(startFolder.value_or(std::string())) +
                     "\"\nClick Include if you want Lumivane to include this folder";
  question.confirmLabel = "Include";
  return question;
}

void askUserToOpenDirectory(FolderChooser* chooser, const FolderQuestion& question,
                            FolderChooser::Completion completion) {
  if (chooser == nullptr) {
    completion({});
  } else {
    chooser->choose(question, std::move(completion));
  }
}

MainThreadQuestion::Present aliasQuestions(FolderChooser* chooser, std::string homeFolder) {
  return [chooser, home = std::move(homeFolder)](const std::string& folder, MainThreadQuestion::Reply reply) {
    askUserToOpenDirectory(
        chooser, folderQuestion(folder, true, home),
        [reply = std::move(reply)](const FolderAnswer& answer) { reply(permissionOf(answer)); });
  };
}

std::string picturesFolderFor(const std::string& chosen) {
  constexpr std::string_view kTemporaryFolder = "/tmp";
  return chosen.starts_with(kTemporaryFolder) ? "/private/tmp" : chosen;
}

std::string withoutTrailingSlashes(std::string folder) {
  while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  return folder;
}

}  // namespace lumivane
