#include "jet/schema/FilledIndex.h"

#include "jet/schema/DefinitionWriter.h"
#include "jet/schema/IndexFill.h"
#include "jet/schema/ReleaseStorage.h"

namespace zent::jet {

Result<std::size_t> AddFilledIndex(Catalog& catalog, RealIndex index, EditedTable& table) {
  UsageMaps& maps = catalog.maps();
  const Result<std::unique_ptr<TableStore>> rows = TableStore::Open(maps, table.page());
  if (!rows.ok()) return rows.error();
  PageNumber beside = table.map_page();
  if (Status made = CreateTree(maps, table.page(), beside, index); !made.ok()) {
    return made.error();
  }
  const std::size_t position = table.definition.real_indexes.size();
  table.definition.real_indexes.push_back(std::move(index));
  Status filled = FillIndex(maps, *rows.value(), position, table.definition);
  if (filled.ok()) return position;

  const RealIndex refused = std::move(table.definition.real_indexes.back());
  table.definition.real_indexes.pop_back();
  static_cast<void>(ReleaseTree(maps, refused));  // the first error is the one to report
  return filled.error();
}

}  // namespace zent::jet
