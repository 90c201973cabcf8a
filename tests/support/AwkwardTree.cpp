#include "tests/support/AwkwardTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace lumivane {
namespace {

namespace fs = std::filesystem;

constexpr int kDeepFolders = 20;
constexpr std::size_t kDeepNameBytes = 200;
constexpr std::uintmax_t kSparseBytes = std::uintmax_t{4} << 30;

std::string longAsciiName() {
  std::string name(255, 'n');
  name.replace(251, 4, ".jpg");
  return name;
}

std::string longHiraganaName() {
  std::string name;
  for (int i = 0; i < 83; ++i) name += "\xE3\x81\x82";
  return name + "ab.jpg";
}

// Names at the top of the tree that are pictures and fit into a list.
std::vector<std::string> goodNames() {
  constexpr const char* kNames[] = {
      "caf\xC3\xA9.jpg",
      "cafe\xCC\x81.jpg",
      "\xF0\x9F\x8F\x94\xEF\xB8\x8F sunset "
      "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7.jpg",
      "two  spaces.jpg",
      "12:30:45 noon.jpg",
      "it's a \"test\" `name`.jpg",
      "$(touch PWNED);&|<>*?.jpg",
      "100% [0] {a,b} #1.jpg",
      "back\\slash.jpg",
      "tab\tbell\a.jpg",
      "-rf.jpg",
      "UPPER.JPG",
      "Mixed.JpEg",
      "dots..in...name.jpg",
      "vanishing.jpg"};
  std::vector<std::string> names(std::begin(kNames), std::end(kNames));
  names.resize(names.size() + 2);
  names[names.size() - 2] = longAsciiName();
  names[names.size() - 1] = longHiraganaName();
  return names;
}

std::vector<std::string> namesThatFitInNoList() {
  return {"line\nbreak.jpg", "latin1-\xE9t\xE9.jpg", "cut-\xF0\x9F\x98.jpg"};
}

std::vector<std::string> namesOfNoPictures() {
  return {" leading and trailing .jpg ", "\xE2\x80\xAEgpj.exe", ".hidden.jpg", "noext", "jpg", ".jpg"};
}

std::string bytesOf(const fs::path& file) {
  std::ostringstream bytes;
  bytes << std::ifstream(file, std::ios::binary).rdbuf();
  return bytes.str();
}

std::string bigEndian16(int value) {
  return {static_cast<char>(value >> 8), static_cast<char>(value & 0xFF)};
}

std::string segment(char marker, const std::string& content) {
  return std::string("\xFF") + marker + bigEndian16(static_cast<int>(content.size()) + 2) + content;
}

}  // namespace

std::string samplesFolder() {
  const char* const named = std::getenv("LUMIVANE_SAMPLES");
  const fs::path besides = fs::path(__FILE__).parent_path() / "../../../shared/samples";
  const fs::path folder = named != nullptr ? fs::path(named) : besides;
  std::error_code failure;
  const fs::path found = fs::canonical(folder, failure);
  return failure ? std::string() : found.string();
}

// Baseline, one component. Every 8 x 8 block is "no difference, no detail": with a Huffman table of one code of one
// bit each these are two zero bits, whatever the size.
std::string greyJpeg(int width, int height) {
  constexpr std::size_t kCommentBytes = 8192;
  const std::string oneCode = std::string("\1") + std::string(15, '\0') + std::string(1, '\0');
  const std::string frame =
      std::string("\x08") + bigEndian16(height) + bigEndian16(width) + "\x01\x01\x11" + '\0';
  const int blocks = ((width + 7) / 8) * ((height + 7) / 8);
  std::string scan(static_cast<std::size_t>(blocks) / 4, '\0');
  if (blocks % 4 != 0) scan += static_cast<char>(0xFF >> (2 * (blocks % 4)));
  return "\xFF\xD8" + segment('\xFE', std::string(kCommentBytes, ' ')) +
         segment('\xDB', std::string(1, '\0') + std::string(64, '\1')) + segment('\xC0', frame) +
         segment('\xC4', std::string(1, '\x00') + oneCode) +
         segment('\xC4', std::string(1, '\x10') + oneCode) +
         segment('\xDA', std::string("\x01\x01\x00\x00\x3F\x00", 6)) + scan + "\xFF\xD9";
}

AwkwardTree::AwkwardTree(std::string folder) : folder_(std::move(folder)) {
  const std::string samples = samplesFolder();
  if (!samples.empty()) picture_ = bytesOf(samples + "/photos/photos/wood_anemones.jpg");
  if (picture_.empty()) picture_ = greyJpeg(640, 480);
  makeNamedPictures();
  makeFoldersAndLinks();
  makeThingsThatAreNoPictures();
  makeDeepFolder();
}

void AwkwardTree::write(const std::string& name, const std::string& content) const {
  std::ofstream file(folder_ + "/" + name, std::ios::binary);
  file << content;
  if (!file.flush()) throw std::runtime_error("cannot write " + name);
}

void AwkwardTree::makeFolder(const std::string& name) const {
  fs::create_directories(folder_ + "/" + name);
}

void AwkwardTree::makeLink(const std::string& name, const std::string& target) const {
  fs::create_symlink(target, folder_ + "/" + name);
}

void AwkwardTree::makeNamedPictures() const {
  for (const auto& names : {goodNames(), namesThatFitInNoList(), namesOfNoPictures()}) {
    for (const std::string& name : names) write(name, picture_);
  }
  fs::create_hard_link(folder_ + "/caf\xC3\xA9.jpg", folder_ + "/same-inode.jpg");
  write("growing.jpg", picture_.substr(0, picture_.size() / 2));
  write("unreadable.jpg", picture_);
  fs::permissions(folder_ + "/unreadable.jpg", fs::perms::none);
}

void AwkwardTree::makeFoldersAndLinks() const {
  for (const char* const folder :
       {".hidden-folder", "visible", "self", "unreadable-folder", "listable-not-enterable",
        "folder-named.jpg", "Empty Library.photoslibrary/database",
        "Broken Library.photoslibrary/database"}) {
    makeFolder(folder);
  }
  for (const char* const name :
       {".hidden-folder/inside.jpg", "visible/with-nomedia.jpg", "unreadable-folder/inside.jpg",
        "listable-not-enterable/inside.jpg", "folder-named.jpg/real.jpg"}) {
    write(name, picture_);
  }
  write("visible/.nomedia", "");
  fs::permissions(folder_ + "/unreadable-folder", fs::perms::none);
  fs::permissions(folder_ + "/listable-not-enterable",
                  fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  makeLink("link-to-file.jpg", "caf\xC3\xA9.jpg");
  makeLink("link-to-folder", "visible");
  makeLink("dead-link.jpg", "gone/nowhere.jpg");
  makeLink("loop-a", "loop-b");
  makeLink("loop-b", "loop-a");
  makeLink("self/inside", "..");
  makeLink("self-parent", folder_);
  makeLink("device.jpg", "/dev/zero");
  const std::string library = samplesFolder() + "/libraries/Test-10.15.7.photoslibrary";
  if (!samplesFolder().empty() && fs::exists(library)) makeLink("Link Library.photoslibrary", library);
}

void AwkwardTree::makeThingsThatAreNoPictures() const {
  if (mkfifo((folder_ + "/pipe.jpg").c_str(), S_IRUSR | S_IWUSR) != 0) throw std::runtime_error("mkfifo");
  if (mknod((folder_ + "/socket.jpg").c_str(), S_IFSOCK | S_IRUSR, 0) != 0) throw std::runtime_error("mknod");
  write("empty.jpg", "");
  write("one-byte.png", "\x89");
  write("text.jpg", "This is not a picture.\n");
  write("sparse-4G.tif", "");
  fs::resize_file(folder_ + "/sparse-4G.tif", kSparseBytes);
  write("Not A Library.photoslibrary", "");
  write("Broken Library.photoslibrary/database/Photos.sqlite",
        std::string("SQLite format 3").append(4097, '\0'));
}

void AwkwardTree::makeDeepFolder() const {
  makeFolder("deep");
  int at = open((folder_ + "/deep").c_str(), O_DIRECTORY | O_CLOEXEC);
  const std::string name(kDeepNameBytes, 'd');
  for (int i = 0; i < kDeepFolders; ++i) {
    mkdirat(at, name.c_str(), S_IRWXU);
    const int next = openat(at, name.c_str(), O_DIRECTORY | O_CLOEXEC);
    close(at);
    at = next;
  }
  const int file = openat(at, "deepest.jpg", O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
  const ssize_t written = ::write(file, picture_.data(), picture_.size());
  close(file);
  close(at);
  if (written != static_cast<ssize_t>(picture_.size()))
    throw std::runtime_error("cannot write the deepest picture");
}

bool AwkwardTree::deepestIsReachable() const {
  const std::size_t length =
      folder_.size() + sizeof "/deep" - 1 + kDeepFolders * (kDeepNameBytes + 1) + sizeof "/deepest.jpg" - 1;
  return length < PATH_MAX;
}

std::vector<std::string> AwkwardTree::expectedPictures() const {
  std::vector<std::string> names = goodNames();
  names.insert(names.end(), {"same-inode.jpg", "growing.jpg", "unreadable.jpg", "visible/with-nomedia.jpg",
                             "folder-named.jpg/real.jpg", "one-byte.png", "text.jpg", "sparse-4G.tif"});
  const bool readsEverything = geteuid() == 0;
  if (readsEverything) {
    names.insert(names.end(), {"unreadable-folder/inside.jpg", "listable-not-enterable/inside.jpg"});
  }
  if (deepestIsReachable()) {
    std::string deepest = "deep";
    for (int i = 0; i < kDeepFolders; ++i) deepest.append(1, '/').append(kDeepNameBytes, 'd');
    names.push_back(deepest + "/deepest.jpg");
  }
  for (std::string& name : names) name = folder_ + "/" + name;
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> AwkwardTree::expectedLeftOut() const {
  std::vector<std::string> names = namesThatFitInNoList();
  if (!deepestIsReachable()) names.push_back(std::string("deep/").append(kDeepNameBytes, 'd'));
  return names;
}

std::vector<std::string> AwkwardTree::inventory() const {
  std::vector<std::string> lines;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
    struct stat status {};
    lstat(entry.path().c_str(), &status);
    lines.push_back(entry.path().string() + " " + std::to_string(status.st_mode) + " " +
                    std::to_string(status.st_size) + " " + std::to_string(status.st_mtim.tv_sec) + "." +
                    std::to_string(status.st_mtim.tv_nsec));
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

void AwkwardTree::finishGrowing() const {
  std::ofstream(folder_ + "/growing.jpg", std::ios::binary | std::ios::app)
      << picture_.substr(picture_.size() / 2);
}

void AwkwardTree::removeVanishing() const {
  fs::remove(folder_ + "/vanishing.jpg");
}

}  // namespace lumivane
