#include "jet/transfer/NewFile.h"

#include <vector>

#include "jet/format/DataPage.h"
#include "jet/format/JetErrors.h"
#include "jet/format/UsageMap.h"

namespace zent::jet {
namespace {

Status MakeGlobalMap(Pager& pager) {
  Result<PageEdit> page = pager.Append();
  if (!page.ok()) return page.error();
  InitGlobalMapPage(page.value().bytes());
  return {};
}

}  // namespace

Result<std::unique_ptr<Pager>> MakeNewFile(Storage& storage, std::string_view path,
                                           const FileHeader& header, const PagerOptions& options) {
  std::vector<std::uint8_t> page(LayoutOf(JetVersion::Jet4).page_size);
  if (Status wrote = WriteFileHeader(header, page); !wrote.ok()) return wrote.error();
  Result<std::unique_ptr<Pager>> pager = Pager::Create(storage, path, page, options);
  if (!pager.ok()) return pager;
  if (Status begun = pager.value()->Begin(); !begun.ok()) return begun.error();
  if (Status made = MakeGlobalMap(*pager.value()); !made.ok()) return made.error();
  while (pager.value()->page_count() <= kRelationshipsPage) {
    const Result<PageEdit> added = pager.value()->Append();
    if (!added.ok()) return added.error();
  }
  return pager;
}

}  // namespace zent::jet
