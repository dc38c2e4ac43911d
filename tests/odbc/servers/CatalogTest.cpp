#include "odbc/OdbcCatalog.h"
#include "odbc/servers/ServerTest.h"

namespace zent::odbc {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

class Catalogs : public ServerTest {
 protected:
  OdbcCatalog catalog() { return OdbcCatalog(server()); }
};

TableName Named(const char* name) { return {{}, {}, name}; }

TEST_P(Catalogs, ListTheTablesOfTheConnectionsDatabase) {
  MakeTable("Listed", "(id INT)");
  Run("CREATE OR REPLACE VIEW ListedView AS SELECT * FROM Listed");
  const auto tables = catalog().Tables();
  ASSERT_TRUE(tables.ok()) << tables.status().error().description;
  EXPECT_THAT(tables.value(), Contains(OdbcTable{Named("Listed"), false}));
  EXPECT_THAT(tables.value(), Contains(OdbcTable{Named("ListedView"), true}));
  EXPECT_THAT(tables.value(), Contains(OdbcTable{Named("Counters"), false}).Times(1));
}

TEST_P(Catalogs, DescribeTheColumnsOfATable) {
  MakeTable("Columned",
            "(id INT NOT NULL, big BIGINT UNSIGNED, name VARCHAR(40) DEFAULT 'x', "
            "price DECIMAL(12,3))");
  const auto columns = catalog().Columns(Named("Columned"));
  ASSERT_TRUE(columns.ok()) << columns.status().error().description;
  ASSERT_EQ(columns.value().size(), 4U);
  EXPECT_EQ(columns.value()[0].name, "id");
  EXPECT_FALSE(columns.value()[0].nullable);
  EXPECT_EQ(KindOf(columns.value()[0].type), ColumnKind::Integer);
  EXPECT_EQ(KindOf(columns.value()[1].type), ColumnKind::Decimal);
  EXPECT_TRUE(columns.value()[2].nullable);
  EXPECT_EQ(columns.value()[2].type.size, 40U);
  EXPECT_EQ(columns.value()[2].default_value, "'x'");
  EXPECT_EQ(columns.value()[3].type.digits, 3);
}

/// "_" and "%" stand for any characters in the patterns of the interface.
TEST_P(Catalogs, TakeNamesAsTheyAre) {
  MakeTable("\"one_table\"", "(a INT)");
  MakeTable("\"oneXtable\"", "(b INT, c INT)");
  const auto columns = catalog().Columns(Named("one_table"));
  ASSERT_TRUE(columns.ok());
  EXPECT_THAT(columns.value(), ElementsAre(Field(&OdbcColumn::name, "a")));
  const auto none = catalog().Columns(Named("%"));
  ASSERT_TRUE(none.ok());
  EXPECT_THAT(none.value(), IsEmpty());
}

TEST_P(Catalogs, KnowThePrimaryKey) {
  MakeTable("Keyed", "(a INT, b VARCHAR(5), c INT, PRIMARY KEY (c, a))");
  MakeTable("Keyless", "(a INT)");
  EXPECT_THAT(catalog().PrimaryKey(Named("Keyed")).value_or({}), UnorderedElementsAre("a", "c"));
  EXPECT_THAT(catalog().PrimaryKey(Named("Keyless")).value_or({"failed"}), IsEmpty());
  EXPECT_THAT(catalog().PrimaryKey(Named("NoSuchTable")).value_or({"failed"}), IsEmpty());
}

TEST_P(Catalogs, ListTheIndexes) {
  MakeTable("Indexed", "(a INT PRIMARY KEY, b INT, c INT)");
  Run("CREATE UNIQUE INDEX OnB ON Indexed (b)");
  Run("CREATE INDEX OnCAndA ON Indexed (c, a)");
  const auto indexes = catalog().Indexes(Named("Indexed"));
  ASSERT_TRUE(indexes.ok()) << indexes.status().error().description;
  EXPECT_THAT(indexes.value(),
              UnorderedElementsAre(OdbcIndex{"PRIMARY", true, {{"a", false}}},
                                   OdbcIndex{"OnB", true, {{"b", false}}},
                                   OdbcIndex{"OnCAndA", false, {{"c", false}, {"a", false}}}));
  EXPECT_THAT(catalog().Indexes(Named("NoSuchTable")).value_or({{}}), IsEmpty());
}

TEST_P(Catalogs, ReachTheTablesOfAnotherDatabase) {
  const bool is_oracle = GetParam() == std::string("KorvoOracle");
  const TableName other = {{}, is_oracle ? "korvo" : "korvo_oracle", "Counters"};
  EXPECT_THAT(catalog().PrimaryKey(other).value_or({}), ElementsAre("TableName"));
}

ZENT_ON_BOTH_KINDS(Catalogs);

}  // namespace
}  // namespace zent::odbc
