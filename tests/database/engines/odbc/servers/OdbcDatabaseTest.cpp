#include "contracts/DatabaseContract.h"
#include "database/engines/odbc/OdbcDatabase.h"
#include "database/engines/odbc/servers/ServerDatabase.h"
#include "odbc/Identifiers.h"

namespace zent::testing {
namespace {

/// The server's type of a field.
std::string TypeText(const FieldDefinition& field) {
  const std::string size = "(" + std::to_string(field.size) + ")";
  switch (field.type) {
    case FieldType::Boolean:
      return "BIT";
    case FieldType::Byte:
      return "TINYINT UNSIGNED";
    case FieldType::Integer:
      return "SMALLINT";
    case FieldType::Long:
      return "INTEGER";
    case FieldType::BigInt:
      return "BIGINT";
    case FieldType::Single:
      return "FLOAT";
    case FieldType::Double:
      return "DOUBLE";
    case FieldType::Decimal:
      return "DECIMAL(18,2)";
    case FieldType::Date:
      return "DATETIME(3)";
    case FieldType::Binary:
      return "VARBINARY" + size;
    case FieldType::LongBinary:
      return "LONGBLOB";
    case FieldType::Memo:
      return "LONGTEXT";
    default:
      return "VARCHAR" + size;
  }
}

std::string Quoted(const std::string& name) { return odbc::QuoteIdentifier(name, "\""); }

std::string IndexText(const IndexDefinition& index) {
  std::string columns;
  for (const IndexField& field : index.fields) {
    columns += (columns.empty() ? "" : ", ") + Quoted(field.name);
  }
  const std::string kind = index.primary ? "PRIMARY KEY " : "INDEX " + Quoted(index.name);
  return ", " + kind + " (" + columns + ")";
}

class ServerHost final : public ContractHost {
 public:
  explicit ServerHost(const char* data_source) : server_(data_source) {}
  std::unique_ptr<OpenedDatabase> Open() override { return server_.Open(); }
  void MakeTable(OpenedDatabase& /*database*/, const TableDefinition& definition) override {
    std::string columns;
    for (const FieldDefinition& field : definition.fields) {
      columns += (columns.empty() ? "" : ", ") + Quoted(field.name) + " " + TypeText(field) +
                 (field.required ? " NOT NULL" : " NULL");
    }
    for (const IndexDefinition& index : definition.indexes) columns += IndexText(index);
    server_.Run("CREATE TABLE " + Quoted(definition.name) + " (" + columns + ")");
  }

 private:
  ServerDatabase server_;
};

DatabaseAdapter OnServer(const char* data_source) {
  return {.name = data_source,
          .make = [data_source] { return std::make_unique<ServerHost>(data_source); },
          .types = {FieldType::Boolean, FieldType::Byte, FieldType::Integer, FieldType::Long,
                    FieldType::BigInt, FieldType::Single, FieldType::Double, FieldType::Decimal,
                    FieldType::Date, FieldType::Text, FieldType::Memo, FieldType::Binary,
                    FieldType::LongBinary},
          .changes_structure = false};
}

INSTANTIATE_TEST_SUITE_P(Servers, DatabaseContract,
                         ::testing::Values(OnServer("KorvoServer"), OnServer("KorvoOracle")),
                         [](const ::testing::TestParamInfo<DatabaseAdapter>& adapter) {
                           return adapter.param.name;
                         });

class OdbcDatabases : public ::testing::TestWithParam<const char*> {
 protected:
  ServerDatabase server{GetParam()};
};

TEST_P(OdbcDatabases, AreServersByTheNameOfTheirDataSource) {
  const auto database = server.Open();
  EXPECT_EQ(database->Kind(), DatabaseKind::Server);
  EXPECT_EQ(database->Name(), GetParam());
  EXPECT_EQ(database->EqualityKey("abc"), std::nullopt);
}

TEST_P(OdbcDatabases, NeverSaveOverAnothersChange) {
  server.Run("CREATE TABLE T (id INT PRIMARY KEY, v VARCHAR(20))");
  server.Run("INSERT INTO T VALUES (1, 'old')");
  const auto database = server.Open();
  const auto rows = database->OpenRecordset("SELECT * FROM T", RecordsetUse::Change);
  ASSERT_TRUE(rows.ok());
  server.Run("UPDATE T SET v='theirs'");
  ASSERT_TRUE(rows.value()->Edit().ok());
  ASSERT_TRUE(rows.value()->Set("v", "mine").ok());
  ExpectFault(rows.value()->Update(), kEngineWriteConflict);
  EXPECT_TRUE(server.engine().Errors().empty()) << "it is not the driver that says so";
}

TEST_P(OdbcDatabases, SeeInATransactionWhatOthersHaveCommittedByThen) {
  server.Run("CREATE TABLE T (id INT PRIMARY KEY)");
  const auto database = server.Open();
  ASSERT_TRUE(database->BeginTransaction().ok());
  EXPECT_TRUE(database->OpenRecordset("T", RecordsetUse::Read).value()->AtEnd());
  server.Run("INSERT INTO T VALUES (1)");
  EXPECT_FALSE(database->OpenRecordset("T", RecordsetUse::Read).value()->AtEnd());
  EXPECT_TRUE(database->Rollback().ok());
}

TEST_P(OdbcDatabases, TakeValuesOfOtherTypes) {
  server.Run("CREATE TABLE T (id INT PRIMARY KEY, pay DECIMAL(19,4), done TINYINT, n VARCHAR(20))");
  const auto database = server.Open();
  const auto rows = database->OpenRecordset("T", RecordsetUse::Change);
  ASSERT_TRUE(rows.ok() && rows.value()->AddNew().ok());
  EXPECT_TRUE(rows.value()->Set("id", "1").ok());
  EXPECT_TRUE(rows.value()->Set("pay", Currency{125000}).ok());
  EXPECT_TRUE(rows.value()->Set("done", true).ok());
  EXPECT_TRUE(rows.value()->Set("n", DateSerial{38354}).ok());
  ASSERT_TRUE(rows.value()->Update().ok());
  const auto read = database->OpenRecordset("T", RecordsetUse::Read);
  EXPECT_EQ(RowText(*read.value()), "1|12.5000|-1|1/2/2005");
}

TEST_P(OdbcDatabases, TellEachErrorOfTheServerWithItsState) {
  const auto database = server.Open();
  const auto done = database->Execute("SELECT FROM WHERE");
  ExpectFault(done.status(), 1064);
  ASSERT_EQ(server.engine().Errors().size(), 1U);
  EXPECT_EQ(server.engine().Errors().front().number, 1064);
  EXPECT_EQ(server.engine().Errors().front().sqlstate, "42000");
  EXPECT_THAT(server.engine().Errors().front().source, ::testing::HasSubstr("ma"));
}

TEST_P(OdbcDatabases, AreOnlyNamesOnceClosed) {
  const auto database = server.Open();
  ASSERT_TRUE(database->Close().ok());
  ASSERT_TRUE(database->Close().ok());
  EXPECT_EQ(database->Name(), GetParam());
  EXPECT_FALSE(database->InTransaction());
  ExpectFault(database->Execute("SELECT 1").status(), kObjectNotSet);
  ExpectFault(database->OpenRecordset("T", RecordsetUse::Read).status(), kObjectNotSet);
  ExpectFault(database->BeginTransaction(), kObjectNotSet);
  ExpectFault(database->Tables().status(), kObjectNotSet);
}

ZENT_ON_SERVER_KINDS(OdbcDatabases);

}  // namespace
}  // namespace zent::testing
