#pragma once

#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/Catalog.h"
#include "jet/format/PropertyBlob.h"
#include "jet/format/TableDefinition.h"

namespace zent::jet {

/// A local table whose definition is about to change.
struct EditedTable {
  CatalogObject object;
  TableDefinition definition;
  std::vector<PageNumber> pages;  ///< of the definition
  PropertyBlob properties;

  PageNumber page() const { return pages.front(); }
  /// Where the table's maps are.
  PageNumber map_page() const { return definition.owned_map.page; }
};

/// kNoSuchTable; kReadOnly for a table of the engine itself, and when nothing can be written.
Result<EditedTable> OpenForEdit(Catalog& catalog, std::string_view name);

/// The object of a table that people made, linked ones included; errors as OpenForEdit.
Result<CatalogObject> FindTable(Catalog& catalog, std::string_view name);

/// Sorts the definition and writes it.
Status SaveDefinition(Catalog& catalog, EditedTable& table);

/// Makes the catalog forget when a change ends, well or not.
class ForgettingScope {
 public:
  explicit ForgettingScope(Catalog& catalog) : catalog_(catalog) {}
  ~ForgettingScope() { catalog_.Forget(); }
  ForgettingScope(const ForgettingScope&) = delete;
  ForgettingScope& operator=(const ForgettingScope&) = delete;

 private:
  Catalog& catalog_;
};

/// Why nothing can be changed: a file that is only read, no open transaction; else ok.
Status ReadyToChange(Catalog& catalog);

}  // namespace zent::jet
