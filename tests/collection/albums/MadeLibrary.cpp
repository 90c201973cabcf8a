#include "tests/collection/albums/MadeLibrary.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace lumivane {
namespace {

namespace fs = std::filesystem;

// A text for SQL, or NULL for none.
std::string quoted(const std::string& text) {
  if (text.empty()) return "NULL";
  std::string sql = "'";
  for (const char c : text) sql.append(c == '\'' ? 2 : 1, c);
  return sql + "'";
}

std::string list(std::initializer_list<std::string> values) {
  std::string sql;
  for (const std::string& value : values) sql.append(sql.empty() ? "" : ", ").append(value);
  return sql;
}

std::string number(int value) {
  return std::to_string(value);
}

std::string metadata(int modelVersion) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist "
         "version=\"1.0\"><dict><key>PLModelVersion</key><integer>" +
         number(modelVersion) + "</integer></dict></plist>";
}

std::string describe(const fs::path& path) {
  struct stat status {};
  lstat(path.c_str(), &status);
  std::ostringstream text;
  text << status.st_ino << ' ' << status.st_mode << ' ' << status.st_size << ' ' << status.st_mtim.tv_sec
       << '.' << status.st_mtim.tv_nsec << ' ' << status.st_ctim.tv_sec << '.' << status.st_ctim.tv_nsec;
  if (S_ISREG(status.st_mode)) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    text << ' ' << std::hash<std::string>()(content.str());
  }
  return text.str();
}

}  // namespace

MadeLibrary::MadeLibrary(std::string package, LibraryKind kind)
    : package_(std::move(package)), kind_(std::move(kind)) {
  fs::create_directories(package_ + "/database");
  fs::create_directories(package_ + "/originals");
  sqlite3_open(databasePath().c_str(), &connection_);
  makeTables();
}

MadeLibrary::~MadeLibrary() {
  close();
}

std::string MadeLibrary::memberTable() const {
  return "Z_" + number(kind_.albumEntity) + "ASSETS";
}

void MadeLibrary::makeTables() {
  const std::string asset = number(kind_.assetEntity);
  run("PRAGMA synchronous = OFF");
  run("CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR, Z_PLIST BLOB)");
  run("INSERT INTO Z_METADATA VALUES (1, 'U', ?1)", metadata(kind_.modelVersion));
  run("CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX "
      "INTEGER)");
  run("INSERT INTO Z_PRIMARYKEY (Z_ENT, Z_NAME) VALUES (" + number(kind_.albumEntity) + ", 'Album'), (" +
      asset + ", '" + (kind_.assetTable == "ZASSET" ? "Asset" : "GenericAsset") + "'), (" +
      number(kind_.keywordEntity) + ", 'Keyword'), (35, '" +
      (kind_.assetTable == "ZASSET" ? "Other" : "Asset") + "')");
  run("CREATE TABLE ZGENERICALBUM (Z_PK INTEGER PRIMARY KEY, ZUUID VARCHAR, ZTITLE VARCHAR, ZKIND INTEGER,"
      " ZTRASHEDSTATE INTEGER, ZPARENTFOLDER INTEGER, Z_FOK_PARENTFOLDER INTEGER, ZCUSTOMSORTKEY INTEGER,"
      " ZCUSTOMSORTASCENDING INTEGER)");
  run("INSERT INTO ZGENERICALBUM (Z_PK, ZKIND, ZTRASHEDSTATE) VALUES (1, 3998, 0), (2, 3999, 0)");
  run("CREATE TABLE " + kind_.assetTable +
      " (Z_PK INTEGER PRIMARY KEY, ZUUID VARCHAR, ZDIRECTORY VARCHAR, ZFILENAME VARCHAR, ZKIND INTEGER,"
      " ZHIDDEN INTEGER, ZTRASHEDSTATE INTEGER, ZVISIBILITYSTATE INTEGER, ZSAVEDASSETTYPE INTEGER,"
      " ZDATECREATED TIMESTAMP, ZADDITIONALATTRIBUTES INTEGER, ZMOMENT INTEGER)");
  run("CREATE TABLE " + memberTable() + " (Z_" + number(kind_.albumEntity) + "ALBUMS INTEGER, Z_" + asset +
      "ASSETS INTEGER, Z_FOK_" + asset + "ASSETS INTEGER, PRIMARY KEY (Z_" + number(kind_.albumEntity) +
      "ALBUMS, Z_" + asset + "ASSETS))");
  run("CREATE TABLE ZADDITIONALASSETATTRIBUTES (Z_PK INTEGER PRIMARY KEY, ZTITLE VARCHAR,"
      " ZREVERSELOCATIONDATA BLOB)");
  run("CREATE TABLE ZASSETDESCRIPTION (Z_PK INTEGER PRIMARY KEY, ZASSETATTRIBUTES INTEGER, ZLONGDESCRIPTION"
      " VARCHAR)");
  run("CREATE TABLE ZKEYWORD (Z_PK INTEGER PRIMARY KEY, ZTITLE VARCHAR)");
  run("CREATE TABLE Z_1KEYWORDS (Z_1ASSETATTRIBUTES INTEGER, Z_" + number(kind_.keywordEntity) +
      "KEYWORDS INTEGER)");
  run("CREATE TABLE ZMOMENT (Z_PK INTEGER PRIMARY KEY, ZTITLE VARCHAR, ZSUBTITLE VARCHAR)");
}

void MadeLibrary::addAlbum(const MadeAlbum& album) {
  run("INSERT INTO ZGENERICALBUM VALUES (" +
      list({number(album.key), "'UUID-" + number(album.key) + "'", quoted(album.title), number(album.kind),
            number(album.trashed), number(album.parent), number(album.position), number(album.sortKey),
            number(album.ascending)}) +
      ")");
}

void MadeLibrary::addAsset(const MadeAsset& asset) {
  const std::string key = number(asset.key);
  run("INSERT INTO " + kind_.assetTable + " VALUES (" +
      list({key, "'ASSET-" + key + "'", quoted(asset.directory), quoted(asset.fileName), number(asset.kind),
            number(asset.hidden), number(asset.trashed), number(asset.visibility),
            number(asset.savedAssetType), asset.date ? std::to_string(*asset.date) : "NULL",
            number(1000 + asset.key), number(2000 + asset.key)}) +
      ")");
  run("INSERT INTO ZADDITIONALASSETATTRIBUTES VALUES (" + number(1000 + asset.key) + ", " +
          quoted(asset.title) + (asset.reverseLocation.empty() ? ", NULL)" : ", ?1)"),
      asset.reverseLocation);
  run("INSERT INTO ZASSETDESCRIPTION VALUES (" + key + ", " + number(1000 + asset.key) + ", " +
      quoted(asset.caption) + ")");
  run("INSERT INTO ZMOMENT VALUES (" + number(2000 + asset.key) + ", " + quoted(asset.momentTitle) +
      ", NULL)");
  for (const std::string& keyword : asset.keywords) {
    const auto [known, isNew] = keywords_.emplace(keyword, static_cast<int>(keywords_.size()) + 1);
    const std::string keywordKey = number(known->second);
    if (isNew) run("INSERT INTO ZKEYWORD VALUES (" + keywordKey + ", " + quoted(keyword) + ")");
    run("INSERT INTO Z_1KEYWORDS VALUES (" + number(1000 + asset.key) + ", " + keywordKey + ")");
  }
  if (!asset.hasFile) return;
  fs::create_directories(package_ + "/originals/" + asset.directory);
  std::ofstream(package_ + "/originals/" + asset.directory + "/" + asset.fileName) << "picture";
}

void MadeLibrary::put(int asset, int album) {
  run("INSERT INTO " + memberTable() + " VALUES (" +
      list({number(album), number(asset), number(++members_ * 1024)}) + ")");
}

void MadeLibrary::run(const std::string& sql) {
  run(sql, "");
}

void MadeLibrary::run(const std::string& sql, const std::string& blob) {
  sqlite3_stmt* statement = nullptr;
  int code = sqlite3_prepare_v2(connection_, sql.c_str(), -1, &statement, nullptr);
  if (code == SQLITE_OK && sqlite3_bind_parameter_count(statement) > 0) {
    sqlite3_bind_blob(statement, 1, blob.data(), static_cast<int>(blob.size()), SQLITE_TRANSIENT);
  }
  while (code == SQLITE_OK || code == SQLITE_ROW) code = sqlite3_step(statement);
  sqlite3_finalize(statement);
  if (code != SQLITE_DONE) throw std::runtime_error(std::string(sqlite3_errmsg(connection_)) + " in " + sql);
}

void MadeLibrary::writeAhead() {
  run("PRAGMA journal_mode = WAL");
  run("PRAGMA wal_autocheckpoint = 0");
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

void MadeLibrary::close() {
  sqlite3_close(std::exchange(connection_, nullptr));
}

std::map<std::string, std::string> inventoryOf(const std::string& package) {
  std::map<std::string, std::string> inventory{{package, describe(package)}};
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(package)) {
    inventory[entry.path().string()] = describe(entry.path());
  }
  return inventory;
}

}  // namespace lumivane
