#include <gtest/gtest.h>

#include "database/DBFuncs.h"
#include "database/VersionRecord.h"
#include "database/fakes/DatabaseRun.h"

namespace zent {
namespace {

using testing::DatabaseRun;
using testing::MemoryRow;

constexpr const char* kPath = R"(D:\Data\Korvo.mdb)";

struct RecordCase {
  const char* what;
  const char* table;
  const char* field;
  std::vector<MemoryRow> rows;
  std::optional<std::string> version;
};

TEST(ReadVersionRecord, IsTheFieldVersionOfTheFirstRow) {
  const RecordCase cases[] = {
      {"a text", "version", "Version", {{"3.6"}}, "3.6"},
      {"names in any case", "VERSION", "version", {{"3.6"}}, "3.6"},
      {"a number", "version", "Version", {{3.6F}}, "3.6"},
      {"blanks around it", "version", "Version", {{" 3.6 "}}, "3.6"},
      {"the first of two", "version", "Version", {{"3.6"}, {"3.7"}}, "3.6"},
      {"a null is a record", "version", "Version", {{FieldValue()}}, ""},
      {"no row", "version", "Version", {}, std::nullopt},
      {"no field", "version", "Number", {{"3.6"}}, std::nullopt},
      {"no table", "versions", "Version", {{"3.6"}}, std::nullopt},
  };
  for (const RecordCase& row : cases) {
    SCOPED_TRACE(row.what);
    DatabaseRun given;
    given.access.Put(kPath).Add(row.table, {row.field}, row.rows);
    const DatabasePtr database = std::move(OpenDatabase(given.run, kPath).value());
    const Result<std::optional<std::string>> version = ReadVersionRecord(given.run, *database);
    ASSERT_TRUE(version.ok());
    EXPECT_EQ(version.value(), row.version);
  }
}

TEST(ReadVersionRecord, ALinkIsNoRecordOfTheDatabaseItself) {
  for (const std::uint32_t link : {kTableAttached, kTableAttachedOdbc}) {
    DatabaseRun given;
    given.access.Put(kPath).Add("version", {"Version"}, {{"3.6"}}).definition.attributes = link;
    given.access.world.failures["OpenRecordset"] = {.number = 3078, .description = "no fields"};
    const DatabasePtr database = std::move(OpenDatabase(given.run, kPath).value());
    const Result<std::optional<std::string>> version = ReadVersionRecord(given.run, *database);
    ASSERT_TRUE(version.ok());
    EXPECT_EQ(version.value(), std::nullopt);
  }
}

TEST(ReadVersionRecord, HandsBackWhatKeepsItFromReading) {
  for (const char* call : {"Tables", "OpenRecordset"}) {
    SCOPED_TRACE(call);
    DatabaseRun given;
    given.access.Put(kPath).Add("version", {"Version"}, {{"3.6"}});
    const DatabasePtr database = std::move(OpenDatabase(given.run, kPath).value());
    given.access.world.failures[call] = {.number = 3112, .description = "no right"};
    EXPECT_EQ(ReadVersionRecord(given.run, *database).number(), 3112);
  }
}

struct ServerCase {
  const char* what;
  const char* table;
  std::optional<std::string> version;
};

TEST(ReadVersionRecord, AServerIsAskedForTheTableItself) {
  const ServerCase cases[] = {
      {"a table, or another name of one that no list has", "version", "3.6"},
      {"no such table", "versions", std::nullopt},
  };
  for (const ServerCase& row : cases) {
    SCOPED_TRACE(row.what);
    DatabaseRun given;
    given.server.world.databases["server"].Add(row.table, {"Version"}, {{"3.6"}});
    given.server.world.failures["Tables"] = {.number = 3112, .description = "no right"};
    const DatabasePtr database = std::move(OpenDatabase(given.run, "DSN=Korvo;").value());
    const Result<std::optional<std::string>> version = ReadVersionRecord(given.run, *database);
    ASSERT_TRUE(version.ok()) << version.error().description;
    EXPECT_EQ(version.value(), row.version);
  }
}

}  // namespace
}  // namespace zent
