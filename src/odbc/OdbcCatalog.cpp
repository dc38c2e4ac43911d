#include "odbc/OdbcCatalog.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/Text.h"
#include "odbc/CatalogQuestion.h"
#include "odbc/OdbcConnection.h"
#include "odbc/OdbcSession.h"

namespace zent::odbc {
namespace {

// Columns of the answers, counted from 1, as the reference of each call lists them.
constexpr std::size_t kTableSchema = 2;
constexpr std::size_t kTableName = 3;
constexpr std::size_t kTableType = 4;
constexpr std::size_t kColumnName = 4;
constexpr std::size_t kDataType = 5;
constexpr std::size_t kKeySequence = 5;
constexpr std::size_t kTypeName = 6;
constexpr std::size_t kColumnSize = 7;
constexpr std::size_t kDecimalDigits = 9;
constexpr std::size_t kNullable = 11;
constexpr std::size_t kColumnDefault = 13;
constexpr std::size_t kNonUnique = 4;
constexpr std::size_t kIndexName = 6;
constexpr std::size_t kIndexType = 7;
constexpr std::size_t kIndexColumn = 9;
constexpr std::size_t kAscOrDesc = 10;

/// Takes texts and numbers of one row, and keeps the first error.
class RowTaker {
 public:
  explicit RowTaker(OdbcStatement& answer) : answer_(answer) {}

  std::string Text(std::size_t number) {
    Result<std::string> text = TextAt(answer_, number);
    if (text.ok()) return std::move(text.value());
    if (status_.ok()) status_ = text.error();
    return {};
  }
  std::int64_t Number(std::size_t number) {
    const Result<std::int64_t> value = NumberAt(answer_, number);
    if (value.ok()) return value.value();
    if (status_.ok()) status_ = value.error();
    return 0;
  }
  const Status& status() const { return status_; }

 private:
  OdbcStatement& answer_;
  Status status_;
};

OdbcColumn TakeColumn(RowTaker& row) {
  OdbcColumn column;
  column.name = row.Text(kColumnName);
  column.type.number = static_cast<std::int16_t>(row.Number(kDataType));
  column.type_name = row.Text(kTypeName);
  column.type.size = static_cast<std::uint64_t>(std::max<std::int64_t>(row.Number(kColumnSize), 0));
  column.type.digits = static_cast<std::int16_t>(row.Number(kDecimalDigits));
  column.nullable = row.Number(kNullable) != SQL_NO_NULLS;
  column.default_value = row.Text(kColumnDefault);
  // The catalogue has no column for it; the type's name tells.
  column.type.is_unsigned =
      FindIgnoringCase(column.type_name, "unsigned") != std::string_view::npos;
  return column;
}

/// Asks, and hands each row of the answer to `take`.
Status AskForRows(OdbcConnection& connection,
                  const std::function<std::int16_t(void* statement)>& ask,
                  const std::function<void(RowTaker&)>& take) {
  Result<OdbcStatement> answer = connection.NewStatement(Reading::Streamed);
  if (!answer.ok()) return answer.error();
  if (Status asked = answer.value().Ask(ask); !asked.ok()) return asked;
  return ForEachRow(answer.value(), [&take](OdbcStatement& row) {
    RowTaker taker(row);
    take(taker);
    return taker.status();
  });
}

void AddToIndex(std::vector<OdbcIndex>& indexes, RowTaker& row) {
  const bool unique = row.Number(kNonUnique) == SQL_FALSE;
  std::string name = row.Text(kIndexName);
  const bool is_index = row.Number(kIndexType) != SQL_TABLE_STAT;
  OdbcIndexColumn column;
  column.name = row.Text(kIndexColumn);
  column.descending = row.Text(kAscOrDesc) == "D";
  if (!is_index) return;
  // The columns of an index follow each other.
  if (indexes.empty() || indexes.back().name != name)
    indexes.push_back({std::move(name), unique, {}});
  indexes.back().columns.push_back(std::move(column));
}

}  // namespace

TableName OdbcCatalog::InDatabase(TableName table) const {
  if (!connection_.facts().has_schemas && table.catalog.empty()) table.catalog.swap(table.schema);
  if (table.catalog.empty()) table.catalog = connection_.facts().database;
  return table;
}

Result<std::vector<OdbcTable>> OdbcCatalog::Tables() {
  const ServerFacts& facts = connection_.facts();
  CatalogArgument catalog(facts.database);
  // Where there are no databases, the tables are those of the user.
  CatalogArgument schema(facts.database.empty() ? EscapePattern(facts.user, facts.pattern_escape)
                                                : std::string());
  CatalogArgument kinds("TABLE,VIEW");
  std::vector<OdbcTable> tables;
  Status asked = AskForRows(
      connection_,
      [&](void* statement) {
        return connection_.calls().tables(statement, catalog.text(), catalog.length(),
                                          schema.text(), schema.length(), nullptr, 0, kinds.text(),
                                          kinds.length());
      },
      [&tables](RowTaker& row) {
        TableName name;
        name.schema = row.Text(kTableSchema);
        name.name = row.Text(kTableName);
        tables.push_back({std::move(name), row.Text(kTableType) == "VIEW"});
      });
  if (!asked.ok()) return asked.error();
  return tables;
}

Result<std::vector<OdbcColumn>> OdbcCatalog::Columns(const TableName& table) {
  const TableName name = InDatabase(table);
  const std::string& escape = connection_.facts().pattern_escape;
  CatalogArgument catalog(name.catalog);
  CatalogArgument schema(EscapePattern(name.schema, escape));
  CatalogArgument pattern(EscapePattern(name.name, escape));
  std::vector<OdbcColumn> columns;
  Status asked = AskForRows(
      connection_,
      [&](void* statement) {
        return connection_.calls().columns(statement, catalog.text(), catalog.length(),
                                           schema.text(), schema.length(), pattern.text(),
                                           pattern.length(), nullptr, 0);
      },
      [&columns](RowTaker& row) { columns.push_back(TakeColumn(row)); });
  if (!asked.ok()) return asked.error();
  return columns;
}

Result<std::vector<std::string>> OdbcCatalog::PrimaryKey(const TableName& table) {
  const TableName name = InDatabase(table);
  CatalogArgument catalog(name.catalog);
  CatalogArgument schema(name.schema);
  CatalogArgument plain(name.name);
  // By their place in the key: not every driver gives them in that order.
  std::map<std::int64_t, std::string> key;
  Status asked = AskForRows(
      connection_,
      [&](void* statement) {
        return connection_.calls().primary_keys(statement, catalog.text(), catalog.length(),
                                                schema.text(), schema.length(), plain.text(),
                                                plain.length());
      },
      [&key](RowTaker& row) { key[row.Number(kKeySequence)] = row.Text(kColumnName); });
  if (!asked.ok()) return asked.error();
  std::vector<std::string> names;
  names.reserve(key.size());
  for (const auto& [place, column] : key) names.push_back(column);
  return names;
}

Result<std::vector<OdbcIndex>> OdbcCatalog::Indexes(const TableName& table) {
  const TableName name = InDatabase(table);
  CatalogArgument catalog(name.catalog);
  CatalogArgument schema(name.schema);
  CatalogArgument plain(name.name);
  std::vector<OdbcIndex> indexes;
  Status asked = AskForRows(
      connection_,
      [&](void* statement) {
        return connection_.calls().statistics(statement, catalog.text(), catalog.length(),
                                              schema.text(), schema.length(), plain.text(),
                                              plain.length(), SQL_INDEX_ALL, SQL_QUICK);
      },
      [&indexes](RowTaker& row) { AddToIndex(indexes, row); });
  if (!asked.ok()) return asked.error();
  return indexes;
}

}  // namespace zent::odbc
