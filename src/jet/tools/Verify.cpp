#include "jet/tools/Verify.h"

#include <fmt/format.h>

#include "jet/store/UsageMaps.h"
#include "jet/tools/CatalogCheck.h"
#include "jet/tools/TableCheck.h"

namespace zent::jet {
namespace {

/// The map at row 1 of page 1, empty in files at rest.
constexpr RowPointer kSecondMap = {.page = kGlobalMapPage, .row = 1};

/// Once all users are known: what is used is not free, and what is not used is.
void CompareWithFree(Checking& checking, const std::vector<bool>& free, VerifySummary& summary) {
  for (PageNumber page = 0; page < checking.use.page_count(); ++page) {
    if (free[page]) {
      ++summary.free_pages;
      if (checking.use.IsUsed(page)) {
        checking.faults.Add("global map", fmt::format("page {} is marked free and used by {}", page,
                                                      checking.use.NameOf(page)));
      }
    } else if (!checking.use.IsUsed(page)) {
      ++summary.lost_pages;
    }
  }
}

void CheckTables(Checking& checking, UsageMaps& maps, CatalogCheck& catalog,
                 VerifySummary& summary) {
  for (const CheckedObject& object : catalog.objects()) {
    if (!object.IsTable()) continue;
    const TableCheckResult table =
        CheckTable(checking, maps, static_cast<PageNumber>(object.id), object.name);
    ++summary.tables;
    summary.rows += table.rows;
    summary.index_entries += table.entries;
    if (table.readable) catalog.AddTable(object, table.definition);
  }
}

}  // namespace

Result<VerifySummary> VerifyDatabase(Pager& pager, const TellFault& tell) {
  const ReadScope scope(pager);
  if (!scope.status().ok()) return scope.status().error();
  FaultLog faults(tell);
  PageUse use(pager.page_count(), faults);
  Checking checking = {.pager = pager, .use = use, .faults = faults};
  UsageMaps maps(pager);
  VerifySummary summary = {.pages = pager.page_count()};

  use.Claim(0, use.Add("header"));
  const std::vector<bool> free = CheckFreePages(checking);
  CheckMap(checking, kSecondMap, "second map of page 1");
  CatalogCheck catalog(maps, faults);
  const bool catalog_read = catalog.ReadObjects();
  if (catalog_read) {
    CheckTables(checking, maps, catalog, summary);
    catalog.CheckBelongings();
    catalog.CheckProperties();
    catalog.CheckRelationships();
    CompareWithFree(checking, free, summary);
  }
  faults.Finish();
  summary.faults = faults.count();
  return summary;
}

}  // namespace zent::jet
