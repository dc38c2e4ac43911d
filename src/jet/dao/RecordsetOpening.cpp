#include "jet/dao/RecordsetOpening.h"

#include <algorithm>

#include "base/Text.h"
#include "jet/dao/Conversion.h"
#include "jet/dao/Database.h"
#include "jet/dao/RecordsetState.h"
#include "jet/dao/TableOrder.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/execution/Execution.h"
#include "jet/sql/execution/OrderKey.h"
#include "jet/sql/syntax/Parser.h"

namespace zent::jet {
namespace {

/// Whether each column of the rows is one of their table.
bool AreOfOneTable(const ResultSet& rows) {
  if (rows.base_table() == nullptr) return false;
  return std::all_of(rows.columns().begin(), rows.columns().end(),
                     [](const ResultColumn& column) { return !column.column.empty(); });
}

/// The field of a column that is calculated, or whose table is not at hand.
Field FieldOfColumn(const ResultColumn& column) {
  Field field;
  field.name = column.name;
  field.source_table = column.table;
  field.source_field = column.column;
  field.type = column.type ? ToDataType(*column.type) : DataType::ShortText;
  field.size = column.size;
  return field;
}

/// A calculated column has the type of its values.
void TakeTypes(const std::vector<std::vector<Value>>& rows,
               const std::vector<ResultColumn>& columns, std::vector<Field>& fields) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (columns[i].type) continue;
    for (const std::vector<Value>& row : rows) {
      if (IsNull(row[i])) continue;
      fields[i].type = ToDataType(TypeOf(row[i]));
      break;
    }
  }
}

std::vector<RowPointer> CopiedRows(std::size_t count) {
  std::vector<RowPointer> rows;
  rows.reserve(count);
  for (std::size_t i = 0; i < count; ++i) rows.push_back(CopiedRow(i));
  return rows;
}

constexpr std::size_t kLongestName = std::size_t{64} * 3;  // bytes: 64 units of UTF-16

/// A statement begins with its keyword; a table's name may, too.
bool LooksLikeStatement(std::string_view source) {
  constexpr std::string_view kSelect = "select";
  source = TrimBlanks(source);
  if (source.size() <= kSelect.size()) return false;
  const char behind = source[kSelect.size()];
  return EqualsIgnoringCase(source.substr(0, kSelect.size()), kSelect) &&
         std::string_view(" \t\r\n[*(\"").find(behind) != std::string_view::npos;
}

/// Whether `source` is a statement rather than the name of a table that looks like one.
bool IsStatement(Catalog& catalog, std::string_view source) {
  if (!LooksLikeStatement(source)) return false;
  if (source.size() > kLongestName) return true;
  const Result<std::optional<CatalogObject>> object = catalog.FindIn(kTablesId, source);
  return !object.ok() || !object.value() || !object.value()->IsTable();
}

}  // namespace

Result<std::unique_ptr<Recordset>> RecordsetOpening::Open(std::string_view source,
                                                          RecordsetType type) {
  if (Status open = core.CheckOpen(); !open.ok()) return open.error();
  Result<Made> made =
      IsStatement(*core.catalog, source) ? OfQuery(source, type) : OfTable(source, type);
  if (!made.ok()) return made.error();
  std::unique_ptr<Recordset> recordset(new Recordset(std::move(made.value())));
  if (Status moved = recordset->MoveFirst(); !moved.ok()) return moved.error();
  return recordset;
}

Result<RecordsetOpening::Made> RecordsetOpening::OfTable(std::string_view name,
                                                         RecordsetType type) {
  if (type == RecordsetType::Snapshot) {
    return OfQuery("SELECT * FROM [" + std::string(name) + "]", type);
  }
  auto state = std::make_unique<Recordset::State>(
      core, type == RecordsetType::Default ? RecordsetType::Table : type);
  const Result<Table*> table = core.catalog->OpenTable(name);
  if (!table.ok()) return table.error();
  state->table = table.value()->name();
  state->columns = table.value()->display_order();
  state->Adopt(*table.value());
  Result<std::vector<Field>> fields = FieldsOf(*table.value());
  if (!fields.ok()) return fields.error();
  state->fields = Collection<Field>(std::move(fields.value()));
  Recordset::State* const at = state.get();
  state->order = std::make_unique<FileOrder>([at] { return at->OpenTable(); });
  return state;
}

Result<RecordsetOpening::Made> RecordsetOpening::OfQuery(std::string_view statement,
                                                         RecordsetType type) {
  const Result<Statement> parsed = ParseStatement(statement);
  if (!parsed.ok()) return parsed.error();
  const auto* const select = std::get_if<SelectStatement>(&parsed.value());
  if (select == nullptr || !select->into.empty()) return JetError(kInvalidOperation);
  if (type == RecordsetType::Table) return JetError(kNotSupportedHere);
  SqlSession session{.catalog = *core.catalog, .context = core.context()};
  const Result<std::unique_ptr<ResultSet>> rows = OpenQuery(session, *select);
  if (!rows.ok()) return rows.error();
  const bool copies = type == RecordsetType::Snapshot || !AreOfOneTable(*rows.value());
  auto state = std::make_unique<Recordset::State>(
      core, copies ? RecordsetType::Snapshot : RecordsetType::Dynaset);
  Status taken = copies ? CopyRows(*rows.value(), *state) : TakeRows(*rows.value(), *state);
  if (!taken.ok()) return taken.error();
  return state;
}

Status RecordsetOpening::TakeRows(ResultSet& rows, Recordset::State& state) {
  const Table& table = *rows.base_table();
  state.table = table.name();
  std::vector<Field> fields;
  for (const ResultColumn& column : rows.columns()) {
    const Result<std::size_t> position = table.PositionOf(column.column);
    if (!position.ok()) return position.status();
    Result<Field> field = FieldOf(table, position.value());
    if (!field.ok()) return field.status();
    field.value().name = column.name;
    fields.push_back(std::move(field.value()));
    state.columns.push_back(position.value());
  }
  state.fields = Collection<Field>(std::move(fields));
  state.Adopt(table);
  std::vector<RowPointer> found;
  for (;;) {
    const Result<bool> more = rows.Next();
    if (!more.ok()) return more.status();
    if (!more.value()) break;
    found.push_back(rows.base_row().value_or(RowPointer()));
  }
  state.order = std::make_unique<ListOrder>(std::move(found));
  return {};
}

Status RecordsetOpening::CopyRows(ResultSet& rows, Recordset::State& state) {
  std::size_t kept = 0;
  for (;;) {
    const Result<bool> more = rows.Next();
    if (!more.ok()) return more.status();
    if (!more.value()) break;
    kept += KeptBytes(rows.row());
    if (kept > kMaxKeptBytes) return JetError(kDatabaseTooLarge);
    state.copied.push_back(rows.row());
  }
  std::vector<Field> fields;
  for (const ResultColumn& column : rows.columns()) fields.push_back(FieldOfColumn(column));
  TakeTypes(state.copied, rows.columns(), fields);
  state.fields = Collection<Field>(std::move(fields));
  state.order = std::make_unique<ListOrder>(CopiedRows(state.copied.size()));
  return {};
}

Result<std::unique_ptr<Recordset>> Database::OpenRecordset(std::string_view source,
                                                           RecordsetType type) {
  return RecordsetOpening{*core_}.Open(source, type);
}

}  // namespace zent::jet
