#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/jetdb/FakeHost.h"
#include "jet/catalog/Catalog.h"
#include "jet/catalog/Transaction.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/schema/Schema.h"

/// The verbs of jetdb on files in memory.
namespace zent::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kMake =
    "CREATE TABLE People (Id COUNTER CONSTRAINT pk PRIMARY KEY, Name TEXT(50), Paid CURRENCY);"
    "CREATE UNIQUE INDEX ByName ON People (Name);"
    "INSERT INTO People (Name, Paid) VALUES ('Ada', 1.5);"
    "INSERT INTO People (Name, Paid) VALUES ('Bob; Jr.', 2)";

/// A machine with a.mdb and its table.
class JetdbVerbs : public ::testing::Test {
 protected:
  JetdbVerbs() {
    EXPECT_EQ(host.Run({"create", "a.mdb"}), 0) << host.complained;
    EXPECT_EQ(host.Run({"sql", "a.mdb", kMake}), 0) << host.complained;
  }
  std::string Names() {
    EXPECT_EQ(
        host.Run({"sql", "a.mdb", "SELECT Name FROM People ORDER BY Name", "--format", "csv"}), 0)
        << host.complained;
    return host.printed;
  }
  FakeJetdbHost host;
};

TEST_F(JetdbVerbs, CreateNeverOverwrites) {
  const std::string before = host.files().Bytes("a.mdb");
  EXPECT_EQ(host.Run({"create", "a.mdb"}), 1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3204: "));
  EXPECT_EQ(host.files().Bytes("a.mdb"), before);
}

TEST_F(JetdbVerbs, InfoTellsOfTheFile) {
  EXPECT_EQ(host.Run({"info", "a.mdb"}), 0) << host.complained;
  for (const char* const fact : {"version:      Jet 4", "collation:    1033 version 0",
                                 "code page:    1252", "password:     no", "encrypted:    no",
                                 "tables:       1 (", "rows:         2", "open by:      nobody"}) {
    EXPECT_THAT(host.printed, HasSubstr(fact));
  }
}

TEST_F(JetdbVerbs, InfoNamesWhoHasItOpen) {
  jet::PagerOptions options;
  options.sharing = jet::Sharing::Shared;
  options.user = {.computer = "PC7", .name = "Berta"};
  const auto other = jet::Pager::Open(host.storage(), "a.mdb", options);
  ASSERT_TRUE(other.ok());
  EXPECT_EQ(host.Run({"info", "a.mdb"}), 0);
  EXPECT_THAT(host.printed, HasSubstr("open by:      Berta on PC7"));
  EXPECT_EQ(host.Run({"info", "a.mdb", "--exclusive"}), 1);
  EXPECT_THAT(host.complained, HasSubstr("Berta on PC7"));
}

TEST_F(JetdbVerbs, TablesListsThem) {
  EXPECT_EQ(host.Run({"tables", "a.mdb", "--format", "csv"}), 0);
  EXPECT_EQ(host.printed, "name,kind,columns,indexes,rows,source,problem\nPeople,table,3,2,2,,\n");
  EXPECT_EQ(host.Run({"tables", "a.mdb", "--all"}), 0);
  EXPECT_THAT(host.printed, HasSubstr("MSysObjects"));
}

TEST_F(JetdbVerbs, DumpPrintsJson) {
  EXPECT_EQ(host.Run({"dump", "a.mdb"}), 0);
  EXPECT_THAT(host.printed, StartsWith("{\"file\":\"a.mdb\",\"jet\":4,"));
  EXPECT_THAT(host.printed, HasSubstr("[1,\"Ada\",\"1.5000\"]"));
  EXPECT_EQ(host.Run({"dump", "a.mdb", "--no-rows"}), 0);
  EXPECT_THAT(host.printed, Not(HasSubstr("Ada")));
}

TEST_F(JetdbVerbs, DumpPrintsOneTableWhereItIsAskedFor) {
  ASSERT_EQ(host.Run({"sql", "a.mdb",
                      "CREATE TABLE Pets (Name TEXT(20)); INSERT INTO Pets VALUES ('Rex')"}),
            0);
  EXPECT_EQ(host.Run({"dump", "a.mdb"}), 0);
  EXPECT_THAT(host.printed, HasSubstr("\"Ada\""));
  EXPECT_THAT(host.printed, HasSubstr("\"Rex\""));
  EXPECT_EQ(host.Run({"dump", "a.mdb", "--table", "pets"}), 0) << host.complained;
  EXPECT_THAT(host.printed, Not(HasSubstr("\"Ada\"")));
  EXPECT_THAT(host.printed, HasSubstr("\"Rex\""));
  EXPECT_EQ(host.Run({"dump", "a.mdb", "--table", "Cars"}), 1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3078: "));
  EXPECT_EQ(host.printed, "");
}

TEST_F(JetdbVerbs, VerifyEndsWithOneForFaults) {
  EXPECT_EQ(host.Run({"verify", "a.mdb"}), 0);
  EXPECT_THAT(host.printed, HasSubstr("no faults"));
  EXPECT_EQ(host.Run({"verify", "a.mdb", "--quiet"}), 0);
  EXPECT_EQ(host.printed, "");

  std::string bytes = host.files().Bytes("a.mdb");
  bytes[jet::kRelationshipsPage * jet::testing::kPage + 16] = 9;  // its count of rows
  host.files().Put("b.mdb", bytes);
  EXPECT_EQ(host.Run({"verify", "b.mdb"}), 1);
  EXPECT_THAT(host.printed, HasSubstr("it counts 9 rows and has 0"));
  EXPECT_THAT(host.printed, HasSubstr("1 faults"));
}

TEST_F(JetdbVerbs, SqlPrintsRowsInEachFormat) {
  const std::string query = "SELECT Id, Name FROM People WHERE Paid < 1.7";
  EXPECT_EQ(host.Run({"sql", "a.mdb", query}), 0) << host.complained;
  EXPECT_EQ(host.printed, "Id  Name\n--  ----\n 1  Ada\n(1 rows)\n");
  EXPECT_EQ(host.Run({"sql", "a.mdb", query, "--format", "csv"}), 0);
  EXPECT_EQ(host.printed, "Id,Name\n1,Ada\n");
  EXPECT_EQ(host.Run({"sql", "a.mdb", query, "--format", "json"}), 0);
  EXPECT_EQ(host.printed, "{\"columns\":[\"Id\",\"Name\"],\"rows\":[\n[1,\"Ada\"]\n]}\n");
}

TEST_F(JetdbVerbs, SqlTakesStatementsFromAFileAndFromItsInput) {
  host.texts["s.sql"] = "-- one more\nINSERT INTO People (Name) VALUES ('Cid');\n";
  EXPECT_EQ(host.Run({"sql", "a.mdb", "--file", "s.sql"}), 0) << host.complained;
  host.texts["-"] = "DELETE FROM People WHERE Name = 'Ada'";
  EXPECT_EQ(host.Run({"sql", "a.mdb"}), 0) << host.complained;
  EXPECT_EQ(host.printed, "(1 rows changed)\n");
  EXPECT_EQ(Names(), "Name\nBob; Jr.\nCid\n");
  EXPECT_EQ(host.Run({"sql", "a.mdb", "--file", "none.sql"}), 1);
  EXPECT_THAT(host.complained, HasSubstr("none.sql"));
}

TEST_F(JetdbVerbs, SqlStopsAtTheFirstErrorAndKeepsWhatWasBefore) {
  EXPECT_EQ(host.Run({"sql", "a.mdb",
                      "INSERT INTO People (Name) VALUES ('Cid');\n"
                      "INSERT INTO People (Name) VALUES ('Ada');\n"
                      "INSERT INTO People (Name) VALUES ('Dan')"}),
            1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3022: "));
  EXPECT_THAT(host.complained, HasSubstr("[statement of line 2]"));
  EXPECT_EQ(Names(), "Name\nAda\nBob; Jr.\nCid\n");
}

TEST_F(JetdbVerbs, SqlUndoesAllOfASingleTransaction) {
  EXPECT_EQ(host.Run({"sql", "a.mdb", "--single-transaction",
                      "INSERT INTO People (Name) VALUES ('Cid');"
                      "SELECT Nothing FROM Nowhere"}),
            1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3078: "));
  EXPECT_EQ(Names(), "Name\nAda\nBob; Jr.\n");
  EXPECT_EQ(host.Run({"sql", "a.mdb", "--single-transaction",
                      "INSERT INTO People (Name) VALUES ('Cid')"}),
            0);
  EXPECT_EQ(Names(), "Name\nAda\nBob; Jr.\nCid\n");
}

TEST_F(JetdbVerbs, SqlChangesNothingThatIsOpenToBeRead) {
  EXPECT_EQ(host.Run({"sql", "a.mdb", "--read-only", "DELETE FROM People"}), 1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3027: "));
  EXPECT_EQ(Names(), "Name\nAda\nBob; Jr.\n");
}

TEST_F(JetdbVerbs, SqlCopiesIntoAnotherFile) {
  EXPECT_EQ(host.Run({"create", "b.mdb"}), 0);
  EXPECT_EQ(
      host.Run({"sql", "b.mdb", "CREATE TABLE People (Id LONG, Name TEXT(50), Paid CURRENCY)"}), 0);
  EXPECT_EQ(host.Run({"sql", "a.mdb", "INSERT INTO People IN \"b.mdb\" SELECT * FROM People"}), 0)
      << host.complained;
  EXPECT_EQ(host.Run({"sql", "b.mdb", "--format", "csv", "SELECT Name FROM People"}), 0);
  EXPECT_EQ(host.printed, "Name\nAda\nBob; Jr.\n");
}

TEST_F(JetdbVerbs, SqlCopiesFromAFileThatIsOnlyRead) {
  constexpr const char* kCopy = "SELECT Name INTO Copied IN \"b.mdb\" FROM People";
  EXPECT_EQ(host.Run({"create", "b.mdb"}), 0);
  const std::string before = host.files().Bytes("a.mdb");
  EXPECT_EQ(host.Run({"sql", "a.mdb", "--read-only", kCopy}), 0) << host.complained;
  EXPECT_EQ(host.Run({"sql", "a.mdb", "--read-only", "--single-transaction",
                      "INSERT INTO Copied IN \"b.mdb\" SELECT Name FROM People"}),
            0)
      << host.complained;
  EXPECT_EQ(host.files().Bytes("a.mdb"), before);
  EXPECT_EQ(host.Run({"sql", "b.mdb", "--format", "csv", "SELECT Name FROM Copied"}), 0);
  EXPECT_EQ(host.printed, "Name\nAda\nBob; Jr.\nAda\nBob; Jr.\n");
}

TEST_F(JetdbVerbs, SqlUndoesWhatItCopiedWithTheRestOfASingleTransaction) {
  EXPECT_EQ(host.Run({"create", "b.mdb"}), 0);
  EXPECT_EQ(host.Run({"sql", "a.mdb", "--single-transaction",
                      "SELECT Name INTO Copied IN \"b.mdb\" FROM People; SELECT * FROM Nowhere"}),
            1);
  EXPECT_EQ(host.Run({"sql", "b.mdb", "SELECT * FROM Copied"}), 1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3078: "));
}

TEST_F(JetdbVerbs, SqlKnowsItsOwnFileAsTheOtherOne) {
  EXPECT_EQ(host.Run({"sql", "a.mdb",
                      "INSERT INTO People (Name) IN \"a.mdb\" SELECT Name & '2' FROM People"}),
            0)
      << host.complained;
  EXPECT_EQ(Names(), "Name\nAda\nAda2\nBob; Jr.\nBob; Jr.2\n");
}

/// Gives a column of a table in a.mdb a rule, as Access would.
void GiveRule(FakeJetdbHost& host, std::string_view table, std::string_view column,
              std::string_view rule) {
  const auto pager = jet::Pager::Open(host.storage(), "a.mdb", {});
  ASSERT_TRUE(pager.ok());
  const auto catalog = jet::Catalog::Open(*pager.value());
  ASSERT_TRUE(catalog.ok());
  Result<jet::Transaction> transaction = jet::Transaction::Begin(*catalog.value());
  ASSERT_TRUE(transaction.ok());
  const Result<jet::Property> property =
      jet::MakeProperty("ValidationRule", jet::ColumnType::Memo, false, jet::Text(rule));
  ASSERT_TRUE(property.ok());
  EXPECT_TRUE(jet::Schema(*catalog.value()).SetProperty(table, column, property.value()).ok());
  EXPECT_TRUE(transaction.value().Commit().ok());
}

TEST_F(JetdbVerbs, SqlHoldsRowsThatAChangeCascadesToToTheirRules) {
  ASSERT_EQ(host.Run({"sql", "a.mdb",
                      "CREATE TABLE Rooms ([No] LONG PRIMARY KEY);"
                      "CREATE TABLE Beds (Room LONG, CONSTRAINT k FOREIGN KEY (Room) "
                      "REFERENCES Rooms ([No]) ON UPDATE CASCADE);"
                      "INSERT INTO Rooms VALUES (1); INSERT INTO Beds VALUES (1)"}),
            0)
      << host.complained;
  GiveRule(host, "Beds", "Room", "<5");
  EXPECT_EQ(host.Run({"sql", "a.mdb", "UPDATE Rooms SET [No] = 9"}), 1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3316: "));
  EXPECT_EQ(host.Run({"sql", "a.mdb", "UPDATE Rooms SET [No] = 4"}), 0) << host.complained;
  EXPECT_EQ(host.Run({"sql", "a.mdb", "--format", "csv", "SELECT Room FROM Beds"}), 0);
  EXPECT_EQ(host.printed, "Room\n4\n");
}

TEST_F(JetdbVerbs, CompactWritesANewFileAlone) {
  EXPECT_EQ(host.Run({"compact", "a.mdb", "c.mdb"}), 0) << host.complained;
  EXPECT_EQ(host.Run({"verify", "c.mdb"}), 0) << host.printed;
  EXPECT_EQ(host.Run({"sql", "c.mdb", "--format", "csv", "SELECT Name FROM People"}), 0);
  EXPECT_EQ(host.printed, "Name\nAda\nBob; Jr.\n");
  EXPECT_EQ(host.Run({"compact", "a.mdb", "c.mdb"}), 1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3204: "));
}

struct PasswordCase {
  const char* what;
  std::vector<std::string> options;
  int code;
};

TEST_F(JetdbVerbs, PasswordsComeFromWhereTheLineSays) {
  host.texts["secret.txt"] = "pass word\r\nmore\n";
  host.texts["wrong.txt"] = "Pass word";
  host.variables["SECRET"] = "pass word";
  ASSERT_EQ(host.Run({"compact", "a.mdb", "p.mdb", "--new-password-file", "secret.txt"}), 0)
      << host.complained;
  const PasswordCase rows[] = {
      {"none", {}, 1},
      {"on the line", {"--password", "pass word"}, 0},
      {"from a file", {"--password-file", "secret.txt"}, 0},
      {"from the environment", {"--password-env", "SECRET"}, 0},
      {"another", {"--password-file", "wrong.txt"}, 1},
      {"a file that is not there", {"--password-file", "none.txt"}, 1},
      {"a variable that is not there", {"--password-env", "NONE"}, 1},
  };
  for (const char* const verb : {"info", "tables", "dump", "verify"}) {
    for (const PasswordCase& row : rows) {
      SCOPED_TRACE(std::string(verb) + ", password " + row.what);
      std::vector<std::string> line = {verb, "p.mdb"};
      line.insert(line.end(), row.options.begin(), row.options.end());
      EXPECT_EQ(host.Run(line), row.code) << host.complained;
    }
  }
  EXPECT_EQ(host.Run({"sql", "p.mdb", "SELECT 1"}), 1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3031: "));
  EXPECT_EQ(host.Run({"compact", "p.mdb", "q.mdb", "--password", "pass word", "--no-password"}), 0);
  EXPECT_EQ(host.Run({"info", "q.mdb"}), 0);
}

TEST_F(JetdbVerbs, ErrorsHaveANumberAndAText) {
  EXPECT_EQ(host.Run({"info", "none.mdb"}), 1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3024: "));
  host.files().Put("text.mdb", "no database");
  EXPECT_EQ(host.Run({"verify", "text.mdb"}), 1);
  EXPECT_THAT(host.complained, StartsWith("jetdb: 3343: "));
  EXPECT_EQ(host.Run({"repair"}), 2);
}

}  // namespace
}  // namespace zent::testing
