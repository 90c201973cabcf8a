// Databases that were made to do harm: what is in their schema does not run, and no question goes on for ever.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <iterator>
#include <limits>

#include "collection/albums/LibraryDatabase.h"
#include "collection/albums/SqlitePhotoLibrary.h"
#include "tests/collection/albums/MadeLibrary.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

constexpr const char* kWithoutEnd =
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i AS Z_PK FROM n";

class HostileDatabase : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<LibraryDatabase> open(ReadLimits limits = {}) const {
    Result<LibraryFiles> files = LibraryFiles::open(library_.databasePath());
    if (!files) return nullptr;
    auto database = LibraryDatabase::open(std::move(files).value(), std::move(limits));
    return database ? std::move(database).value() : nullptr;
  }
  [[nodiscard]] std::string problemOf(const std::string& sql, ReadLimits limits = {}) const {
    const auto database = open(std::move(limits));
    Result<LibraryQuery> query = database->query(sql);
    if (!query) return query.error();
    const Result<Done> done = query.value().run({}, [](const LibraryRow&) { return true; });
    return done ? "none" : done.error();
  }
  [[nodiscard]] Result<AlbumList> albums() const {
    return SqlitePhotoLibrary(library_.package(), "", "").albums({});
  }
  void expectRefused(const std::string& reason) const {
    const Result<AlbumList> list = albums();
    ASSERT_FALSE(list);
    EXPECT_THAT(list.error(), HasSubstr(reason));
  }

  const TemporaryFolder folder_;
  MadeLibrary library_{folder_ / "X.photoslibrary"};
};

TEST_F(HostileDatabase, aViewIsNotTakenForATable) {
  library_.run("DROP TABLE ZGENERICALBUM");
  library_.run(std::string("CREATE VIEW ZGENERICALBUM AS ") + kWithoutEnd);
  expectRefused("it has no ZGENERICALBUM as expected");
  EXPECT_THAT(problemOf("SELECT Z_PK FROM ZGENERICALBUM"), Not("none"));
}

TEST_F(HostileDatabase, aVirtualTableIsNotTakenForOne) {
  library_.run("DROP TABLE ZGENERICALBUM");
  library_.run(
      "CREATE VIRTUAL TABLE ZGENERICALBUM USING fts5(Z_PK, ZUUID, ZTITLE, ZKIND, ZTRASHEDSTATE, "
      "ZPARENTFOLDER,"
      " Z_FOK_PARENTFOLDER, ZCUSTOMSORTKEY, ZCUSTOMSORTASCENDING)");
  expectRefused("it has no ZGENERICALBUM as expected");
}

TEST_F(HostileDatabase, aColumnThatIsWorkedOutIsNotTakenForAStoredOne) {
  library_.run("ALTER TABLE ZASSET RENAME COLUMN ZFILENAME TO ZOTHER");
  library_.run("ALTER TABLE ZASSET ADD COLUMN ZFILENAME VARCHAR AS (hex(zeroblob(1000000)))");
  expectRefused("it has no ZASSET as expected");
}

TEST_F(HostileDatabase, nothingButColumnsOfTablesCanBeAskedFor) {
  for (const char* sql :
       {"SELECT hex(ZTITLE) FROM ZGENERICALBUM", "INSERT INTO ZKEYWORD VALUES (1, 'x')",
        "DROP TABLE ZKEYWORD", "ATTACH '/tmp/lumivane-never' AS other", "PRAGMA journal_mode = DELETE",
        "PRAGMA writable_schema = ON", "VACUUM", "BEGIN IMMEDIATE", "CREATE TEMP TABLE t (a)",
        "SELECT load_extension('x')", "SELECT * FROM pragma_table_info('ZASSET')", kWithoutEnd}) {
    EXPECT_THAT(problemOf(sql), HasSubstr("cannot be read")) << sql;
  }
  EXPECT_EQ(problemOf("SELECT ZTITLE FROM ZGENERICALBUM"), "none");
}

TEST_F(HostileDatabase, aQuestionThatTakesTooLongIsBrokenOff) {
  library_.run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000)"
      " INSERT INTO ZKEYWORD SELECT i, i FROM n");
  const std::string everyPair = "SELECT a.Z_PK FROM ZKEYWORD a JOIN ZKEYWORD b";
  EXPECT_EQ(problemOf(everyPair), "none");
  EXPECT_THAT(problemOf(everyPair, {.mostSteps = 1'000'000}), HasSubstr("takes too long"));
}

TEST_F(HostileDatabase, theStepsOfAllQuestionsCountTogether) {
  library_.run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000)"
      " INSERT INTO ZKEYWORD SELECT i, i FROM n");
  const auto database = open({.mostSteps = 300'000});
  ASSERT_NE(database, nullptr);
  Result<LibraryQuery> query = database->query("SELECT Z_PK FROM ZKEYWORD");
  ASSERT_TRUE(query);
  int times = 0;
  while (times < 100 && query.value().run({}, [](const LibraryRow&) { return true; })) ++times;
  EXPECT_GT(times, 0);
  EXPECT_LT(times, 100);
}

TEST_F(HostileDatabase, aValueThatIsTooLargeIsAProblem) {
  library_.run("INSERT INTO ZGENERICALBUM (Z_PK, ZKIND, ZTITLE) VALUES (10, 2, hex(zeroblob(10000000)))");
  EXPECT_THAT(problemOf("SELECT ZTITLE FROM ZGENERICALBUM"), HasSubstr("too large"));
  expectRefused("too large");
}

TEST_F(HostileDatabase, textOfAnyBytesBecomesTextThatCanBeShown) {
  library_.run(
      "INSERT INTO ZGENERICALBUM (Z_PK, ZKIND, ZPARENTFOLDER, Z_FOK_PARENTFOLDER, ZTITLE) VALUES"
      " (10, 2, 2, 1, CAST(x'61ff62' AS TEXT)), (11, 2, 2, 2, CAST(x'610062' AS TEXT)),"
      " (12, 2, 2, 3, x'6162'), (13, 2, 2, 4, 7), (14, 2, 2, 5, CAST(x'0961c3a47f' AS TEXT))");
  const Result<AlbumList> list = albums();
  ASSERT_TRUE(list) << list.error();
  std::vector<std::string> names;
  for (const Album& album : list.value().albums) names.push_back(album.name);
  EXPECT_THAT(names, ElementsAre("a\\xFFb", "a\\x00b", "", "7", " aä "));
  EXPECT_EQ(list.value().albums[0].identifier, "#10") << "without one of its own";
}

TEST_F(HostileDatabase, longTextIsCutOffBetweenCharacters) {
  library_.run("INSERT INTO ZKEYWORD VALUES (1, 'aä€')");  // 1, 2 and 3 bytes
  const auto database = open();
  Result<LibraryQuery> query = database->query("SELECT ZTITLE FROM ZKEYWORD");
  ASSERT_TRUE(query);
  std::vector<std::string> cut;
  const Result<Done> done = query.value().run({}, [&](const LibraryRow& row) {
    for (std::size_t bytes = 0; bytes <= 7; ++bytes) cut.push_back(row.text(0, bytes));
    return true;
  });
  ASSERT_TRUE(done);
  EXPECT_THAT(cut, ElementsAre("", "a", "a", "aä", "aä", "aä", "aä€", "aä€"));
}

TEST_F(HostileDatabase, numbersOfAnyKindAreTakenOrLeft) {
  library_.run("INSERT INTO ZMOMENT (Z_PK, ZTITLE, ZSUBTITLE) VALUES (1, 9e999, x'00')");
  library_.run("CREATE TABLE N (A, B, C, D, E)");
  library_.run("INSERT INTO N VALUES (9223372036854775807, 1.5, 9e999, 'x', NULL)");
  const auto database = open();
  Result<LibraryQuery> query = database->query("SELECT A, B, C, D, E FROM N");
  ASSERT_TRUE(query);
  const Result<Done> done = query.value().run({}, [&](const LibraryRow& row) {
    EXPECT_EQ(row.integer(0), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(row.number(1), 1.5);
    EXPECT_EQ(row.integer(1), std::nullopt);
    for (const int column : {2, 3, 4}) EXPECT_EQ(row.number(column), std::nullopt) << column;
    return true;
  });
  EXPECT_TRUE(done);
}

TEST_F(HostileDatabase, anAssetThatIsOftenInAnAlbumCountsOnce) {
  library_.addAlbum({.key = 10, .title = "album"});
  library_.addAsset({.key = 1, .fileName = "1.jpeg"});
  library_.run("DROP TABLE Z_28ASSETS");
  library_.run("CREATE TABLE Z_28ASSETS (Z_28ALBUMS, Z_3ASSETS, Z_FOK_3ASSETS)");
  library_.run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000)"
      " INSERT INTO Z_28ASSETS SELECT 10, 1, i FROM n");
  const auto pictures = SqlitePhotoLibrary(library_.package(), "", "")
                            .pictures({"album", "UUID-10", 0}, AlbumDetail::Descriptions, {});
  ASSERT_TRUE(pictures) << pictures.error();
  EXPECT_THAT(pictures.value(), SizeIs(1));
}

TEST_F(HostileDatabase, foldersThatHoldEachOtherHoldNoAlbums) {
  library_.addAlbum({.key = 20, .title = "a", .kind = 4000, .parent = 21});
  library_.addAlbum({.key = 21, .title = "b", .kind = 4000, .parent = 20});
  library_.addAlbum({.key = 10, .title = "album", .parent = 20});
  library_.addAlbum({.key = 11, .title = "its own parent", .parent = 11});
  const Result<AlbumList> list = albums();
  ASSERT_TRUE(list) << list.error();
  EXPECT_THAT(list.value().albums, SizeIs(0));
}

TEST_F(HostileDatabase, tooManyAlbumsAreAProblem) {
  library_.run(
      "WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 100020)"
      " INSERT INTO ZGENERICALBUM (Z_PK, ZKIND, ZPARENTFOLDER) SELECT i, 2, 2 FROM n");
  expectRefused("too many albums");
}

TEST_F(HostileDatabase, aSchemaThatIsNoneIsAProblem) {
  library_.run("PRAGMA writable_schema = ON");
  library_.run("UPDATE sqlite_schema SET sql = 'CREATE TABLE ZASSET (((' WHERE name = 'ZASSET'");
  expectRefused("its database is damaged");
}

TEST_F(HostileDatabase, namesInQuestionsAreQuoted) {
  EXPECT_EQ(quotedName("Z_1\"; DROP"), "\"Z_1\"\"; DROP\"");
}

// Every byte of a small database turned over, one after the other: whatever comes of it, it ends well.
TEST_F(HostileDatabase, aDatabaseWithAnyByteWrongEndsInAnAnswerOrAProblem) {
  library_.addAlbum({.key = 10, .title = "album"});
  library_.addAsset({.key = 1, .fileName = "1.jpeg", .title = "t", .caption = "c", .keywords = {"k"}});
  library_.put(1, 10);
  library_.run("PRAGMA page_size = 512");
  library_.run("VACUUM");
  library_.close();
  std::ifstream in(library_.databasePath(), std::ios::binary);
  const std::string sound((std::istreambuf_iterator<char>(in)), {});
  ASSERT_LT(sound.size(), 64000U);
  std::size_t answers = 0;
  std::size_t problems = 0;
  for (std::size_t at = 0; at < sound.size(); at += 37) {
    std::fstream file(library_.databasePath(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(at)).put(static_cast<char>(~sound[at])).flush();
    const SqlitePhotoLibrary read(library_.package(), "", "");
    const bool both =
        read.albums({}).ok() && read.pictures({"album", "UUID-10", 0}, AlbumDetail::Descriptions, {}).ok();
    ++(both ? answers : problems);
    file.seekp(static_cast<std::streamoff>(at)).put(sound[at]);
  }
  EXPECT_GT(answers, 0U);
  EXPECT_GT(problems, 0U);
}

}  // namespace
}  // namespace lumivane
