#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "base/Text.h"
#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/Schema.h"
#include "jet/sql/execution/MadeNames.h"
#include "jet/sql/execution/NewDefinitions.h"
#include "jet/sql/execution/StatementRunners.h"

// ALTER TABLE ... ALTER COLUMN: a new column takes the place, the values and the name of the old
// one.
namespace zent::jet {
namespace {

bool IsAmong(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view one) { return EqualsIgnoringCase(name, one); });
}

/// Types of one kind are shown alike, so that their formats fit each other.
bool AreOfOneKind(ColumnType a, ColumnType b) {
  const auto is_number = [](ColumnType type) {
    constexpr std::array kNumbers = {ColumnType::Byte,     ColumnType::Int,    ColumnType::Long,
                                     ColumnType::Currency, ColumnType::Single, ColumnType::Double,
                                     ColumnType::Numeric};
    return std::find(kNumbers.begin(), kNumbers.end(), type) != kNumbers.end();
  };
  return a == b || (IsText(a) && IsText(b)) || (is_number(a) && is_number(b));
}

/// Whether the altered column keeps a property of the old one.
bool Keeps(const NewColumn& altered, const ColumnDefinition& old, std::string_view property) {
  // These say what the statement says.
  if (IsAmong(property, {"Required", "AllowZeroLength"})) return false;
  if (IsAmong(property, {"DefaultValue"})) {
    return !altered.auto_number && (old.flags & kGuidAutoNumberColumn) == 0;
  }
  return IsAmong(property, {"ValidationRule", "ValidationText", "Description", "Caption"}) ||
         AreOfOneKind(altered.type, old.type);
}

NewColumn AlteredColumn(const Table& table, std::size_t position,
                        const ColumnSpecification& wanted) {
  const ColumnDefinition& old = table.definition().columns[position];
  NewColumn altered = MakeColumn(wanted);
  altered.name =
      FreeName("Altered", [&](const std::string& name) { return table.PositionOf(name).ok(); });
  // Behind the old one, which goes.
  altered.ordinal = static_cast<std::uint16_t>(old.ordinal + 1);
  const PropertySet* const set = table.properties().Find(old.name);
  if (set == nullptr) return altered;
  for (const Property& property : set->properties) {
    if (Keeps(altered, old, property.name)) altered.properties.push_back(property);
  }
  return altered;
}

/// Copies a column's values into another, converted.
Status CopyColumn(SqlSession& session, const std::string& table, const std::string& from,
                  const std::string& to) {
  UpdateStatement update{.table = {table}};
  update.assignments.push_back(
      {Node(ExpressionKind::Column, {}, to), Node(ExpressionKind::Column, {}, from)});
  return RunUpdate(session, update).status();
}

}  // namespace

Status RunDefinition(SqlSession& session, const AlterColumnStatement& alter) {
  const Result<Table*> table = session.catalog.OpenTable(alter.table);
  if (!table.ok()) return table.error();
  const Result<std::size_t> position = table.value()->PositionOf(alter.column.name);
  if (!position.ok()) return position.error();
  if (alter.column.auto_number) {
    const Result<std::uint32_t> rows = table.value()->store().RowCount();
    if (!rows.ok()) return rows.error();
    if (rows.value() > 0) {
      return JetErrorBecause(kInvalidFieldType,
                             "a field with values does not become an AutoNumber");
    }
  }
  const std::string name = table.value()->definition().columns[position.value()].name;
  const NewColumn altered = AlteredColumn(*table.value(), position.value(), alter.column);
  Schema schema(session.catalog, session.context.now);
  Status done = schema.AddColumn(alter.table, altered);
  if (done.ok()) done = CopyColumn(session, alter.table, name, altered.name);
  if (done.ok()) done = schema.DropColumn(alter.table, name);
  return done.ok() ? schema.RenameColumn(alter.table, altered.name, name) : done;
}

}  // namespace zent::jet
