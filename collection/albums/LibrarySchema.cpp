#include "collection/albums/LibrarySchema.h"

#include <initializer_list>
#include <map>
#include <optional>

#include "platform/PropertyList.h"

namespace lumivane {
namespace {

using Names = std::set<std::string, std::less<>>;
using Columns = std::initializer_list<std::string_view>;

// Looks names up, each table once, and remembers the first failure.
class SchemaReader {
 public:
  SchemaReader(LibraryDatabase& database, Names tables) : database_(database), tables_(std::move(tables)) {}

  [[nodiscard]] const std::string& problem() const { return problem_; }
  [[nodiscard]] bool hasTable(std::string_view table) const { return tables_.contains(table); }

  [[nodiscard]] Names columnsOf(const std::string& table) {
    if (!hasTable(table)) return {};
    Result<Names> columns = database_.columnsOf(table);
    if (columns) return std::move(columns).value();
    fail(columns.error());
    return {};
  }

  [[nodiscard]] bool has(const std::string& table, Columns columns) {
    const Names present = columnsOf(table);
    for (const std::string_view column : columns) {
      if (!present.contains(column)) return false;
    }
    return true;
  }

  void require(const std::string& table, Columns columns) {
    if (!problem_.empty() || has(table, columns)) return;
    fail("its database is of a kind that is not known (it has no " + table + " as expected)");
  }

  void fail(const std::string& problem) {
    if (problem_.empty()) problem_ = problem;
  }

  void run(const std::string& sql, const RowVisitor& visit) {
    if (!problem_.empty()) return;
    Result<LibraryQuery> query = database_.query(sql);
    if (!query) return fail(query.error());
    if (const Result<Done> done = query.value().run({}, visit); !done) fail(done.error());
  }

 private:
  LibraryDatabase& database_;
  const Names tables_;
  std::string problem_;
};

// Absent when the library does not tell, or not in a way that can be read.
std::optional<std::int64_t> modelVersion(std::string_view metadata) {
  const Result<PropertyList> list = parsePropertyList(metadata);
  const auto* entries = list ? list.value().as<PropertyListDictionary>() : nullptr;
  const auto found =
      entries == nullptr ? PropertyListDictionary::const_iterator() : entries->find("PLModelVersion");
  if (entries == nullptr || found == entries->end()) return std::nullopt;
  const auto* version = found->second.as<std::int64_t>();
  return version == nullptr ? std::nullopt : std::optional(*version);
}

void checkVersion(SchemaReader& reader) {
  if (!reader.has("Z_METADATA", {"Z_PLIST"})) return;
  std::optional<std::int64_t> version;
  reader.run("SELECT Z_PLIST FROM Z_METADATA", [&](const LibraryRow& row) {
    version = modelVersion(row.blob(0));
    return false;
  });
  if (version.value_or(0) <= kNewestModelVersion) return;
  reader.fail("its database is of a newer version than is known (" + std::to_string(*version) +
              ", the newest known is " + std::to_string(kNewestModelVersion) + ")");
}

std::map<std::string, std::int64_t> entityNumbers(SchemaReader& reader) {
  std::map<std::string, std::int64_t> numbers;
  reader.require("Z_PRIMARYKEY", {"Z_NAME", "Z_ENT"});
  reader.run(
      "SELECT Z_NAME, Z_ENT FROM Z_PRIMARYKEY WHERE Z_NAME IN ('Album', 'Asset', 'GenericAsset', 'Keyword')",
      [&](const LibraryRow& row) {
        const std::int64_t number = row.integer(1).value_or(0);
        if (number > 0) numbers.emplace(row.text(0, 100), number);
        return true;
      });
  return numbers;
}

void nameMembers(SchemaReader& reader, const std::map<std::string, std::int64_t>& entities,
                 LibrarySchema& schema) {
  const auto album = entities.find("Album");
  const auto asset = entities.find(schema.assetTable == "ZASSET" ? "Asset" : "GenericAsset");
  if (album == entities.end() || asset == entities.end()) {
    reader.fail(
        "its database is of a kind that is not known (it does not say where albums and pictures are)");
    return;
  }
  const std::string albumNumber = std::to_string(album->second);
  const std::string assetNumber = std::to_string(asset->second);
  schema.memberTable = "Z_" + albumNumber + "ASSETS";
  schema.memberAlbum = "Z_" + albumNumber + "ALBUMS";
  schema.memberAsset = "Z_" + assetNumber + "ASSETS";
  schema.memberOrder = "Z_FOK_" + assetNumber + "ASSETS";
  reader.require(schema.memberTable, {schema.memberAlbum, schema.memberAsset, schema.memberOrder});
}

void nameDetails(SchemaReader& reader, const std::map<std::string, std::int64_t>& entities,
                 LibrarySchema& schema) {
  schema.hasAttributes = reader.has("ZADDITIONALASSETATTRIBUTES", {"Z_PK", "ZTITLE", "ZREVERSELOCATIONDATA"});
  schema.hasDescriptions = reader.has("ZASSETDESCRIPTION", {"ZASSETATTRIBUTES", "ZLONGDESCRIPTION"});
  schema.hasMoments = reader.has("ZMOMENT", {"Z_PK", "ZTITLE", "ZSUBTITLE"});
  const auto keyword = entities.find("Keyword");
  if (keyword == entities.end() || !reader.has("ZKEYWORD", {"Z_PK", "ZTITLE"})) return;
  const std::string column = "Z_" + std::to_string(keyword->second) + "KEYWORDS";
  if (reader.has("Z_1KEYWORDS", {"Z_1ASSETATTRIBUTES", column})) schema.keywordColumn = column;
}

}  // namespace

std::string LibrarySchema::asset(std::string_view column) const {
  return assetColumns.contains(column) ? "s." + quotedName(column) : "NULL";
}

Result<LibrarySchema> readLibrarySchema(LibraryDatabase& database) {
  Result<Names> tables = database.tables();
  if (!tables) return Error{tables.error()};
  if (tables.value().empty()) return Error{"its database is empty"};
  SchemaReader reader(database, std::move(tables).value());
  LibrarySchema schema;
  checkVersion(reader);
  reader.require("ZGENERICALBUM", {"Z_PK", "ZUUID", "ZTITLE", "ZKIND", "ZTRASHEDSTATE", "ZPARENTFOLDER",
                                   "Z_FOK_PARENTFOLDER", "ZCUSTOMSORTKEY", "ZCUSTOMSORTASCENDING"});
  schema.assetTable = reader.hasTable("ZASSET") ? "ZASSET" : "ZGENERICASSET";
  reader.require(schema.assetTable, {"Z_PK", "ZDIRECTORY", "ZFILENAME", "ZKIND", "ZHIDDEN", "ZTRASHEDSTATE"});
  schema.assetColumns = reader.columnsOf(schema.assetTable);
  const std::map<std::string, std::int64_t> entities = entityNumbers(reader);
  nameMembers(reader, entities, schema);
  nameDetails(reader, entities, schema);
  if (!reader.problem().empty()) return Error{reader.problem()};
  return schema;
}

}  // namespace lumivane
