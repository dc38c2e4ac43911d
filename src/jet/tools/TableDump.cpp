#include "jet/tools/TableDump.h"

#include <algorithm>
#include <numeric>

namespace zent::jet {
namespace {

using Line = JsonWriter::Line;

constexpr std::uint8_t kAnyAutoNumber = kAutoNumberColumn | kGuidAutoNumberColumn;

/// The positions of the columns in the order of their numbers.
std::vector<std::size_t> ByNumber(const TableDefinition& table) {
  std::vector<std::size_t> order(table.columns.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return table.columns[a].number < table.columns[b].number;
  });
  return order;
}

const char* KindName(IndexKind kind) {
  switch (kind) {
    case IndexKind::Primary:
      return "primary";
    case IndexKind::Foreign:
      return "foreign";
    case IndexKind::Ordinary:
      break;
  }
  return "normal";
}

Result<std::int64_t> CountEntries(TableIndex& index) {
  std::int64_t count = 0;
  IndexCursor cursor = index.tree().Cursor();
  Result<bool> on = cursor.SeekFirst();
  for (; on.ok() && on.value(); on = cursor.Next()) ++count;
  if (!on.ok()) return on.error();
  return count;
}

}  // namespace

Status TableDump::Write(const CatalogObject& object, bool rows) {
  const Result<Table*> opened = catalog_.OpenTableAt(object.definition(), object.name);
  if (!opened.ok()) return opened.error();
  const Result<PropertyBlob> properties = catalog_.Properties(object);
  if (!properties.ok()) return properties.error();
  TableStore& table = opened.value()->store();
  const TableDefinition& definition = table.definition();
  const JetVersion version = definition.version;

  json_.BeginObject(Line::New);
  json_.Member("name", object.name);
  json_.Member("hidden", object.IsHidden());
  json_.Member("system", definition.kind != 'N');
  json_.Member("tdefPage", static_cast<std::int64_t>(object.definition()));
  json_.Member("rowCount", std::int64_t{definition.row_count});
  WriteColumns(definition, properties.value());
  json_.Key("properties", Line::New);
  values_.AddProperties(version, properties.value().Find(""));
  Status done = WriteIndexes(table);
  if (done.ok() && rows) done = WriteRows(table);
  json_.EndObject();
  return done;
}

void TableDump::WriteColumns(const TableDefinition& table, const PropertyBlob& properties) {
  json_.Key("columns", Line::New);
  json_.BeginArray();
  for (const std::size_t position : ByNumber(table)) {
    WriteColumn(table, table.columns[position], properties);
  }
  json_.EndArray();
}

void TableDump::WriteColumn(const TableDefinition& table, const ColumnDefinition& column,
                            const PropertyBlob& properties) {
  json_.BeginObject(Line::New);
  json_.Member("name", column.name);
  json_.Member("type", static_cast<std::int64_t>(column.type));
  json_.Member("typeName", NameOf(column.type));
  json_.Member("number", std::int64_t{column.number});
  json_.Member("length", std::int64_t{column.length});
  json_.Member("variable", !column.IsFixed());
  json_.Member("autonumber", (column.flags & kAnyAutoNumber) != 0);
  if (column.type == ColumnType::Numeric) {
    json_.Member("precision", std::int64_t{column.precision()});
    json_.Member("scale", std::int64_t{column.scale()});
  }
  if (IsText(column.type)) {
    const bool jet3 = table.version == JetVersion::Jet3;
    json_.Member("compressed", column.IsCompressed());
    json_.Member("collation", std::int64_t{column.collation().lcid});
    json_.Member("collationVersion", std::int64_t{jet3 ? -1 : column.collation().version});
    if (column.IsHyperlink()) json_.Member("hyperlink", true);
  }
  const PropertySet* const set = properties.Find(column.name);
  json_.Key("properties");
  values_.AddProperties(table.version, set);
  json_.EndObject();
}

Status TableDump::WriteIndexes(TableStore& table) {
  std::vector<LogicalIndex> indexes = table.definition().logical_indexes;
  std::sort(indexes.begin(), indexes.end(),
            [](const LogicalIndex& a, const LogicalIndex& b) { return a.number < b.number; });
  json_.Key("indexes", Line::New);
  json_.BeginArray();
  for (const LogicalIndex& index : indexes) {
    if (Status done = WriteIndex(table, index); !done.ok()) return done;
  }
  json_.EndArray();
  return {};
}

Status TableDump::WriteIndex(TableStore& table, const LogicalIndex& index) {
  const TableDefinition& definition = table.definition();
  const RealIndex& real = definition.real_indexes[index.real];
  json_.BeginObject(Line::New);
  json_.Member("name", index.name);
  json_.Member("number", std::int64_t{index.number});
  json_.Member("data", std::int64_t{index.real});
  json_.Member("kind", KindName(index.kind));
  json_.Member("unique", real.IsUnique());
  json_.Member("ignoreNulls", real.IgnoresNulls());
  json_.Member("required", real.IsRequired());
  json_.Member("flags", std::int64_t{real.flags});
  json_.Member("uniqueEntryCount", std::int64_t{real.distinct_keys});
  json_.Key("columns");
  json_.BeginArray();
  for (const IndexColumn& column : real.columns) {
    const ColumnDefinition* const found = definition.ColumnOf(column.column);
    json_.BeginObject();
    json_.Member("name", found == nullptr ? std::string() : found->name);
    json_.Member("ascending", column.ascending);
    json_.EndObject();
  }
  json_.EndArray();
  if (index.kind == IndexKind::Foreign) WriteReference(index);
  const Result<std::int64_t> count = CountEntries(table.indexes()[index.real]);
  if (!count.ok()) return count.error();
  json_.Member("entryCount", count.value());
  json_.EndObject();
  return {};
}

void TableDump::WriteReference(const LogicalIndex& index) {
  const auto other = std::find_if(objects_.begin(), objects_.end(), [&](const CatalogObject& one) {
    return one.IsLocalTable() && one.definition() == index.other_table;
  });
  json_.Key("reference");
  json_.BeginObject();
  json_.Key("table");
  if (other == objects_.end()) {
    json_.AddNull();
  } else {
    json_.Add(other->name);
  }
  json_.Member("index", std::int64_t{index.partner});
  json_.Member("primarySide", index.side == ForeignSide::Referenced);
  json_.Member("cascadeUpdates", index.cascade_updates == 1);
  json_.Member("cascadeDeletes", index.cascade_deletes == 1);
  json_.Member("cascadeNull", index.cascade_deletes == 2);
  json_.EndObject();
}

Status TableDump::WriteRows(TableStore& table) {
  const std::vector<std::size_t> order = ByNumber(table.definition());
  json_.Key("rows", Line::New);
  json_.BeginArray();
  RowScan scan(table.rows());
  Result<bool> more = scan.Next();
  for (; more.ok() && more.value(); more = scan.Next()) {
    json_.BeginArray(Line::New);
    for (const std::size_t position : order) {
      const Result<Value> value = table.Field(scan.bytes(), position, scan.page());
      if (!value.ok()) return value.error();
      values_.Add(value.value());
    }
    json_.EndArray();
  }
  if (!more.ok()) return more.error();
  json_.EndArray();
  return {};
}

}  // namespace zent::jet
