#include "jet/dao/TableDef.h"

#include <algorithm>
#include <utility>

#include "jet/dao/Conversion.h"
#include "jet/dao/Database.h"
#include "jet/dao/DatabaseCore.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/Schema.h"

namespace zent::jet {
namespace {

/// The names of a list must differ; `error` when `name` is in it.
template <typename Item>
Status CheckNew(const std::vector<Item>& items, const std::string& name, int error) {
  const bool known = std::any_of(items.begin(), items.end(),
                                 [&](const Item& item) { return SameName(item.name, name); });
  return known ? Status(JetError(error, name)) : Status();
}

template <typename Item>
Status EraseNew(std::vector<Item>& items, const ItemKey& key) {
  const Result<std::size_t> at = Collection<Item>(items).PositionOf(key);
  if (!at.ok()) return at.status();
  items.erase(items.begin() + static_cast<std::ptrdiff_t>(at.value()));
  return {};
}

/// The column whose numbers the table counts; null when it has none.
const ColumnDefinition* CountedColumn(const TableDefinition& table) {
  const auto found =
      std::find_if(table.columns.begin(), table.columns.end(), [](const ColumnDefinition& column) {
        return column.IsAutoNumber() && column.type == ColumnType::Long;
      });
  return found == table.columns.end() ? nullptr : &*found;
}

bool CountTheSame(const TableDefinition& one, const TableDefinition& other) {
  const ColumnDefinition* const column = CountedColumn(one);
  const ColumnDefinition* const partner = CountedColumn(other);
  return column != nullptr && partner != nullptr && SameName(column->name, partner->name);
}

}  // namespace

Result<Table*> TableDef::Open() const {
  if (Status local = CheckLocal(); !local.ok()) return local.error();
  return database_->core_->catalog->OpenTable(name());
}

Status TableDef::CheckLocal() const {
  if (Status open = database_->core_->CheckOpen(); !open.ok()) return open;
  return IsLinked() ? Status(JetErrorBecause(kInvalidOperation, "the table is linked")) : Status();
}

Status TableDef::Change(const std::function<Status(Schema&)>& change) {
  if (Status local = CheckLocal(); !local.ok()) return local;
  DatabaseCore& core = *database_->core_;
  Status changed = core.Change([&] {
    Schema schema(*core.catalog, core.now());
    return change(schema);
  });
  if (changed.ok()) facts_.last_updated = core.now();
  return changed;
}

Result<std::int32_t> TableDef::RecordCount() const {
  if (database_ == nullptr) return 0;
  if (IsLinked()) return -1;
  const Result<Table*> table = Open();
  if (!table.ok()) return table.error();
  const Result<std::uint32_t> count = table.value()->store().RowCount();
  if (!count.ok()) return count.error();
  return static_cast<std::int32_t>(count.value());
}

Result<Collection<Field>> TableDef::Fields() const {
  if (database_ == nullptr) return Collection<Field>(new_fields_);
  if (IsLinked()) return Collection<Field>();
  const Result<Table*> table = Open();
  if (!table.ok()) return table.error();
  Result<std::vector<Field>> fields = FieldsOf(*table.value());
  if (!fields.ok()) return fields.error();
  return Collection<Field>(std::move(fields.value()));
}

Result<Collection<Index>> TableDef::Indexes() const {
  if (database_ == nullptr) return Collection<Index>(new_indexes_);
  if (IsLinked()) return Collection<Index>();
  const Result<Table*> table = Open();
  if (!table.ok()) return table.error();
  return Collection<Index>(IndexesOf(table.value()->definition()));
}

Result<Collection<Property>> TableDef::Properties() const {
  if (database_ == nullptr) return Collection<Property>(new_properties_);
  if (IsLinked()) return Collection<Property>();
  const Result<Table*> table = Open();
  if (!table.ok()) return table.error();
  const PropertySet* const own = table.value()->properties().Find({});
  return own == nullptr ? Collection<Property>() : Collection<Property>(own->properties);
}

Status TableDef::SetName(std::string name) {
  if (database_ != nullptr) {
    Status renamed = Change([&](Schema& schema) { return schema.RenameTable(facts_.name, name); });
    if (!renamed.ok()) return renamed;
  }
  facts_.name = std::move(name);
  return {};
}

Status TableDef::Append(const Field& field) {
  if (database_ == nullptr) {
    if (Status is_new = CheckNew(new_fields_, field.name, kFieldDefinedTwice); !is_new.ok()) {
      return is_new;
    }
    new_fields_.push_back(field);
    return {};
  }
  const Result<NewColumn> column = ColumnFor(field);
  if (!column.ok()) return column.status();
  return Change([&](Schema& schema) { return schema.AddColumn(name(), column.value()); });
}

Status TableDef::Append(const Index& index) {
  if (database_ == nullptr) {
    if (Status is_new = CheckNew(new_indexes_, index.name, kIndexExists); !is_new.ok()) {
      return is_new;
    }
    new_indexes_.push_back(index);
    return {};
  }
  return Change([&](Schema& schema) { return schema.CreateIndex(name(), IndexFor(index)); });
}

Result<std::string> TableDef::NameOfField(const ItemKey& field) const {
  const Result<Collection<Field>> fields = Fields();
  if (!fields.ok()) return fields.error();
  const Result<Field> found = fields.value().Find(field);
  if (!found.ok()) return found.error();
  return found.value().name;
}

Status TableDef::DeleteField(const ItemKey& field) {
  if (database_ == nullptr) return EraseNew(new_fields_, field);
  const Result<std::string> column = NameOfField(field);
  if (!column.ok()) return column.status();
  return Change([&](Schema& schema) { return schema.DropColumn(name(), column.value()); });
}

Status TableDef::DeleteIndex(const ItemKey& index) {
  if (database_ == nullptr) return EraseNew(new_indexes_, index);
  const Result<Collection<Index>> indexes = Indexes();
  if (!indexes.ok()) return indexes.status();
  const Result<Index> found = indexes.value().Find(index);
  if (!found.ok()) return found.status();
  return Change([&](Schema& schema) { return schema.DropIndex(name(), found.value().name); });
}

Status TableDef::RenameField(const ItemKey& field, std::string to) {
  const Result<std::string> from = NameOfField(field);
  if (!from.ok()) return from.status();
  if (database_ != nullptr) {
    return Change([&](Schema& schema) { return schema.RenameColumn(name(), from.value(), to); });
  }
  for (Field& one : new_fields_) {
    if (one.name == from.value()) one.name = to;
  }
  return {};
}

Status TableDef::SetProperty(const Property& property) {
  if (database_ != nullptr) {
    return Change([&](Schema& schema) { return schema.SetProperty(name(), {}, property); });
  }
  PropertySet set{.properties = std::move(new_properties_)};
  set.Set(property);
  new_properties_ = std::move(set.properties);
  return {};
}

Status TableDef::SetFieldProperty(const ItemKey& field, const Property& property) {
  const Result<std::string> column = NameOfField(field);
  if (!column.ok()) return column.status();
  if (database_ != nullptr) {
    return Change(
        [&](Schema& schema) { return schema.SetProperty(name(), column.value(), property); });
  }
  for (Field& one : new_fields_) {
    if (one.name != column.value()) continue;
    PropertySet set{.properties = std::move(one.properties)};
    set.Set(property);
    one.properties = std::move(set.properties);
  }
  return {};
}

Status TableDef::TakeCounter(const TableDef& from) {
  if (Status local = CheckLocal(); !local.ok()) return local;
  return database_->core_->Change([&]() -> Status {
    const Result<Table*> counted = from.Open();
    if (!counted.ok()) return counted.status();
    const Result<Table*> own = Open();
    if (!own.ok()) return own.status();
    if (!CountTheSame(counted.value()->definition(), own.value()->definition())) return {};
    const Result<std::int32_t> last = counted.value()->store().LastAutoNumber();
    if (!last.ok()) return last.status();
    return own.value()->store().SetLastAutoNumber(last.value());
  });
}

}  // namespace zent::jet
