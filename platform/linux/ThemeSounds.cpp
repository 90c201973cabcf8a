#include "platform/linux/ThemeSounds.h"

#include <canberra.h>
#include <dlfcn.h>
#include <link.h>

#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace lumivane {
namespace {

using EventNames = std::span<const char* const>;

// Names of the freedesktop sound naming list, the best one first; a theme seldom has them all. After "a-b-c" the
// library itself looks for "a-b" and "a".
EventNames eventNames(Sound sound) {
  // What desktops let the user choose as the alert sound. "dialog-error" is longer and tells of a dialog.
  static constexpr const char* kFunk[] = {"bell-window-system", "dialog-error"};
  // Debian's theme has the last one only.
  static constexpr const char* kDragToTrash[] = {"file-trash", "item-deleted", "trash-empty"};
  return sound == Sound::Funk ? EventNames(kFunk) : EventNames(kDragToTrash);
}

// By this number the library knows whether the sound still plays.
std::uint32_t numberOf(Sound sound) {
  return static_cast<std::uint32_t>(sound) + 1;
}

int addDriver(dl_phdr_info* loaded, std::size_t /*size*/, void* drivers) {
  const std::string_view path = loaded->dlpi_name;
  if (path.substr(path.rfind('/') + 1).starts_with("libcanberra-"))
    static_cast<std::vector<std::string>*>(drivers)->emplace_back(path);
  return 0;
}

// When the connection is closed, the library unloads its driver: with ALSA under the feet of threads that play and
// have only been told to end. So a driver that was loaded once stays in memory.
void keepDriversLoaded() {
  std::vector<std::string> drivers;
  dl_iterate_phdr(addDriver, &drivers);
  for (const std::string& driver : drivers) {
    if (void* handle = dlopen(driver.c_str(), RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE)) dlclose(handle);
  }
}

}  // namespace

void ThemeSounds::CloseConnection::operator()(ca_context* connection) const {
  ca_context_destroy(connection);
}

ThemeSounds::ThemeSounds(SerialQueues& queues, MainLoop& mainLoop, SoundOutput output)
    : mainLoop_(mainLoop), output_(std::move(output)), queue_(queues.make("LumivaneSoundQueue")) {}

ThemeSounds::~ThemeSounds() = default;

void ThemeSounds::play(Sound sound, OnFailure onFailure) {
  queue_->async([this, sound, onFailure = std::move(onFailure)] {
    const int error = start(sound);
    if (error == CA_SUCCESS || !onFailure) return;
    std::string reason = std::string(eventNames(sound).front()) + ": " + ca_strerror(error);
    mainLoop_.post([onFailure, reason = std::move(reason)] { onFailure(reason); });
  });
}

// Without the library's call at the end of a sound: with ALSA it can come twice when the connection is closed meanwhile.
int ThemeSounds::start(Sound sound) {
  if (const int error = connect(); error != CA_SUCCESS) return error;
  int playing = 0;
  if (ca_context_playing(connection_.get(), numberOf(sound), &playing) == CA_SUCCESS && playing != 0)
    return CA_SUCCESS;
  int error = CA_ERROR_NOTFOUND;
  for (const char* name : eventNames(sound)) {
    error = ca_context_play(connection_.get(), numberOf(sound), CA_PROP_EVENT_ID, name, nullptr);
    if (error != CA_ERROR_NOTFOUND) break;
  }
  return error;
}

// After a failure the next sound tries again: a sound system may come later.
int ThemeSounds::connect() {
  if (connection_) return CA_SUCCESS;
  ca_context* created = nullptr;
  if (const int error = ca_context_create(&created); error != CA_SUCCESS) return error;
  Connection connection(created);
  ca_context_change_props(created, CA_PROP_APPLICATION_NAME, "Lumivane", CA_PROP_APPLICATION_ID,
                          "de.orvik.LumivaneApp", CA_PROP_APPLICATION_ICON_NAME, "de.orvik.LumivaneApp",
                          nullptr);
  if (!output_.driver.empty()) ca_context_set_driver(created, output_.driver.c_str());
  if (!output_.device.empty()) ca_context_change_device(created, output_.device.c_str());
  if (const int error = ca_context_open(created); error != CA_SUCCESS) return error;
  keepDriversLoaded();
  connection_ = std::move(connection);
  return CA_SUCCESS;
}

}  // namespace lumivane
