#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/DefinitionWriter.h"
#include "jet/schema/EditedTable.h"
#include "jet/schema/FilledIndex.h"
#include "jet/schema/IndexPlan.h"
#include "jet/schema/ObjectWriter.h"
#include "jet/schema/ReleaseStorage.h"
#include "jet/schema/Schema.h"

/// Indexes of tables.
namespace zent::jet {
namespace {

/// Whether a relationship wants the logical index at `position`: it is one side of it, or a side of
/// it has the same tree.
bool IsRelated(const TableDefinition& table, std::size_t position) {
  const LogicalIndex& index = table.logical_indexes[position];
  for (const LogicalIndex& other : table.logical_indexes) {
    if (other.kind == IndexKind::Foreign && other.real == index.real) return true;
  }
  return false;
}

}  // namespace

Status Schema::CreateIndex(std::string_view table, const NewIndex& index) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  Result<EditedTable> edited = OpenForEdit(catalog_, table);
  if (!edited.ok()) return edited.error();
  Result<RealIndex> real = PlanIndex(edited.value().definition, table, index);
  if (!real.ok()) return real.error();
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog_);
  if (!objects.ok()) return objects.error();

  const IndexKind kind = index.primary ? IndexKind::Primary : IndexKind::Ordinary;
  const Result<std::size_t> position =
      AddFilledIndex(catalog_, std::move(real.value()), edited.value());
  if (!position.ok()) return position.error();
  AddLogicalIndex(index.name, position.value(), kind, edited.value().definition);
  if (Status s = SaveDefinition(catalog_, edited.value()); !s.ok()) return s;
  return objects.value().Touch(edited.value().object, now_);
}

Status Schema::DropIndex(std::string_view table, std::string_view index) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  Result<EditedTable> edited = OpenForEdit(catalog_, table);
  if (!edited.ok()) return edited.error();
  TableDefinition& definition = edited.value().definition;
  const Result<std::size_t> position = IndexPosition(definition, index);
  if (!position.ok()) return position.error();
  if (IsRelated(definition, position.value())) return JetError(kIndexInUse);
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog_);
  if (!objects.ok()) return objects.error();

  const std::optional<RealIndex> unused = RemoveLogicalIndex(position.value(), definition);
  if (unused) {
    UsageMaps& maps = catalog_.maps();
    if (Status s = CheckTree(maps, edited.value().page(), *unused); !s.ok()) return s;
    if (Status s = ReleaseTree(maps, *unused); !s.ok()) return s;
  }
  if (Status s = SaveDefinition(catalog_, edited.value()); !s.ok()) return s;
  return objects.value().Touch(edited.value().object, now_);
}

}  // namespace zent::jet
