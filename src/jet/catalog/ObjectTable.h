#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/CatalogObject.h"
#include "jet/catalog/SystemTable.h"

namespace zent::jet {

/// The rows of MSysObjects, read. Rows are found through its indexes; where an index cannot be
/// searched, by going through all.
class ObjectTable {
 public:
  static Result<ObjectTable> Open(UsageMaps& maps);

  /// All, in the order of the file.
  Result<std::vector<CatalogObject>> All();
  /// The object of that name, in any case, in the container `parent`. Two of them are damage.
  Result<std::optional<CatalogObject>> FindIn(std::int32_t parent, std::string_view name);
  Result<std::optional<CatalogObject>> FindById(std::int32_t id);
  /// The bytes of the object's properties; kObjectNotFound when its row is another one's now.
  Result<std::string> PropertyBytes(const CatalogObject& object);

 private:
  explicit ObjectTable(SystemTable table) : table_(std::move(table)) {}

  Result<CatalogObject> Read(RowPointer at, ByteView bytes, PageNumber page);
  /// The object whose `columns` have `values`; `matches` tells so when there is no index to ask.
  template <typename Matches>
  Result<std::optional<CatalogObject>> Find(std::span<const std::size_t> columns,
                                            std::span<const Value> values, const Matches& matches);

  SystemTable table_;
};

}  // namespace zent::jet
