#include "jet/tools/MapCheck.h"

#include <fmt/format.h>

#include "jet/format/DataPage.h"
#include "jet/format/JetErrors.h"
#include "jet/format/UsageMap.h"

namespace zent::jet {
namespace {

/// Reads one map, bit by bit or bitmap page by bitmap page.
class MapCheck {
 public:
  /// `beyond`: bits for pages behind the end of the file are in order.
  MapCheck(Checking& checking, const std::string& subject, bool beyond)
      : checking_(checking), subject_(subject), beyond_(beyond) {}

  std::vector<PageNumber> Read(RowPointer map) {
    const Status done = ReadRow(map);
    if (!done.ok()) checking_.faults.Add(subject_, done.error());
    return std::move(pages_);
  }

 private:
  Status ReadRow(RowPointer map) {
    Pager& pager = checking_.pager;
    const PageUse::User user = checking_.use.Add(subject_);
    if (!checking_.use.ClaimMap(map, user)) return {};
    checking_.use.Claim(map.page, checking_.use.map_pages(), true);
    const Result<PageView> page = pager.Read(map.page);
    if (!page.ok()) return page.error();
    const Result<DataPageView> view =
        DataPageView::Open(pager.version(), page.value().bytes(), map.page);
    if (!view.ok()) return view.error();
    if (!HoldsUsageMaps(map.page, view.value().owner())) {
      return Damaged(map.page, "no page of usage maps");
    }
    const Result<Slot> slot = view.value().At(map.row);
    if (!slot.ok()) return slot.error();
    if (slot.value().kind != SlotKind::Row) return Damaged(map.page, "a usage map was deleted");
    const Result<UsageMapView> row =
        UsageMapView::Open(pager.version(), slot.value().bytes, map.page);
    if (!row.ok()) return row.error();
    if (row.value().kind() == MapKind::Inline) {
      Take(row.value().bits());
    } else {
      ReadBitmaps(row.value(), user);
    }
    return {};
  }

  void ReadBitmaps(const UsageMapView& row, PageUse::User user) {
    for (std::size_t i = 0; i < row.reference_count(); ++i) {
      const PageNumber number = row.reference(i);
      if (number == 0 || !checking_.use.Claim(number, user)) continue;
      const Result<PageView> page = checking_.pager.Read(number);
      if (!page.ok()) {
        checking_.faults.Add(subject_, page.error());
        continue;
      }
      const Result<PageBits> bits =
          OpenBitmapPage(checking_.pager.version(), page.value().bytes(), i, number);
      if (!bits.ok()) {
        checking_.faults.Add(subject_, bits.error());
        continue;
      }
      Take(bits.value());
    }
  }

  void Take(const PageBits& bits) {
    const PageNumber end = checking_.use.page_count();
    std::optional<PageNumber> page = bits.Next(bits.first());
    for (; page && *page < end; page = bits.Next(*page + 1)) pages_.push_back(*page);
    if (page && !beyond_) {
      checking_.faults.Add(
          subject_, fmt::format("its usage map has page {}, beyond the end of the file", *page));
    }
  }

  Checking& checking_;
  const std::string& subject_;
  bool beyond_;
  std::vector<PageNumber> pages_;
};

}  // namespace

std::vector<PageNumber> CheckMap(Checking& checking, RowPointer map, const std::string& subject) {
  return MapCheck(checking, subject, false).Read(map);
}

std::vector<bool> CheckFreePages(Checking& checking) {
  std::vector<bool> free(checking.use.page_count());
  for (const PageNumber page : MapCheck(checking, "global map", true).Read(kGlobalMap)) {
    free[page] = true;
  }
  return free;
}

}  // namespace zent::jet
