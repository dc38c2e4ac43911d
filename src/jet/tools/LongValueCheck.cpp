#include "jet/tools/LongValueCheck.h"

#include <fmt/format.h>

#include <algorithm>

#include "jet/format/DataPage.h"
#include "jet/format/LongValueDescriptor.h"

namespace zent::jet {
namespace {

constexpr std::size_t kPointerSize = 4;  // at the start of each row of a chain

}  // namespace

LongValueCheck::LongValueCheck(Checking& checking, const LongValueMaps* maps, std::string subject)
    : checking_(checking),
      subject_(std::move(subject)),
      has_maps_(maps != nullptr && maps->owned.page != 0),
      user_(checking.use.Add(subject_)) {
  if (!has_maps_) return;
  owned_ = CheckMap(checking, maps->owned, subject_);
  for (const PageNumber page : owned_) checking_.use.Claim(page, user_);
  if (maps->free.page == 0) return;
  const std::vector<PageNumber> free = CheckMap(checking, maps->free, subject_);
  if (!std::includes(owned_.begin(), owned_.end(), free.begin(), free.end())) {
    checking_.faults.Add(subject_, "pages with room that are not among its pages");
  }
}

void LongValueCheck::CheckField(ByteView field, RowPointer row) {
  const Result<LongValueDescriptor> parsed = ParseLongValue(field, row.page);
  if (!parsed.ok()) return checking_.faults.Add(subject_, parsed.error());
  const LongValueDescriptor& value = parsed.value();
  if (value.kind == LongValueKind::Inline) return;
  Follow(value.first, value.kind == LongValueKind::Chain, value.length, row);
}

/// A chain that comes back to a row it had, or to one of another value, ends there.
void LongValueCheck::Follow(RowPointer first, bool chain, std::uint64_t length, RowPointer row) {
  std::uint64_t got = 0;
  for (RowPointer at = first; at.page != 0;) {
    ByteView bytes;
    const std::optional<PageView> page = Step(at, row, bytes);
    if (!page) return;
    if (!chain) {
      got = bytes.size();
      break;
    }
    if (bytes.size() < kPointerSize) return Fault(row, "a row of the chain is cut");
    got += bytes.size() - kPointerSize;
    at = RowPointer::FromPacked(LoadU32(bytes, 0));
  }
  if (got < length) {
    Fault(row, fmt::format("{} bytes of the {} that it should have", got, length));
  }
}

std::optional<PageView> LongValueCheck::Step(RowPointer at, RowPointer row, ByteView& bytes) {
  if (!OwnsPage(at.page)) {
    Fault(row, fmt::format("it lies on page {}, which is not the column's", at.page));
    return std::nullopt;
  }
  Result<PageView> page = checking_.pager.Read(at.page);
  const Result<DataPageView> view =
      page.ok() ? DataPageView::Open(checking_.pager.version(), page.value().bytes(), at.page)
                : Result<DataPageView>(page.error());
  const Result<Slot> slot = view.ok() ? view.value().At(at.row) : Result<Slot>(view.error());
  if (!slot.ok()) {
    checking_.faults.Add(subject_, slot.error());
    return std::nullopt;
  }
  if (view.value().owner() != kLongValueOwner || slot.value().kind != SlotKind::Row) {
    Fault(row, fmt::format("page {} row {} is no row of a long value", at.page, at.row));
    return std::nullopt;
  }
  if (!named_.Mark(at)) {
    Fault(row, fmt::format("page {} row {} is part of two values or of a loop", at.page, at.row));
    return std::nullopt;
  }
  bytes = slot.value().bytes;
  return std::move(page.value());
}

bool LongValueCheck::OwnsPage(PageNumber page) {
  if (has_maps_) return std::binary_search(owned_.begin(), owned_.end(), page);
  const auto at = std::lower_bound(owned_.begin(), owned_.end(), page);
  if (at != owned_.end() && *at == page) return true;
  if (!checking_.use.Claim(page, user_)) return false;
  owned_.insert(at, page);
  return true;
}

void LongValueCheck::Finish() {
  for (const PageNumber page : owned_) CheckPage(page);
}

void LongValueCheck::CheckPage(PageNumber number) {
  const Result<PageView> page = checking_.pager.Read(number);
  if (!page.ok()) return checking_.faults.Add(subject_, page.error());
  const JetVersion version = checking_.pager.version();
  const Status checked = CheckDataPage(version, page.value().bytes(), number);
  if (!checked.ok()) return checking_.faults.Add(subject_, checked.error());
  const Result<DataPageView> view = DataPageView::Open(version, page.value().bytes(), number);
  if (!view.ok()) return checking_.faults.Add(subject_, view.error());
  if (view.value().owner() != kLongValueOwner) {
    return checking_.faults.Add(subject_, fmt::format("page {} holds no long values", number));
  }
  for (std::size_t i = 0; i < view.value().count(); ++i) {
    const RowPointer at = {.page = number, .row = static_cast<std::uint8_t>(i)};
    Slot slot;
    if (!view.value().Read(i, slot) || slot.kind == SlotKind::Deleted || named_.Has(at)) continue;
    checking_.faults.Add(subject_,
                         fmt::format("page {} row {} belongs to no value", number, at.row));
  }
}

void LongValueCheck::Fault(RowPointer row, const std::string& what) {
  checking_.faults.Add(subject_,
                       fmt::format("value of page {} row {}: {}", row.page, row.row, what));
}

}  // namespace zent::jet
