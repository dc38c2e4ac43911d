#include <gtest/gtest.h>

#include "dataupdate/DatabaseMachine.h"
#include "dataupdate/RowPresence.h"

namespace zent {
namespace {

using testing::DatabaseMachine;

using Texts = std::vector<std::string>;

std::string Times(std::size_t count, char c) { return std::string(count, c); }

/// Pick lists whose entries may be of any length.
struct ListsMachine : DatabaseMachine {
  ListsMachine() {
    Execute(*korvo, {"CREATE TABLE Lists (ListName TEXT(50), Entry MEMO)"});
    const Texts entries = {"Berlin", Times(300, 'x'), "Rome" + Times(300, ' '), Times(255, 'y')};
    for (const std::string& entry : entries) {
      Execute(*korvo, {"INSERT INTO Lists VALUES ('City', '" + entry + "')"});
    }
    Execute(*korvo, {"INSERT INTO Lists VALUES ('City', Null)"});
  }
  RowPresence Presence() {
    Result<RowPresence> presence = RowPresence::Of(*korvo, "Lists", {"ListName", "Entry"});
    EXPECT_TRUE(presence.ok());
    return std::move(presence.value());
  }
};

std::string StatementFor(const std::string& entry) {
  return "SELECT * FROM Lists WHERE ListName='City' AND Entry='" + entry + "'";
}

/// What fails when it is run: an answer without an error came from memory.
constexpr const char* kNoStatement = "no statement";

struct PresenceCase {
  const char* what;
  std::string entry;
  bool is_there;
  bool is_asked;  ///< of the database
};

const PresenceCase kPresenceCases[] = {
    {"a text that is there", "Berlin", true, false},
    {"in another case, with blanks behind it", "BERLIN  ", true, false},
    {"one that is missing", "Paris", false, false},
    {"no text", "", false, false},
    {"the longest that a key takes whole", Times(255, 'y'), true, false},
    {"a longer one that begins so", Times(256, 'y'), false, true},
    {"a long one that begins like none", Times(300, 'q'), false, false},
    {"a long one that is there", Times(300, 'x'), true, true},
    {"a longer one", Times(301, 'x'), false, true},
    {"its beginning", Times(255, 'x'), false, true},
    {"less than its beginning", Times(254, 'x'), false, false},
    {"one that is long by its blanks alone", "Rome", true, true},
};

TEST(RowPresence, KnowsTheRowsOfATableWithoutAnIndex) {
  ListsMachine given;
  RowPresence presence = given.Presence();
  for (const PresenceCase& row : kPresenceCases) {
    SCOPED_TRACE(row.what);
    const Texts values = {"City", row.entry};
    const Result<bool> has = presence.Has(StatementFor(row.entry), values);
    ASSERT_TRUE(has.ok()) << has.error().description;
    EXPECT_EQ(has.value(), row.is_there);
    EXPECT_EQ(!presence.Has(kNoStatement, values).ok(), row.is_asked);
  }
}

TEST(RowPresence, RunsAStatementThatSaysSomethingElse) {
  ListsMachine given;
  RowPresence presence = given.Presence();
  EXPECT_FALSE(presence.Has(kNoStatement, std::nullopt).ok());
}

TEST(RowPresence, TakesNoticeOfARowThatWasAdded) {
  ListsMachine given;
  RowPresence presence = given.Presence();
  const Texts oslo = {"City", "Oslo"};
  const Texts long_one = {"City", Times(300, 'o')};
  EXPECT_FALSE(presence.Has(kNoStatement, oslo).value_or(true));
  EXPECT_FALSE(presence.Has(kNoStatement, long_one).value_or(true));
  presence.Added(oslo);
  presence.Added(long_one);
  EXPECT_TRUE(presence.Has(kNoStatement, oslo).value_or(false));
  EXPECT_FALSE(presence.Has(kNoStatement, long_one).ok()) << "the database is asked";
}

TEST(RowPresence, AsksATableWithAnIndex) {
  DatabaseMachine given;
  given.Execute(*given.korvo, {"CREATE TABLE Lists (ListName TEXT(50), Entry TEXT(50))",
                               "CREATE INDEX ByEntry ON Lists (ListName, Entry)",
                               "INSERT INTO Lists VALUES ('City', 'Berlin')"});
  Result<RowPresence> presence = RowPresence::Of(*given.korvo, "Lists", {"ListName", "Entry"});
  ASSERT_TRUE(presence.ok());
  const Texts berlin = {"City", "Berlin"};
  EXPECT_TRUE(presence.value().Has(StatementFor("Berlin"), berlin).value_or(false));
  EXPECT_FALSE(presence.value().Has(kNoStatement, berlin).ok());
}

}  // namespace
}  // namespace zent
