#include "collection/albums/PictureRows.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <unordered_set>

#include "collection/albums/ReverseLocation.h"

namespace lumivane {
namespace {

constexpr std::size_t kMostMembers = 2'000'000;
constexpr std::size_t kMostBytesOfText = std::size_t{512} << 20;
constexpr std::size_t kLongestTitle = 1'000;
constexpr std::size_t kLongestComment = 20'000;
constexpr std::size_t kLongestKeyword = 200;
constexpr std::size_t kMostKeywords = 500;

// The columns of a member, before those of its state.
enum Column { Key, Position, Directory, FileName, SavedAssetType, Created, Attributes, Moment, State };

std::string memberColumns(const LibrarySchema& schema) {
  std::string columns = "s.Z_PK, j." + quotedName(schema.memberOrder);
  for (const char* column :
       {"ZDIRECTORY", "ZFILENAME", "ZSAVEDASSETTYPE", "ZDATECREATED", "ZADDITIONALATTRIBUTES", "ZMOMENT"}) {
    columns += ", " + schema.asset(column);
  }
  return columns;
}

std::size_t bytesOf(const PictureRow& row) {
  std::size_t bytes = row.title.size() + row.picture.path.size() + row.picture.comment.size();
  for (const std::string& keyword : row.picture.keywords) bytes += keyword.size();
  return bytes;
}

// Asks for what a library knows of a picture beyond its file.
class DetailReader {
 public:
  DetailReader(LibraryDatabase& database, const LibrarySchema& schema, const PictureDetails& details) {
    if (schema.hasAttributes && (details.titles || details.descriptions)) {
      const std::string location = details.descriptions ? "ZREVERSELOCATIONDATA" : "NULL";
      prepare(database, attributes_,
              "SELECT ZTITLE, " + location + " FROM ZADDITIONALASSETATTRIBUTES WHERE Z_PK = ?1");
    }
    if (details.descriptions) prepareDescriptions(database, schema);
  }

  [[nodiscard]] const std::string& problem() const { return problem_; }

  // False after a failure.
  [[nodiscard]] bool read(std::optional<std::int64_t> attributes, std::optional<std::int64_t> moment,
                          PictureRow& picture) {
    if (attributes) readAttributes(*attributes, picture);
    if (moment && picture.picture.places.empty()) readMoment(*moment, picture.picture);
    return problem_.empty();
  }

 private:
  void prepareDescriptions(LibraryDatabase& database, const LibrarySchema& schema) {
    if (schema.hasDescriptions) {
      prepare(database, descriptions_,
              "SELECT ZLONGDESCRIPTION FROM ZASSETDESCRIPTION WHERE ZASSETATTRIBUTES = ?1");
    }
    if (!schema.keywordColumn.empty()) {
      prepare(database, keywords_,
              "SELECT k.ZTITLE FROM Z_1KEYWORDS j JOIN ZKEYWORD k ON k.Z_PK = j." +
                  quotedName(schema.keywordColumn) + " WHERE j.Z_1ASSETATTRIBUTES = ?1");
    }
    if (schema.hasMoments) {
      prepare(database, moments_, "SELECT ZTITLE, ZSUBTITLE FROM ZMOMENT WHERE Z_PK = ?1");
    }
  }

  void prepare(LibraryDatabase& database, std::optional<LibraryQuery>& query, const std::string& sql) {
    Result<LibraryQuery> prepared = database.query(sql);
    if (!prepared && problem_.empty()) problem_ = prepared.error();
    if (prepared) query.emplace(std::move(prepared).value());
  }

  void ask(std::optional<LibraryQuery>& query, std::int64_t key, const RowVisitor& visit) {
    if (!query || !problem_.empty()) return;
    if (const Result<Done> done = query->run({key}, visit); !done) problem_ = done.error();
  }

  void readAttributes(std::int64_t key, PictureRow& picture) {
    ask(attributes_, key, [&](const LibraryRow& row) {
      picture.title = row.text(0, kLongestTitle);
      picture.picture.places = placesInReverseLocation(row.blob(1));
      return false;
    });
    ask(descriptions_, key, [&](const LibraryRow& row) {
      picture.picture.comment = row.text(0, kLongestComment);
      return false;
    });
    std::vector<std::string>& keywords = picture.picture.keywords;
    ask(keywords_, key, [&](const LibraryRow& row) {
      if (std::string keyword = row.text(0, kLongestKeyword); !keyword.empty())
        keywords.push_back(std::move(keyword));
      return keywords.size() < kMostKeywords;
    });
    std::ranges::sort(keywords);
  }

  // The name that the library gives to the day and place of the picture.
  void readMoment(std::int64_t key, AlbumPicture& picture) {
    ask(moments_, key, [&](const LibraryRow& row) {
      for (const int column : {0, 1}) {
        if (std::string name = row.text(column, kLongestTitle); !name.empty())
          picture.places.push_back(std::move(name));
      }
      return false;
    });
  }

  std::optional<LibraryQuery> attributes_;
  std::optional<LibraryQuery> descriptions_;
  std::optional<LibraryQuery> keywords_;
  std::optional<LibraryQuery> moments_;
  std::string problem_;
};

PictureRow pictureRow(const LibraryRow& row, const MemberState& state, const PackageFolders& folders) {
  PictureRow picture;
  picture.picture.mediaType = state.mediaType;
  picture.picture.hidden = state.hidden;
  picture.key = row.integer(Key).value_or(0);
  picture.position = row.integer(Position).value_or(std::numeric_limits<std::int64_t>::min());
  picture.created = row.number(Created).value_or(std::numeric_limits<double>::lowest());
  const StoredLocation location{row.exactText(Directory).value_or(""), row.exactText(FileName).value_or(""),
                                row.integer(SavedAssetType).value_or(0)};
  picture.picture.path = picturePath(folders, location).value_or("");
  picture.picture.isPresent = !picture.picture.path.empty();
  return picture;
}

}  // namespace

std::string membersQuestion(const LibrarySchema& schema, std::string_view columns,
                            std::string_view condition) {
  std::string question = "SELECT " + std::string(columns);
  for (const char* column : {"ZKIND", "ZHIDDEN", "ZTRASHEDSTATE", "ZVISIBILITYSTATE"}) {
    question += ", " + schema.asset(column);
  }
  return question + " FROM " + quotedName(schema.memberTable) + " j JOIN " + quotedName(schema.assetTable) +
         " s ON s.Z_PK = j." + quotedName(schema.memberAsset) + " " + std::string(condition);
}

MemberState memberState(const LibraryRow& row, int firstColumn) {
  constexpr std::int64_t kPicture = 0;
  constexpr std::int64_t kMovie = 1;
  const std::int64_t kind = row.integer(firstColumn).value_or(kPicture);
  const bool trashed = row.integer(firstColumn + 2).value_or(0) != 0;
  const bool concealed = row.integer(firstColumn + 3).value_or(0) != 0;
  MemberState state;
  state.mediaType = kind == kPicture ? MediaType::Picture
                    : kind == kMovie ? MediaType::Movie
                                     : MediaType::Other;
  state.hidden = row.integer(firstColumn + 1).value_or(0) != 0;
  state.isShown = !trashed && !concealed;
  return state;
}

Result<std::vector<PictureRow>> readPictureRows(LibraryDatabase& database, const LibrarySchema& schema,
                                                std::int64_t albumKey, const PackageFolders& folders,
                                                const PictureDetails& wanted) {
  DetailReader details(database, schema, wanted);
  if (!details.problem().empty()) return Error{details.problem()};
  const std::string condition = "WHERE j." + quotedName(schema.memberAlbum) + " = ?1";
  Result<LibraryQuery> query = database.query(membersQuestion(schema, memberColumns(schema), condition));
  if (!query) return Error{query.error()};
  std::vector<PictureRow> rows;
  std::unordered_set<std::int64_t> known;
  std::size_t bytes = 0;
  const auto isTooMuch = [&] { return rows.size() > kMostMembers || bytes > kMostBytesOfText; };
  const Result<Done> read = query.value().run({albumKey}, [&](const LibraryRow& row) {
    const MemberState state = memberState(row, State);
    if (!state.isShown || !known.insert(row.integer(Key).value_or(0)).second) return true;
    rows.push_back(pictureRow(row, state, folders));
    const bool ok = details.read(row.integer(Attributes), row.integer(Moment), rows.back());
    bytes += bytesOf(rows.back());
    return ok && !isTooMuch();
  });
  if (!read) return Error{read.error()};
  if (!details.problem().empty()) return Error{details.problem()};
  if (isTooMuch()) return Error{"one of its albums is too large"};
  return rows;
}

}  // namespace lumivane
