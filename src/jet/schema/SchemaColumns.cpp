#include <algorithm>

#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/schema/ColumnPlan.h"
#include "jet/schema/ColumnProperties.h"
#include "jet/schema/DefinitionWriter.h"
#include "jet/schema/EditedTable.h"
#include "jet/schema/NamedRow.h"
#include "jet/schema/Names.h"
#include "jet/schema/ObjectWriter.h"
#include "jet/schema/OldRows.h"
#include "jet/schema/RelationshipRows.h"
#include "jet/schema/ReleaseStorage.h"
#include "jet/schema/Schema.h"

/// Columns of tables.
namespace zent::jet {
namespace {

bool IsIndexed(const TableDefinition& table, std::uint16_t number) {
  return std::any_of(
      table.real_indexes.begin(), table.real_indexes.end(), [&](const RealIndex& index) {
        return std::any_of(index.columns.begin(), index.columns.end(),
                           [&](const IndexColumn& part) { return part.column == number; });
      });
}

Result<bool> IsRelated(Catalog& catalog, std::string_view table, std::string_view column) {
  const Result<std::vector<Relationship>> relations = catalog.RelationshipsOf(table);
  if (!relations.ok()) return relations.error();
  for (const Relationship& relation : relations.value()) {
    for (const auto& [referring, referenced] : relation.columns) {
      if (SameKey(relation.table, table) && SameKey(referring, column)) return true;
      if (SameKey(relation.referenced_table, table) && SameKey(referenced, column)) return true;
    }
  }
  return false;
}

/// The maps of a long value column come out of the definition and give back their pages.
Status DropLongValues(UsageMaps& maps, std::uint16_t number, TableDefinition& table) {
  const auto column = std::find_if(table.long_value_maps.begin(), table.long_value_maps.end(),
                                   [&](const LongValueMaps& one) { return one.column == number; });
  if (column == table.long_value_maps.end()) return {};
  if (column->owned.page != 0) {
    if (Status s = CheckDataPages(maps, kLongValueOwner, column->owned); !s.ok()) return s;
  }
  if (Status s = ReleaseLongValues(maps, *column); !s.ok()) return s;
  table.long_value_maps.erase(column);
  return {};
}

/// Where a new fixed column may begin. A dropped column behind the last one leaves no trace in the
/// definition, but its bytes are in the rows, which must not be taken for those of another.
Result<std::size_t> FixedEnd(Catalog& catalog, const EditedTable& table,
                             const ColumnDefinition& column) {
  const TableDefinition& definition = table.definition;
  const bool dropped = definition.max_columns > definition.columns.size();
  if (!dropped || !column.IsFixed()) return definition.FixedAreaSize();
  return LongestFixedArea(catalog.maps(), table.page());
}

std::uint16_t NextOrdinal(const TableDefinition& table) {
  std::uint16_t next = 0;
  for (const ColumnDefinition& column : table.columns) {
    next = std::max(next, static_cast<std::uint16_t>(column.ordinal + 1));
  }
  return next;
}

/// The ordinal of a new column that wants to have `wanted`. Those from there on move up by one.
std::uint16_t MakeRoom(std::uint16_t wanted, TableDefinition& table) {
  const std::uint16_t next = NextOrdinal(table);
  if (wanted == 0 || wanted >= next) return next;
  for (ColumnDefinition& column : table.columns) {
    if (column.ordinal >= wanted) ++column.ordinal;
  }
  return wanted;
}

}  // namespace

Status Schema::AddColumn(std::string_view table, const NewColumn& column) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  Result<EditedTable> opened = OpenForEdit(catalog_, table);
  if (!opened.ok()) return opened.error();
  EditedTable& edited = opened.value();
  TableDefinition& definition = edited.definition;
  Result<ColumnDefinition> planned = PlanColumn(column);
  if (!planned.ok()) return planned.error();
  if (definition.max_columns >= kMaxColumns) return JetError(kTooManyFields);
  const Result<std::size_t> fixed_end = FixedEnd(catalog_, edited, planned.value());
  if (!fixed_end.ok()) return fixed_end.error();
  planned.value().ordinal = MakeRoom(column.ordinal, definition);
  const bool first_variable = definition.variable_slots == 0 && !planned.value().IsFixed();
  PlaceColumn(std::move(planned.value()), fixed_end.value(), definition);
  if (Status checked = CheckColumns(definition); !checked.ok()) return checked;
  edited.properties.DropColumn(column.name);  // left over from a column of that name
  if (Status s = AddColumnProperties(column, edited.properties); !s.ok()) return s;
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog_);
  if (!objects.ok()) return objects.error();

  if (IsLong(column.type)) {
    PageNumber beside = edited.map_page();
    const auto number = static_cast<std::uint16_t>(definition.max_columns - 1);
    const Result<LongValueMaps> maps = CreateLongValueMaps(catalog_.maps(), number, beside);
    if (!maps.ok()) return maps.error();
    definition.long_value_maps.push_back(maps.value());
  }
  if (Status s = SaveDefinition(catalog_, edited); !s.ok()) return s;
  if (Status s = objects.value().SetProperties(edited.object, edited.properties, now_); !s.ok()) {
    return s;
  }
  if (first_variable) return GiveVariablePart(catalog_, edited.page(), column.name);
  return column.auto_number ? NumberRows(catalog_, edited.page(), column.name) : Status();
}

Status Schema::DropColumn(std::string_view table, std::string_view column) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  Result<EditedTable> opened = OpenForEdit(catalog_, table);
  if (!opened.ok()) return opened.error();
  EditedTable& edited = opened.value();
  TableDefinition& definition = edited.definition;
  const Result<std::size_t> position = ColumnPosition(definition, column);
  if (!position.ok()) return position.error();
  const std::uint16_t number = definition.columns[position.value()].number;
  if (IsIndexed(definition, number)) return JetError(kFieldInIndex);
  const Result<bool> related = IsRelated(catalog_, edited.object.name, column);
  if (!related.ok()) return related.error();
  if (related.value()) return JetError(kFieldInIndex);
  if (definition.columns.size() == 1) {
    return JetErrorBecause(kInvalidOperation, "it is the last field of the table");
  }
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog_);
  if (!objects.ok()) return objects.error();

  if (Status s = DropLongValues(catalog_.maps(), number, definition); !s.ok()) return s;
  definition.columns.erase(definition.columns.begin() +
                           static_cast<std::ptrdiff_t>(position.value()));
  edited.properties.DropColumn(column);
  if (Status s = SaveDefinition(catalog_, edited); !s.ok()) return s;
  return objects.value().SetProperties(edited.object, edited.properties, now_);
}

Status Schema::RenameColumn(std::string_view table, std::string_view from, std::string_view to) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  Result<EditedTable> opened = OpenForEdit(catalog_, table);
  if (!opened.ok()) return opened.error();
  EditedTable& edited = opened.value();
  const Result<std::size_t> position = ColumnPosition(edited.definition, from);
  if (!position.ok()) return position.error();
  if (Status named = CheckName(to); !named.ok()) return named;
  edited.definition.columns[position.value()].name = to;
  if (Status checked = CheckColumns(edited.definition); !checked.ok()) return checked;
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog_);
  if (!objects.ok()) return objects.error();

  edited.properties.RenameColumn(from, to);
  if (Status s = SaveDefinition(catalog_, edited); !s.ok()) return s;
  if (Status s = objects.value().SetProperties(edited.object, edited.properties, now_); !s.ok()) {
    return s;
  }
  return RenameRelatedColumn(catalog_.maps(), edited.object.name, from, to);
}

}  // namespace zent::jet
