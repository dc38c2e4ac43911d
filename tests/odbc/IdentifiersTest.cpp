#include <gtest/gtest.h>

#include "odbc/CatalogQuestion.h"
#include "odbc/Identifiers.h"
#include "odbc/SimpleSelect.h"

namespace zent::odbc {
namespace {

struct QuoteCase {
  const char* name;
  const char* quote;
  const char* quoted;
};

constexpr QuoteCase kQuoteCases[] = {
    {"plain", "\"", "\"plain\""}, {"two words", "`", "`two words`"}, {"a\"b", "\"", "\"a\"\"b\""},
    {"a`b", "`", "`a``b`"},       {"a]b[c", "[", "[a]]b[c]"},        {"plain", "", "plain"},
    {"", "\"", "\"\""},           {"it's", "\"", "\"it's\""},
};

TEST(QuoteIdentifier, DoublesTheQuote) {
  for (const QuoteCase& row : kQuoteCases) {
    SCOPED_TRACE(row.quoted);
    EXPECT_EQ(QuoteIdentifier(row.name, row.quote), row.quoted);
  }
}

TEST(QuoteTable, LeavesOutWhatIsEmpty) {
  EXPECT_EQ(QuoteTable({"c", "s", "t"}, "\""), "\"c\".\"s\".\"t\"");
  EXPECT_EQ(QuoteTable({"", "dbo", "My Table"}, "`"), "`dbo`.`My Table`");
  EXPECT_EQ(QuoteTable({"", "", "t"}, ""), "t");
}

TEST(EscapePattern, TakesTheMeaningFromWildcards) {
  EXPECT_EQ(EscapePattern("a_b%c\\d", "\\"), "a\\_b\\%c\\\\d");
  EXPECT_EQ(EscapePattern("a_b", ""), "a_b");
}

struct SelectCase {
  const char* what;
  const char* sql;
  const char* written;  ///< null: no single table
  TableName table;
};

const SelectCase kSelectCases[] = {
    {"plain", "SELECT * FROM Counters", "Counters", {"", "", "Counters"}},
    {"any case, spaces", " select\r\n*\tfrom  Counters  ", "Counters", {"", "", "Counters"}},
    {"a condition",
     "SELECT * FROM Counters WHERE TableName='SiteID' ",
     "Counters",
     {"", "", "Counters"}},
    {"an order", "SELECT * FROM T ORDER BY a;", "T", {"", "", "T"}},
    {"a semicolon", "SELECT * FROM T;", "T", {"", "", "T"}},
    {"a schema", "SELECT * FROM dbo.T", "dbo.T", {"", "dbo", "T"}},
    {"a catalog", "SELECT * FROM c.dbo.T", "c.dbo.T", {"c", "dbo", "T"}},
    {"quoted",
     "SELECT * FROM \"My \"\"T\"\"\" WHERE a=1",
     "\"My \"\"T\"\"\"",
     {"", "", "My \"T\""}},
    {"brackets", "SELECT * FROM [dbo].[My T]", "[dbo].[My T]", {"", "dbo", "My T"}},
    {"backquotes", "SELECT * FROM `My T`", "`My T`", {"", "", "My T"}},
    {"words within a text",
     "SELECT * FROM T WHERE a=' GROUP BY ' OR b='it''s UNION x'",
     "T",
     {"", "", "T"}},
    {"a column named so", "SELECT * FROM T WHERE \"a GROUP b\"=1", "T", {"", "", "T"}},
    {"columns", "SELECT a FROM T", nullptr, {}},
    {"a qualified star", "SELECT T.* FROM T", nullptr, {}},
    {"two tables", "SELECT * FROM A, B", nullptr, {}},
    {"a join", "SELECT * FROM A INNER JOIN B ON A.x=B.x", nullptr, {}},
    {"an alias", "SELECT * FROM T x WHERE x.a=1", nullptr, {}},
    {"a union", "SELECT * FROM T WHERE a=1 UNION SELECT * FROM U", nullptr, {}},
    {"a group", "SELECT * FROM T WHERE a=1 GROUP BY a", nullptr, {}},
    {"a subquery", "SELECT * FROM (SELECT 1) x", nullptr, {}},
    {"no select", "UPDATE T SET a=1", nullptr, {}},
    {"four parts", "SELECT * FROM a.b.c.d", nullptr, {}},
    {"a quote that does not end", "SELECT * FROM \"T", nullptr, {}},
    {"nothing behind", "SELECT * FROM", nullptr, {}},
    {"nothing", "", nullptr, {}},
};

TEST(TableOfSelect, KnowsTheFormThatCanBeChanged) {
  for (const SelectCase& row : kSelectCases) {
    SCOPED_TRACE(row.what);
    const std::optional<SelectedTable> selected = TableOfSelect(row.sql);
    ASSERT_EQ(selected.has_value(), row.written != nullptr);
    if (!selected) continue;
    EXPECT_EQ(selected->written, row.written);
    EXPECT_EQ(selected->table, row.table);
  }
}

}  // namespace
}  // namespace zent::odbc
