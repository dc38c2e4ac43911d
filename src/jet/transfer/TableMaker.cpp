#include "jet/transfer/TableMaker.h"

#include "jet/format/DefinitionPages.h"
#include "jet/format/JetErrors.h"
#include "jet/store/IndexTree.h"

namespace zent::jet {
namespace {

/// Makes maps, as many as fit on one page beside each other.
class MapMaker {
 public:
  MapMaker(UsageMaps& maps, PageNumber& last) : maps_(maps), last_(last) {}

  Status Make(RowPointer& map) {
    const Result<RowPointer> made = maps_.Create(last_);
    if (!made.ok()) return made.status();
    map = made.value();
    last_ = map.page;
    return {};
  }

 private:
  UsageMaps& maps_;
  PageNumber& last_;
};

Status MakeTrees(UsageMaps& maps, PageNumber page, TableDefinition& table) {
  for (RealIndex& real : table.real_indexes) {
    const Result<IndexTree> tree = IndexTree::Create(maps, page, real.map);
    if (!tree.ok()) return tree.error();
    real.root = tree.value().place().root;
  }
  return {};
}

Status MakeMaps(UsageMaps& maps, TableDefinition& table, PageNumber& map_page) {
  MapMaker maker(maps, map_page);
  if (Status made = maker.Make(table.owned_map); !made.ok()) return made;
  if (Status made = maker.Make(table.free_map); !made.ok()) return made;
  for (RealIndex& real : table.real_indexes) {
    if (Status made = maker.Make(real.map); !made.ok()) return made;
  }
  for (LongValueMaps& column : table.long_value_maps) {
    if (Status made = maker.Make(column.owned); !made.ok()) return made;
    if (Status made = maker.Make(column.free); !made.ok()) return made;
  }
  return {};
}

}  // namespace

Result<std::vector<PageNumber>> MakeTable(UsageMaps& maps, TableDefinition& table, PageNumber first,
                                          PageNumber& map_page) {
  const std::size_t length = SerialiseTableDefinition(table).size();
  std::vector<PageNumber> pages;
  if (first != 0) pages.push_back(first);
  while (pages.size() < DefinitionPageCount(table.version, length)) {
    const Result<PageEdit> page = maps.allocator().Allocate();
    if (!page.ok()) return page.error();
    pages.push_back(page.value().page());
  }
  if (Status made = MakeMaps(maps, table, map_page); !made.ok()) return made.error();
  if (Status made = MakeTrees(maps, pages.front(), table); !made.ok()) return made.error();
  if (Status wrote = RewriteDefinition(maps.pager(), table, pages); !wrote.ok()) {
    return wrote.error();
  }
  return pages;
}

Status RewriteDefinition(Pager& pager, const TableDefinition& table,
                         const std::vector<PageNumber>& pages) {
  const std::vector<std::uint8_t> stream = SerialiseTableDefinition(table);
  if (DefinitionPageCount(table.version, stream.size()) != pages.size()) {
    return Damaged(pages.front(), "a definition does not fit its pages");
  }
  for (std::size_t i = 0; i < pages.size(); ++i) {
    Result<PageEdit> edit = pager.Edit(pages[i]);
    if (!edit.ok()) return edit.error();
    const PageNumber next = i + 1 < pages.size() ? pages[i + 1] : 0;
    WriteDefinitionPage(table.version, stream, i, next, edit.value().bytes());
  }
  return {};
}

}  // namespace zent::jet
