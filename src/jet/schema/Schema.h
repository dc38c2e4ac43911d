#pragma once

#include <string_view>

#include "base/Status.h"
#include "jet/format/PropertyBlob.h"
#include "jet/format/Value.h"
#include "jet/schema/NewTable.h"

namespace zent::jet {

class Catalog;
struct Relationship;

/// Changes what a database is made of. Every change needs an open transaction of the pager and is
/// all or nothing within it: one that is refused has touched nothing; one that fails half way (a
/// full disk, damage) leaves the transaction fit for a rollback only. The catalog forgets what it
/// has cached: tables opened before are no longer valid.
///
/// Names have 1 to 64 characters, none of . ! ` [ ] or a control character, no leading blank
/// (kInvalidName), and are the same whatever their case.
class Schema {
 public:
  /// `now`, local time, is written as the date of what changes.
  explicit Schema(Catalog& catalog, Date now = {}) : catalog_(catalog), now_(now) {}

  /// kTableExists, also for a query of that name; kFieldDefinedTwice, kTooManyFields,
  /// kFieldTooSmall for a size that the type does not have, kRecordTooLarge when the fixed columns
  /// alone fill a page.
  Status CreateTable(const NewTable& table);
  /// Relationships follow.
  Status RenameTable(std::string_view from, std::string_view to);
  /// kTableInUse while a relationship names it.
  Status DropTable(std::string_view table);

  /// Rows keep what they have and are null in the new column; an AutoNumber numbers them.
  Status AddColumn(std::string_view table, const NewColumn& column);
  /// kFieldInIndex while an index or a relationship uses it.
  Status DropColumn(std::string_view table, std::string_view column);
  Status RenameColumn(std::string_view table, std::string_view from, std::string_view to);

  /// Fills it from the rows: kDuplicateKey, kNullInKey. kIndexExists, kPrimaryKeyExists.
  Status CreateIndex(std::string_view table, const NewIndex& index);
  /// kFieldInIndex for the index of a relationship.
  Status DropIndex(std::string_view table, std::string_view index);

  /// An enforced one wants a unique index over the referenced columns, gets an index on both sides,
  /// and all rows must fit: kNoRelatedRecord.
  Status CreateRelationship(const Relationship& relationship);
  Status DropRelationship(std::string_view name);

  /// Of a column, or, with `column` empty, of the table.
  Status SetProperty(std::string_view table, std::string_view column, const Property& property);
  /// kItemNotFound when there is none.
  Status RemoveProperty(std::string_view table, std::string_view column, std::string_view property);

 private:
  Catalog& catalog_;
  Date now_;
};

}  // namespace zent::jet
