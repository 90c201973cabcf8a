// Everything that the slideshow asks of the world around it, made in the order in which one thing stands on another.
//
// Threads: main only; made after QApplication.
// Owns:    all of it.
// Errors:  what cannot be made is logged, and the show does without it.
#pragma once

#include <optional>
#include <string>

#include "app/TimedDecoder.h"
#include "collection/albums/SqlitePhotoLibrary.h"
#include "collection/index/FolderFiles.h"
#include "collection/index/IndexQuery.h"
#include "engine/Host.h"
#include "imaging/places/OfflineGeocoder.h"
#include "imaging/process/ProcessDimensions.h"
#include "imaging/process/ProcessImageDecoder.h"
#include "platform/linux/DBusFileBrowser.h"
#include "platform/linux/DBusKeepAwake.h"
#include "platform/linux/DBusSleepNotes.h"
#include "platform/linux/DesktopWorkspace.h"
#include "platform/linux/DrmDisplayRegistry.h"
#include "platform/linux/Environment.h"
#include "platform/linux/FreedesktopTrash.h"
#include "platform/linux/MessageBus.h"
#include "platform/linux/PortalFolderChooser.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/ProcFreeMemory.h"
#include "platform/linux/QtApplication.h"
#include "platform/linux/QtDisplays.h"
#include "platform/linux/QtFolderChooser.h"
#include "platform/linux/QtMainLoop.h"
#include "platform/linux/QtTextRenderer.h"
#include "platform/linux/SealedMemory.h"
#include "platform/linux/SpawnedProgram.h"
#include "platform/linux/ThemeSounds.h"
#include "platform/linux/ThreadBoundedCalls.h"
#include "platform/linux/ThreadSerialQueues.h"
#include "platform/linux/index/TrackerIndex.h"
#include "settings/NamedDisplays.h"
#include "settings/sheet/QtConfigureSheet.h"
#include "settings/sheet/QtHelpPanel.h"

namespace lumivane {

class Desktop {
 public:
  // Dialogs lie over the window that the source names. `decoded` (may be absent) is told how long each picture took.
  Desktop(const Environment& environment, const Clock& clock, Log& log, const WindowSource& window,
          DecodeListener decoded = {});
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  [[nodiscard]] Host host();
  [[nodiscard]] QtMainLoop& mainLoop() { return mainLoop_; }
  [[nodiscard]] SleepNotes& sleepNotes() { return sleepNotes_; }
  [[nodiscard]] KeepAwake& keepAwake() { return keepAwake_; }
  [[nodiscard]] Application& application() { return application_; }
  [[nodiscard]] std::size_t decoderPeakMemoryBytes() const { return decoderPrograms_.peakMemoryBytes(); }

 private:
  const Clock& clock_;
  Log& log_;
  QtMainLoop mainLoop_;
  ThreadSerialQueues queues_;
  ThreadBoundedCalls boundedCalls_;
  QtApplication application_;

  // Files and what is kept in them
  PosixFiles files_;
  const UserFolders folders_;
  const std::string locale_;  // of file names and titles
  SettingsStore settings_;
  SqlitePhotoLibrary photoLibrary_;

  // Displays
  const QtDisplays windowSystemDisplays_;
  const DrmDisplayRegistry displayRegistry_;
  const NamedDisplays displays_;

  // Pictures
  SpawnedPrograms decoderPrograms_;
  SealedMemories pixelMemories_;
  DecoderProcesses decoderProcesses_;
  ProcessImageDecoder decoder_;
  std::optional<TimedDecoder> timedDecoder_;  // absent: nobody asks how long pictures take
  const Result<std::unique_ptr<OfflineGeocoder>> geocoder_;
  QtTextRenderer text_;
  TwisterRandom random_;
  ProcFreeMemory memory_;
  SharedTables tables_;

  // The search for them
  ProcessDimensions dimensions_;
  TrackerIndex desktopIndex_;
  FolderFiles folderFiles_;
  IndexQuery metadataQuery_;  // ends its threads before what they use

  // The desktop's services
  MessageBus sessionBus_;
  MessageBus systemBus_;
  DBusFileBrowser fileBrowser_;
  FreedesktopTrash trash_;
  ThemeSounds sounds_;
  DBusSleepNotes sleepNotes_;
  DBusKeepAwake keepAwake_;

  // Dialogs
  DesktopWorkspace workspace_;
  QtConfigureSheet configureSheet_;
  QtFolderChooser folderDialog_;
  PortalFolderChooser folderChooser_;
  QtHelpPanel helpPanel_;
};

}  // namespace lumivane
