#include "collection/albums/ReadOnlyVfs.h"

#include <sqlite3.h>

#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace lumivane {
namespace {

constexpr int kLongestPath = 512;
constexpr int kSectorBytes = 4096;

// SQLite's file object: `base` first, since SQLite knows only that.
struct VfsFile {
  sqlite3_file base;
  const ReadOnlyFile* file;
};

const ReadOnlyFile& fileOf(sqlite3_file* base) {
  return *reinterpret_cast<VfsFile*>(base)->file;
}

const LibraryFiles& filesOf(sqlite3_vfs* vfs) {
  return static_cast<const ReadOnlyVfs*>(vfs->pAppData)->files();
}

sqlite3_vfs& systemVfs() {
  return *sqlite3_vfs_find(nullptr);
}

int closeFile(sqlite3_file*) {
  return SQLITE_OK;  // the files stay open for the next
}

int readFile(sqlite3_file* base, void* buffer, int bytes, sqlite3_int64 offset) {
  const auto wanted = static_cast<std::size_t>(bytes);
  const std::optional<std::size_t> done = fileOf(base).read(offset, static_cast<char*>(buffer), wanted);
  if (!done) return SQLITE_IOERR_READ;
  if (*done == wanted) return SQLITE_OK;
  std::memset(static_cast<char*>(buffer) + *done, 0, wanted - *done);
  return SQLITE_IOERR_SHORT_READ;
}

int fileSize(sqlite3_file* base, sqlite3_int64* size) {
  const std::optional<std::int64_t> bytes = fileOf(base).size();
  *size = bytes.value_or(0);
  return bytes ? SQLITE_OK : SQLITE_IOERR_FSTAT;
}

int refuseWriting(sqlite3_file*, const void*, int, sqlite3_int64) {
  return SQLITE_READONLY;
}

int refuseTruncating(sqlite3_file*, sqlite3_int64) {
  return SQLITE_READONLY;
}

// The reader's lock is held for as long as the files are open; SQLite asks for more than that only to keep an index
// of the log to itself, which it does.
int lockNothing(sqlite3_file*, int) {
  return SQLITE_OK;
}

int nothingToSync(sqlite3_file*, int) {
  return SQLITE_OK;
}

int nobodyReserved(sqlite3_file*, int* reserved) {
  *reserved = 0;
  return SQLITE_OK;
}

int noControl(sqlite3_file*, int, void*) {
  return SQLITE_NOTFOUND;
}

int sectorSize(sqlite3_file*) {
  return kSectorBytes;
}

int noSpecialDevice(sqlite3_file*) {
  return 0;
}

// Version 1: without the calls for shared memory and mapped files, SQLite uses neither.
constexpr sqlite3_io_methods kMethods = {.iVersion = 1,
                                         .xClose = closeFile,
                                         .xRead = readFile,
                                         .xWrite = refuseWriting,
                                         .xTruncate = refuseTruncating,
                                         .xSync = nothingToSync,
                                         .xFileSize = fileSize,
                                         .xLock = lockNothing,
                                         .xUnlock = lockNothing,
                                         .xCheckReservedLock = nobodyReserved,
                                         .xFileControl = noControl,
                                         .xSectorSize = sectorSize,
                                         .xDeviceCharacteristics = noSpecialDevice,
                                         .xShmMap = nullptr,
                                         .xShmLock = nullptr,
                                         .xShmBarrier = nullptr,
                                         .xShmUnmap = nullptr,
                                         .xFetch = nullptr,
                                         .xUnfetch = nullptr};

const ReadOnlyFile* fileFor(const LibraryFiles& files, int flags) {
  if ((flags & SQLITE_OPEN_MAIN_DB) != 0) return &files.database();
  if ((flags & SQLITE_OPEN_WAL) != 0) return &files.writeAheadLog();
  if ((flags & SQLITE_OPEN_MAIN_JOURNAL) != 0) return &files.journal();
  return nullptr;  // temporary files: everything that is sorted or kept aside stays in memory
}

int openFile(sqlite3_vfs* vfs, const char*, sqlite3_file* base, int flags, int* openedWith) {
  base->pMethods = nullptr;
  const ReadOnlyFile* file = fileFor(filesOf(vfs), flags);
  if (file == nullptr) return SQLITE_CANTOPEN;
  auto* opened = new (base) VfsFile{};
  opened->base.pMethods = &kMethods;
  opened->file = file;
  constexpr int kWriting = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  if (openedWith != nullptr) *openedWith = (flags & ~kWriting) | SQLITE_OPEN_READONLY;
  return SQLITE_OK;
}

int refuseDeleting(sqlite3_vfs*, const char*, int) {
  return SQLITE_READONLY;
}

int access(sqlite3_vfs* vfs, const char* path, int how, int* result) {
  const std::string_view name = path;
  const LibraryFiles& files = filesOf(vfs);
  const bool isThere = name.ends_with("-wal")       ? files.writeAheadLog().isThere()
                       : name.ends_with("-journal") ? files.journal().isThere()
                                                    : false;
  *result = isThere && how != SQLITE_ACCESS_READWRITE ? 1 : 0;
  return SQLITE_OK;
}

int fullPathname(sqlite3_vfs*, const char* name, int bytes, char* path) {
  sqlite3_snprintf(bytes, path, "%s", name);
  return SQLITE_OK;
}

int randomness(sqlite3_vfs*, int bytes, char* buffer) {
  return systemVfs().xRandomness(&systemVfs(), bytes, buffer);
}

int sleepNever(sqlite3_vfs*, int) {
  return 0;
}

int currentTime(sqlite3_vfs*, double* julianDay) {
  *julianDay = 0;  // nothing that is asked of a library depends on the time
  return SQLITE_OK;
}

int lastError(sqlite3_vfs*, int, char*) {
  return 0;
}

}  // namespace

ReadOnlyVfs::ReadOnlyVfs(LibraryFiles files) : files_(std::move(files)), vfs_(new sqlite3_vfs{}) {
  // A name that no other object has at the same time.
  name_ = "lumivane-" + std::to_string(reinterpret_cast<std::uintptr_t>(this));
  sqlite3_initialize();
  vfs_->iVersion = 1;
  vfs_->szOsFile = sizeof(VfsFile);
  vfs_->mxPathname = kLongestPath;
  vfs_->zName = name_.c_str();
  vfs_->pAppData = this;
  vfs_->xOpen = openFile;
  vfs_->xDelete = refuseDeleting;
  vfs_->xAccess = access;
  vfs_->xFullPathname = fullPathname;
  vfs_->xRandomness = randomness;
  vfs_->xSleep = sleepNever;
  vfs_->xCurrentTime = currentTime;
  vfs_->xGetLastError = lastError;
  sqlite3_vfs_register(vfs_.get(), 0);
}

ReadOnlyVfs::~ReadOnlyVfs() {
  sqlite3_vfs_unregister(vfs_.get());
}

}  // namespace lumivane
