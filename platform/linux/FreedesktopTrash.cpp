#include "platform/linux/FreedesktopTrash.h"

#include <gio/gio.h>
#include <sys/stat.h>

#include <memory>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

struct ReleaseObject {
  void operator()(GFile* file) const { g_object_unref(file); }
};
using FileObject = std::unique_ptr<GFile, ReleaseObject>;

struct FreeError {
  void operator()(GError* error) const { g_error_free(error); }
};

// By its path and nothing else: GIO's default may be a module that takes some paths for addresses on the network.
FileObject localFile(const std::string& path) {
  return FileObject(g_vfs_get_file_for_path(g_vfs_get_local(), path.c_str()));
}

bool areTheSameFile(const char* onePath, const char* otherPath) {
  struct stat one {};
  struct stat other {};
  return ::lstat(onePath, &one) == 0 && ::lstat(otherPath, &other) == 0 && one.st_dev == other.st_dev &&
         one.st_ino == other.st_ino;
}

// GIO resolves "." and ".." and drops a last slash by the path's text alone, without following links.
bool isUnderstoodAs(const std::string& path, GFile* file) {
  const char* understood = g_file_peek_path(file);
  return understood != nullptr && (path == understood || areTheSameFile(path.c_str(), understood));
}

}  // namespace

Result<Done> FreedesktopTrash::trashItem(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos)
    return Error{printable(path) + ": no file's path"};
  const FileObject file = localFile(path);
  if (!isUnderstoodAs(path, file.get())) return Error{printable(path) + ": no such file by this path"};
  GError* error = nullptr;
  if (g_file_trash(file.get(), nullptr, &error) != FALSE) return Done{};
  const std::unique_ptr<GError, FreeError> owned(error);
  return Error{owned ? printable(owned->message) : printable(path) + ": could not be moved to the trash"};
}

}  // namespace lumivane
