// A photo library that a test makes, as small as it may be and as strange as the test wants it.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;

namespace lumivane {

// The names that a release of the library's application gives.
struct LibraryKind {
  std::string assetTable = "ZASSET";
  int albumEntity = 28;
  int assetEntity = 3;
  int keywordEntity = 40;
  int modelVersion = 16320;
};

struct MadeAlbum {
  int key = 0;
  std::string title{};
  int position = 0;
  int kind = 2;
  int parent = 2;  // the root folder
  int trashed = 0;
  int sortKey = 0;
  int ascending = 1;
};

struct MadeAsset {
  int key = 0;
  std::string fileName{};
  std::string directory = "A";
  int kind = 0;
  int hidden = 0;
  int trashed = 0;
  int visibility = 0;
  int savedAssetType = 3;
  std::optional<double> date{};
  std::string title{};
  std::string caption{};
  std::vector<std::string> keywords{};
  std::string reverseLocation{};
  std::string momentTitle{};
  bool hasFile = true;
};

class MadeLibrary {
 public:
  // Makes the package's folders and a database with empty tables, a root folder among them.
  explicit MadeLibrary(std::string package, LibraryKind kind = {});
  ~MadeLibrary();
  MadeLibrary(const MadeLibrary&) = delete;
  MadeLibrary& operator=(const MadeLibrary&) = delete;

  [[nodiscard]] const std::string& package() const { return package_; }
  [[nodiscard]] std::string databasePath() const { return package_ + "/database/Photos.sqlite"; }
  [[nodiscard]] std::string memberTable() const;

  void addAlbum(const MadeAlbum& album);
  void addAsset(const MadeAsset& asset);
  // Puts the asset into the album, after those that it has.
  void put(int asset, int album);
  void run(const std::string& sql);
  void run(const std::string& sql, const std::string& blob);

  // From now on what is written stays in the write-ahead log, also after close().
  void writeAhead();
  void checkpoint() { run("PRAGMA wal_checkpoint(TRUNCATE)"); }
  // Lets go of the database; what is in the log stays there.
  void close();

 private:
  void makeTables();

  const std::string package_;
  const LibraryKind kind_;
  sqlite3* connection_ = nullptr;
  int members_ = 0;
  std::map<std::string, int> keywords_;
};

// Every file and folder of a package with its size, content, mode and times: what reading may not change.
[[nodiscard]] std::map<std::string, std::string> inventoryOf(const std::string& package);

}  // namespace lumivane
