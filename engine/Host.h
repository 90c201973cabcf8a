// Everything that the view asks of the world around it: the one way in which it reaches a clock, a file or a screen.
//
// Threads: main only; what may be used from elsewhere says so in its own header.
// Owns:    nothing; all that it refers to outlives the view.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "collection/albums/PhotoLibrary.h"
#include "imaging/Geocoder.h"
#include "imaging/ImageDecoder.h"
#include "imaging/TextRenderer.h"
#include "platform/Application.h"
#include "platform/BoundedCalls.h"
#include "platform/Clock.h"
#include "platform/Displays.h"
#include "platform/FileBrowser.h"
#include "platform/Files.h"
#include "platform/FolderChooser.h"
#include "platform/FreeMemory.h"
#include "platform/HelpPanel.h"
#include "platform/Log.h"
#include "platform/MainLoop.h"
#include "platform/MetadataQuery.h"
#include "platform/RandomSource.h"
#include "platform/SerialQueue.h"
#include "platform/Sounds.h"
#include "platform/Trash.h"
#include "platform/UserFolders.h"
#include "platform/Window.h"
#include "platform/Workspace.h"
#include "settings/ConfigureSheet.h"
#include "settings/SettingsStore.h"

namespace lumivane {

// What all views of one process share.
struct SharedTables {
  // A key handled by one view is left here for every other display, whose view plays it back.
  std::map<DisplayNumber, KeyEvent> pendingKeyEventsByDisplay;
  // The path of the picture that each display shows now.
  std::map<DisplayNumber, std::string> shownFileByDisplay;
};

struct ProgramVersion {
  std::string shortVersion;  // empty = not known
  std::string build;         // empty = not known
};

struct SystemVersion {
  long majorNumber = 0;
  long minorNumber = 0;
  long patchNumber = 0;
};

// Whether the user lets us read the photo library.
enum class PhotosAuthorization { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3 };

struct Host {
  const Clock& clock;
  MainLoop& mainLoop;
  SerialQueues& queues;
  Log& log;
  const Displays& displays;
  SettingsStore& settings;
  Files& files;
  ImageDecoder& decoder;  // used on the prefetch queue as well
  RandomSource& random;
  const FreeMemory& memory;
  const TextRenderer& text;
  Geocoder* geocoder;  // nullptr: there is none, and pictures keep their coordinates
  Application& application;
  FileBrowser& fileBrowser;
  Trash& trash;  // used on a queue of its own
  Sounds& sounds;
  SharedTables& tables;
  UserFolders folders;  // an empty data folder: there is no application-support folder
  ProgramVersion programVersion;
  SystemVersion systemVersion;
  PhotosAuthorization photosAuthorization = PhotosAuthorization::Authorized;
  // What a show can do without; nullptr: there is none.
  ConfigureSheet* configureSheet = nullptr;    // then nothing can be set, and no scan can be asked for
  FolderChooser* folderChooser = nullptr;      // then every question for a folder is answered with no
  HelpPanel* helpPanel = nullptr;              // then no help is shown
  Workspace* workspace = nullptr;              // then no link opens
  MetadataQuery* metadataQuery = nullptr;      // then folders are walked instead
  const PhotoLibrary* photoLibrary = nullptr;  // then there are no albums; read on a background queue
  BoundedCalls* boundedCalls = nullptr;        // then even a disk that hangs is waited for
  std::string collationLocale{};               // of file names, as FileNameOrder.h says
};

}  // namespace lumivane
