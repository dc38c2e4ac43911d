#include "database/engines/odbc/servers/ServerRun.h"
#include "dataupdate/LookupImport.h"
#include "dataupdate/LookupItems.h"

namespace zent::testing {
namespace {

using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

/// Items of lists that go into the table of a server.
class ServerLookup : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    server.Run("CREATE TABLE Lookup LIKE korvo.Lookup");
    ASSERT_NE(given.database, nullptr) << ::testing::PrintToString(given.window.boxes);
  }
  std::vector<std::string> Items() {
    return RowTexts(*given.database, "SELECT * FROM Lookup ORDER BY LookupValue");
  }
  CommandRecord Import(std::string_view file) {
    given.machine.files.PutFile(R"(D:\Package\Items.txt)", file);
    return given.Call(ImportLookupItems, {"importlookup", "Items.txt"});
  }

  ServerDatabase server{GetParam()};
  ServerRun given{server.connect_text(), GetParam()};
};

struct ItemCase {
  const char* what;
  LookupItem item;
  bool added;
};

const ItemCase kItemCases[] = {
    {"a value", {"City", "Ulm", "ours", "1"}, true},
    {"the same again", {"City", "Ulm", "theirs", "1"}, false},
    {"the same at any place", {"City", "Ulm"}, false},
    {"the same at another place", {"City", "Ulm", "", "2"}, true},
    {"a value of another list", {"Town", "Ulm"}, true},
    {"an apostrophe", {"City", "O'Neil"}, true},
    {"the apostrophe again", {"City", "O'Neil"}, false},
    {"the apostrophe at a place", {"City", "O'Neil", "", "3"}, true},
    {"the apostrophe at its place again", {"City", "O'Neil", "", "3"}, false},
    {"letters beyond ASCII", {"City", "K\xC3\xB6ln"}, true},
    {"the letters again", {"City", "K\xC3\xB6ln"}, false},
};

TEST_P(ServerLookup, GetsAnItemThatIsNotThere) {
  Result<LookupTable> table = LookupTable::Open(given.run, *given.database);
  ASSERT_TRUE(table.ok()) << table.error().description;
  for (const ItemCase& row : kItemCases) {
    SCOPED_TRACE(row.what);
    const Result<bool> added = table.value().AddIfMissing(row.item);
    ASSERT_TRUE(added.ok()) << added.error().description;
    EXPECT_EQ(added.value(), row.added);
  }
  EXPECT_THAT(Items(),
              UnorderedElementsAre("City|Ulm|ours|1", "City|Ulm||2", "Town|Ulm||", "City|O'Neil||",
                                   "City|O'Neil||3", "City|K\xC3\xB6ln||"));
}

TEST_P(ServerLookup, GetsTheLinesOfAFileOnce) {
  constexpr std::string_view kFile =
      "LookupFieldName,LookupValue,LookupDesc,DisplayOrder\r\nCity,Ulm,Minster,1\r\n"
      "City,Ulm,again,\r\n\r\n\"City\",\"O'Neil\",\"\",2\r\n";
  for (const char* what : {"the first time", "the second time"}) {
    SCOPED_TRACE(what);
    const CommandRecord record = Import(kFile);
    EXPECT_EQ(record.outcome, Outcome::Done) << record.reason;
    EXPECT_THAT(Items(), UnorderedElementsAre("City|Ulm|Minster|1", "City|O'Neil||2"));
  }
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST_P(ServerLookup, KeepsTheLinesBeforeTheOneThatFails) {
  const CommandRecord record = Import("City,Bonn\r\nIt's,broken\r\nCity,Paris\r\n");
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_THAT(given.messages().back(), StartsWith("Error importing Lookup \r\nDescription: "));
  EXPECT_THAT(Items(), UnorderedElementsAre("City|Bonn||"));
}

ZENT_ON_SERVER_KINDS(ServerLookup);

}  // namespace
}  // namespace zent::testing
