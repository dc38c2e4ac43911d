#include <nlohmann/json.hpp>

#include "database/TranslateSQL.h"
#include "database/engines/odbc/servers/ServerRun.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAreArray;

/// Statements of the Access dialect, translated, on a server.
class ServerStatements : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    server.Run(
        "CREATE TABLE T (ID INT PRIMARY KEY, Name VARCHAR(50), Active INT, Closed INT, A INT, "
        "B INT, D DATETIME, X INT, Y INT, Z INT, Price INT)");
    server.Run(
        "INSERT INTO T VALUES (1, 'Smith', 1, 0, 0, 1, '2005-01-02', NULL, 1, 0, 3),"
        "(2, 'Anvil', -1, 0, 0, -1, '2005-01-03', 5, NULL, 1, 5),"
        "(3, ' Otto ', 0, 1, 2, 1, '2999-01-01', 5, 1, 1, 7),"
        "(4, 'M\xC3\xBCller', 1, 1, 1, 1, NULL, NULL, 2, 0, 9),"
        "(5, NULL, 0, 0, 1, 0, NULL, 5, 5, 0, NULL)");
    server.Run("CREATE TABLE U (A INT, \"date\" INT, Date_ INT)");
    server.Run("INSERT INTO U VALUES (1, 7, 8)");
    server.Run("CREATE TABLE Counters (TableName VARCHAR(50), CurCount VARCHAR(50))");
    server.Run("INSERT INTO Counters VALUES ('SiteID', '0'), ('Companies', 'CM00000042')");
    // A function is made in the language of the session; its name is looked for in the connection's
    // own database.
    server.Run("SET SESSION sql_mode = 'STRICT_TRANS_TABLES,ANSI_QUOTES'");
    server.Run(
        "CREATE FUNCTION GetDate() RETURNS DATETIME NOT DETERMINISTIC "
        "RETURN '2006-05-04 03:02:01'");
    ASSERT_NE(given.database, nullptr) << ::testing::PrintToString(given.window.boxes);
  }

  /// The statement of that name in the table of statements, for this kind of server.
  std::string Translated(const std::string& what) {
    const std::string path = std::string(ZENT_TEST_DATA) + "/sql/statements.json";
    for (const nlohmann::json& row : nlohmann::json::parse(ReadHostFile(path))) {
      if (row["what"] == what) return TranslateSQL(given.run, row["access"].get<std::string>());
    }
    ADD_FAILURE() << what << " is no statement of the table";
    return {};
  }

  ServerDatabase server{GetParam()};
  ServerRun given{server.connect_text(), GetParam()};
};

using Rows = std::vector<std::string>;

struct StatementCase {
  const char* what;  ///< its name in the table of statements
  Rows sql_server;
  Rows oracle;
};

// What the server that stands for both takes: its own functions are not theirs, and it reads dates
// with the year first alone.
const StatementCase kStatementCases[] = {
    {"a plain statement stays", {"Smith"}, {"Smith"}},
    {"Mid", {"Smi", "M\xC3\xBCl"}, {"Anv"}},
    {"mid in another case",
     {"m", "n", "O", "\xC3\xBC", "null"},
     {"m", "n", "O", "\xC3\xBC", "null"}},
    {"Date", {"Smith", "Anvil"}, {"Smith", "Anvil"}},
    {"True and False with and without a blank", {"Smith"}, {"Anvil"}},
    {"= False and =True", {"Smith"}, {"Anvil"}},
    {"<= True is hit", {"Smith", "Anvil", "M\xC3\xBCller", "null"}, {}},
    {"= Null with a blank behind", {"Smith"}, {"Smith"}},
    {"=Null with a blank behind",
     {"Smith", "Anvil", "M\xC3\xBCller"},
     {"Smith", "Anvil", "M\xC3\xBCller"}},
    {"=Null at the very end stays", {}, {}},
    {"= Null before a parenthesis stays", {}, {}},
    // A null is trimmed to an empty text by the application's own function alone.
    {"Trim",
     {"Smith", "Anvil", "Otto", "M\xC3\xBCller", ""},
     {"Smith", "Anvil", "Otto", "M\xC3\xBCller", "null"}},
    {"IsNull", {"null"}, {"null"}},
    {"IsNull before Trim",
     {"Smith", "Anvil", " Otto ", "M\xC3\xBCller", "null"},
     {"Smith", "Anvil", " Otto ", "M\xC3\xBCller"}},
    {"a date literal of the year first", {"Smith"}, {"Smith"}},
    {"double quotes", {"Smith"}, {"Smith"}},
    {"a wildcard", {"Anvil"}, {"Anvil"}},
    {"a wildcard in double quotes", {"Anvil"}, {"Anvil"}},
    {"a wildcard of the servers stays", {"Anvil"}, {"Anvil"}},
    {"letters beyond ASCII", {"M\xC3\xBCller"}, {"M\xC3\xBCller"}},
    {"Count(*) stays", {"5"}, {"5"}},
    {"Count(*) beside a wildcard stays", {"1"}, {"1"}},
    {"a star of a product", {"6", "10", "14", "18", "null"}, {"6", "10", "14", "18", "null"}},
    {"the counters of the site", {"SiteID|0"}, {"SiteID|0"}},
    {"line breaks are Oracle's alone to lose", {"Smith"}, {"Smith"}},
    {"a UNION ALL", {"0", "0", "2", "1", "1", "7"}, {"0", "0", "2", "1", "1", "8"}},
};

TEST_P(ServerStatements, GiveTheRowsThatAreMeant) {
  const bool is_oracle = GetParam() == std::string("KorvoOracle");
  for (const StatementCase& row : kStatementCases) {
    SCOPED_TRACE(row.what);
    EXPECT_THAT(RowTexts(*given.database, Translated(row.what)),
                UnorderedElementsAreArray(is_oracle ? row.oracle : row.sql_server));
  }
}

TEST_P(ServerStatements, ChangeTheRowThatStillHoldsWhatWasRead) {
  const std::string change = Translated("an update of a counter");
  EXPECT_EQ(given.database->Execute(change).value_or(-1), 1);
  EXPECT_EQ(given.database->Execute(change).value_or(-1), 0);
  EXPECT_THAT(
      RowTexts(*given.database, "SELECT CurCount FROM Counters WHERE TableName='Companies'"),
      ElementsAre("CM00000043"));
}

ZENT_ON_SERVER_KINDS(ServerStatements);

}  // namespace
}  // namespace zent::testing
