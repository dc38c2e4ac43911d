#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/ForeignLink.h"
#include "jet/format/PropertyBlob.h"
#include "jet/store/TableStore.h"

namespace zent::jet {

class Catalog;

/// Whether a row may have these values, all of them, at the positions of their columns.
using RowCheck = std::function<Status(std::span<const Value> values)>;

/// A table with all that the file declares of it: the rules of its columns (kValueRequired; an
/// empty text becomes null where zero length is not allowed), and its AutoNumbers, GUIDs and random
/// ones included. Reading goes through store(). Default values are for the caller to put in.
///
/// It belongs to its catalog, and is there until Catalog::Forget.
class Table {
 public:
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  const std::string& name() const { return name_; }
  TableStore& store() { return *store_; }
  const TableDefinition& definition() const { return store_->definition(); }
  const PropertyBlob& properties() const { return properties_; }

  /// Position in the definition of a column, in any case; kItemNotFound.
  Result<std::size_t> PositionOf(std::string_view column) const;
  /// The positions in the order in which columns are listed.
  const std::vector<std::size_t>& display_order() const { return display_order_; }

  /// Why nothing can be written; else ok.
  Status Writable() const;

  /// A check of whole rows beyond what the file's definition asks, made before anything changes,
  /// also when a change in another table cascades to here.
  void SetRowCheck(RowCheck check) { check_ = std::move(check); }

  /// Its sides of enforced relationships.
  Result<std::span<const ForeignLink>> Links();

  /// Changes, each in an open transaction. One that is refused has touched nothing, `values`
  /// included. AutoNumbers that are null in `values` are made, and put into it.
  Result<RowPointer> Insert(std::vector<Value>& values);
  Status Update(RowPointer at, std::span<const ColumnChange> changes);
  Status Delete(RowPointer at);

 private:
  friend class Catalog;
  friend class ChangePlan;

  Table(Catalog& catalog, std::string name, std::unique_ptr<TableStore> store,
        const Result<PropertyBlob>& properties);
  void ReadRules();
  void NoteLinks();
  void ForgetLinks() { links_.reset(); }
  const Property* PropertyOf(std::size_t position, std::string_view property) const;

  /// Puts random AutoNumbers and GUIDs in; true when another try may succeed where this one meets
  /// a number that is taken.
  bool MakeNumbers(std::vector<Value>& values);
  Result<RowPointer> InsertMade(std::vector<Value>& values);
  Status CheckReferences(const RowState& row);
  Result<RowChange> CheckUpdate(RowPointer at, std::span<const ColumnChange> changes);
  Result<RowChange> CheckDelete(RowPointer at);

  Catalog& catalog_;
  std::string name_;
  std::unique_ptr<TableStore> store_;
  PropertyBlob properties_;
  Status properties_read_;  ///< rules that cannot be read keep us from writing
  std::unordered_map<std::string, std::size_t> positions_;  ///< by folded name
  std::vector<std::size_t> display_order_;
  std::vector<std::size_t> made_guids_;    ///< positions of GUID AutoNumbers
  std::vector<std::size_t> made_numbers_;  ///< positions of random AutoNumbers
  std::vector<bool> linked_columns_;       ///< by position: in an index of a relationship
  bool has_links_ = false;
  std::optional<std::vector<ForeignLink>> links_;  ///< none: not looked up yet
  RowCheck check_;
};

}  // namespace zent::jet
