#include <algorithm>

#include "base/CaseFold.h"
#include "jet/catalog/Catalog.h"
#include "jet/format/IndexKey.h"
#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/schema/EditedTable.h"
#include "jet/schema/FilledIndex.h"
#include "jet/schema/IndexPlan.h"
#include "jet/schema/Names.h"
#include "jet/schema/ObjectWriter.h"
#include "jet/schema/RelationshipChecks.h"
#include "jet/schema/RelationshipRows.h"
#include "jet/schema/ReleaseStorage.h"
#include "jet/schema/Schema.h"

/// Relationships between tables.
namespace zent::jet {
namespace {

constexpr std::uint8_t kCascade = 1;
constexpr std::uint8_t kSetNull = 2;

/// Both tables of a relationship, which may be one.
class Sides {
 public:
  static Result<Sides> Open(Catalog& catalog, std::string_view referring,
                            std::string_view referenced) {
    Sides sides;
    Result<EditedTable> table = OpenForEdit(catalog, referring);
    if (!table.ok()) return table.error();
    sides.tables_.push_back(std::move(table.value()));
    Result<EditedTable> other = OpenForEdit(catalog, referenced);
    if (!other.ok()) return other.error();
    if (other.value().page() != sides.referring().page()) {
      sides.tables_.push_back(std::move(other.value()));
    }
    return sides;
  }

  EditedTable& referring() { return tables_.front(); }
  EditedTable& referenced() { return tables_.back(); }
  bool same() const { return tables_.size() == 1; }

  Status Save(Catalog& catalog) {
    for (EditedTable& table : tables_) {
      if (Status s = SaveDefinition(catalog, table); !s.ok()) return s;
    }
    return {};
  }

 private:
  std::vector<EditedTable> tables_;
};

Status CheckNewRelationshipName(Catalog& catalog, std::string_view name) {
  if (Status named = CheckName(name); !named.ok()) return named;
  const Result<std::optional<CatalogObject>> object = catalog.FindIn(kRelationshipsId, name);
  if (!object.ok()) return object.error();
  if (object.value()) return JetError(kObjectExists, name);
  const Result<std::vector<Relationship>> all = catalog.Relationships();
  if (!all.ok()) return all.error();
  const bool taken = std::any_of(all.value().begin(), all.value().end(),
                                 [&](const Relationship& one) { return SameKey(one.name, name); });
  return taken ? Status(JetError(kObjectExists, name)) : Status();
}

/// The name of the index that stands for a relationship on its referenced side: .rB, .rC ...
std::string HiddenName(const TableDefinition& table) {
  for (std::size_t i = 1;; ++i) {
    std::string name = ".r";
    if (i >= 26) name += static_cast<char>('A' + i / 26 - 1);
    name += static_cast<char>('A' + i % 26);
    if (!IndexPosition(table, name).ok()) return name;
  }
}

Status CheckRoom(Sides& sides, const Relationship& relationship) {
  const EditedTable& referring = sides.referring();
  const EditedTable& referenced = sides.referenced();
  for (const EditedTable* const table : {&referring, &referenced}) {
    const std::size_t more = sides.same() ? 2 : 1;
    if (table->definition.logical_indexes.size() + more > kMaxIndexes) {
      return JetError(kTooManyIndexes, table->object.name);
    }
  }
  return CheckRoomForIndex(referring.definition, referring.object.name, relationship.name);
}

/// The position of a tree over the referring columns: one that is there already, or a new one.
Result<std::size_t> ReferringTree(Catalog& catalog, const RelationshipPlan& plan,
                                  EditedTable& table) {
  if (const std::optional<std::size_t> there = FindTree(table.definition, plan.referring)) {
    return *there;
  }
  for (const IndexColumn& part : plan.referring) {
    const ColumnDefinition* const column = table.definition.ColumnOf(part.column);
    if (IsText(column->type) && !IsCovered(table.definition.version, *column)) {
      return JetErrorBecause(kReadOnly,
                             "the sort order of field " + column->name + " is not known");
    }
  }
  RealIndex index;
  index.columns = plan.referring;
  return AddFilledIndex(catalog, std::move(index), table);
}

LogicalIndex& ByNumber(TableDefinition& table, std::uint32_t number) {
  return *std::find_if(table.logical_indexes.begin(), table.logical_indexes.end(),
                       [&](const LogicalIndex& index) { return index.number == number; });
}

/// Adds the two logical indexes of an enforced relationship.
Status LinkIndexes(Catalog& catalog, const RelationshipPlan& plan, Sides& sides) {
  TableDefinition& referring = sides.referring().definition;
  TableDefinition& referenced = sides.referenced().definition;
  const Result<std::size_t> tree = ReferringTree(catalog, plan, sides.referring());
  if (!tree.ok()) return tree.error();
  const std::uint32_t many =
      AddLogicalIndex(plan.relationship.name, tree.value(), IndexKind::Foreign, referring);
  const std::uint32_t one = AddLogicalIndex(HiddenName(referenced), plan.referenced_index,
                                            IndexKind::Foreign, referenced);
  const auto link = [&](LogicalIndex& index, ForeignSide side, std::uint32_t partner,
                        PageNumber other) {
    index.side = side;
    index.partner = static_cast<std::int32_t>(partner);
    index.other_table = other;
    index.cascade_updates = plan.relationship.cascades_updates() ? kCascade : std::uint8_t{0};
    if (plan.relationship.cascades_deletes()) index.cascade_deletes = kCascade;
    if (plan.relationship.sets_null_on_delete()) index.cascade_deletes = kSetNull;
  };
  link(ByNumber(referring, many), ForeignSide::Referring, one, sides.referenced().page());
  link(ByNumber(referenced, one), ForeignSide::Referenced, many, sides.referring().page());
  return sides.Save(catalog);
}

/// Takes the logical index of that number out of a table; its tree goes when nobody else has it.
Status Unlink(Catalog& catalog, std::uint32_t number, EditedTable& table) {
  const std::vector<LogicalIndex>& indexes = table.definition.logical_indexes;
  const auto at = std::find_if(indexes.begin(), indexes.end(), [&](const LogicalIndex& index) {
    return index.number == number && index.kind == IndexKind::Foreign;
  });
  if (at == indexes.end()) return {};
  const std::optional<RealIndex> unused =
      RemoveLogicalIndex(static_cast<std::size_t>(at - indexes.begin()), table.definition);
  if (!unused) return {};
  UsageMaps& maps = catalog.maps();
  if (Status s = CheckTree(maps, table.page(), *unused); !s.ok()) return s;
  return ReleaseTree(maps, *unused);
}

/// Takes both logical indexes of a relationship out. One whose tables or indexes are not there has
/// none to take out.
Status UnlinkIndexes(Catalog& catalog, const Relationship& relationship) {
  Result<Sides> sides = Sides::Open(catalog, relationship.table, relationship.referenced_table);
  if (sides.number() == kNoSuchTable) return {};
  if (!sides.ok()) return sides.error();
  EditedTable& referring = sides.value().referring();
  const Result<std::size_t> position = IndexPosition(referring.definition, relationship.name);
  if (!position.ok()) return {};
  const LogicalIndex index = referring.definition.logical_indexes[position.value()];
  if (index.kind != IndexKind::Foreign || index.side != ForeignSide::Referring) return {};
  if (Status s = Unlink(catalog, index.number, referring); !s.ok()) return s;
  const auto partner = static_cast<std::uint32_t>(index.partner);
  if (Status s = Unlink(catalog, partner, sides.value().referenced()); !s.ok()) return s;
  return sides.value().Save(catalog);
}

}  // namespace

Status Schema::CreateRelationship(const Relationship& relationship) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  if (Status named = CheckNewRelationshipName(catalog_, relationship.name); !named.ok())
    return named;
  Result<Sides> sides = Sides::Open(catalog_, relationship.table, relationship.referenced_table);
  if (!sides.ok()) return sides.error();
  EditedTable& referring = sides.value().referring();
  EditedTable& referenced = sides.value().referenced();
  const Result<RelationshipPlan> plan =
      PlanRelationship(relationship, referring.definition, referenced.definition);
  if (!plan.ok()) return plan.error();
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog_);
  if (!objects.ok()) return objects.error();
  const Result<std::int32_t> id = objects.value().NextId();
  if (!id.ok()) return id.error();

  if (relationship.enforced()) {
    if (Status s = CheckRoom(sides.value(), relationship); !s.ok()) return s;
    if (Status s =
            CheckReferences(catalog_.maps(), plan.value(), referring.page(), referenced.page());
        !s.ok()) {
      return s;
    }
    if (Status s = LinkIndexes(catalog_, plan.value(), sides.value()); !s.ok()) return s;
  }
  if (Status s = AddRelationshipRows(catalog_.maps(), plan.value().relationship); !s.ok()) {
    return s;
  }
  return objects.value().Add({.id = id.value(),
                              .parent = kRelationshipsId,
                              .type = ObjectType::Relationship,
                              .name = relationship.name,
                              .created = now_,
                              .updated = now_},
                             {});
}

Status Schema::DropRelationship(std::string_view name) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  const Result<std::vector<Relationship>> all = catalog_.Relationships();
  if (!all.ok()) return all.error();
  const auto relationship =
      std::find_if(all.value().begin(), all.value().end(),
                   [&](const Relationship& one) { return SameName(one.name, name); });
  if (relationship == all.value().end()) return JetErrorBecause(kItemNotFound, name);
  const Result<std::optional<CatalogObject>> object = catalog_.FindIn(kRelationshipsId, name);
  if (!object.ok()) return object.error();
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog_);
  if (!objects.ok()) return objects.error();

  if (Status s = UnlinkIndexes(catalog_, *relationship); !s.ok()) return s;
  if (Status s = DeleteRelationshipRows(catalog_.maps(), name); !s.ok()) return s;
  return object.value() ? objects.value().Remove(*object.value()) : Status();
}

}  // namespace zent::jet
