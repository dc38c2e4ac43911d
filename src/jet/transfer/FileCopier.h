#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/Catalog.h"
#include "jet/store/TableStore.h"
#include "jet/store/UsageMaps.h"
#include "jet/transfer/DenseDefinition.h"

namespace zent::jet {

/// Copies all objects of a database into a file that MakeNewFile has made. Tables get other pages
/// there, and so other numbers: what names them follows.
class FileCopier {
 public:
  /// `target` is in a transaction, and stays in it.
  FileCopier(Catalog& source, Pager& target, std::size_t sort_bytes)
      : source_(source), maps_(target), sort_bytes_(sort_bytes) {}

  Status Run();

 private:
  struct CopiedTable {
    TableDefinition table;
    std::vector<PageNumber> pages;
  };

  Status CopyTable(PageNumber from);
  Status CopyRows(TableStore& from, const DenseDefinition& dense, PageNumber to);
  Status MakeCatalogTable(PageNumber page);
  Status CopyCatalogRows(PageNumber page, const std::vector<std::string_view>& id_columns);
  Status LinkPartners();

  Catalog& source_;
  UsageMaps maps_;
  std::size_t sort_bytes_;
  PageNumber map_page_ = 0;                            ///< where the last maps went
  std::map<PageNumber, CopiedTable> tables_;           ///< by their place in the source
  std::map<PageNumber, DenseDefinition> definitions_;  ///< of the tables of the catalog
};

}  // namespace zent::jet
