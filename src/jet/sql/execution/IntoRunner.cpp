#include <algorithm>
#include <utility>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/schema/Schema.h"
#include "jet/sql/execution/NewDefinitions.h"
#include "jet/sql/execution/Query.h"
#include "jet/sql/execution/StatementRunners.h"

// SELECT ... INTO.
namespace zent::jet {
namespace {

/// A table for what the query gives. What expressions give is known when all rows were seen.
Result<NewTable> TableFor(SqlSession& session, const SelectStatement& select) {
  Result<std::unique_ptr<Query>> query = MakeQuery(session, select);
  if (!query.ok()) return query.error();
  const std::vector<ResultColumn>& columns = query.value()->columns();
  std::vector<SeenValues> seen(columns.size());
  bool more = std::any_of(columns.begin(), columns.end(),
                          [](const ResultColumn& column) { return !column.type; });
  while (more) {
    const Result<bool> found = query.value()->Next();
    if (!found.ok()) return found.error();
    more = found.value();
    for (std::size_t i = 0; more && i < columns.size(); ++i) {
      if (!columns[i].type) seen[i].Add(query.value()->row()[i]);
    }
  }
  NewTable table{.name = select.into};
  for (std::size_t i = 0; i < columns.size(); ++i) {
    table.columns.push_back(MakeColumn(columns[i], seen[i]));
  }
  return table;
}

}  // namespace

Result<std::int64_t> RunSelectInto(SqlSession& session, const SelectStatement& select) {
  InsertStatement insert{.table = select.into, .database = select.into_database};
  insert.select = select;
  insert.select->into.clear();
  insert.select->into_database.clear();

  const Result<NewTable> table = TableFor(session, select);
  if (!table.ok()) return table.error();
  const Result<Catalog*> catalog = CatalogOf(session, select.into_database);
  if (!catalog.ok()) return catalog.error();
  const Status created = Schema(*catalog.value(), session.context.now).CreateTable(table.value());
  if (!created.ok()) return created.error();
  for (const NewColumn& column : table.value().columns) insert.columns.push_back(column.name);
  return RunInsert(session, insert);
}

}  // namespace zent::jet
