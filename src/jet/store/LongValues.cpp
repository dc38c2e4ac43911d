#include "jet/store/LongValues.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr std::size_t kPointerSize = 4;  // at the start of each row of a chain

/// A row of a long value, held while this lives.
struct ValueRow {
  PageView page;
  ByteView bytes;
};

Result<ValueRow> ReadRow(Pager& pager, RowPointer at) {
  Result<PageView> page = pager.Read(at.page);
  if (!page.ok()) return page.error();
  const Result<DataPageView> view =
      DataPageView::Open(pager.version(), page.value().bytes(), at.page);
  if (!view.ok()) return view.error();
  if (view.value().owner() != kLongValueOwner) return Damaged(at.page, "no page of long values");
  const Result<Slot> slot = view.value().At(at.row);
  if (!slot.ok()) return slot.error();
  if (slot.value().kind != SlotKind::Row) return Damaged(at.page, "a long value was deleted");
  const ByteView bytes = slot.value().bytes;
  return ValueRow{std::move(page.value()), bytes};
}

/// Follows a chain; what is met twice is damage.
class ChainWalk {
 public:
  ChainWalk(Pager& pager, RowPointer first) : pager_(pager), at_(first) {}

  RowPointer at() const { return at_; }
  bool done() const { return at_.page == 0; }
  /// The row at hand; moves on to the next.
  Result<ValueRow> Step() {
    if (!seen_.insert(at_.packed()).second) return Damaged(at_.page, "a long value goes in a loop");
    Result<ValueRow> row = ReadRow(pager_, at_);
    if (!row.ok()) return row;
    ByteView& bytes = row.value().bytes;
    if (bytes.size() < kPointerSize) return Damaged(at_.page, "a row of a long value is cut");
    at_ = RowPointer::FromPacked(LoadU32(bytes, 0));
    bytes = bytes.subspan(kPointerSize);
    return row;
  }

 private:
  Pager& pager_;
  RowPointer at_;
  std::unordered_set<std::uint32_t> seen_;
};

Status ReadChain(Pager& pager, const LongValueDescriptor& descriptor, PageNumber page,
                 std::string& value) {
  value.clear();
  value.reserve(descriptor.length);
  for (ChainWalk walk(pager, descriptor.first); value.size() < descriptor.length;) {
    if (walk.done()) return Damaged(page, "a long value ends before its length");
    const Result<ValueRow> row = walk.Step();
    if (!row.ok()) return row.status();
    // Each row brings something, so that the length bounds the work.
    if (row.value().bytes.empty()) return Damaged(page, "a long value has an empty row");
    value += AsText(row.value().bytes).substr(0, descriptor.length - value.size());
  }
  return {};
}

Result<std::vector<RowPointer>> RowsOf(Pager& pager, const LongValueDescriptor& value) {
  std::vector<RowPointer> rows;
  if (value.kind == LongValueKind::Single) rows.push_back(value.first);
  if (value.kind != LongValueKind::Chain) return rows;
  for (ChainWalk walk(pager, value.first); !walk.done();) {
    rows.push_back(walk.at());
    if (Result<ValueRow> row = walk.Step(); !row.ok()) return row.error();
  }
  return rows;
}

/// Makes the row `at` of a chain lead to `next`.
Status SetNext(Pager& pager, RowPointer at, RowPointer next) {
  Result<PageEdit> edit = pager.Edit(at.page);
  if (!edit.ok()) return edit.error();
  const MutableBytes page = edit.value().bytes();
  const Result<DataPageView> view = DataPageView::Open(pager.version(), page, at.page);
  if (!view.ok()) return view.error();
  const Result<Slot> slot = view.value().At(at.row);
  if (!slot.ok()) return slot.error();
  StoreU32(page, static_cast<std::size_t>(slot.value().bytes.data() - page.data()), next.packed());
  return {};
}

// From the first row to the last, so that the pages of a value follow each other in a new file.
Result<RowPointer> StoreChain(Pager& pager, ByteView value, const LongValueSink& insert) {
  const std::size_t most = pager.layout().data.max_long_value_row - kPointerSize;
  RowPointer first;
  RowPointer previous;
  for (std::string row; !value.empty();) {
    const std::size_t count = std::min(most, value.size());
    row.assign(kPointerSize, '\0');
    row += AsText(value.first(count));
    value = value.subspan(count);
    Result<RowPointer> at = insert(AsBytes(row));
    if (!at.ok()) return at;
    if (first.page == 0) {
      first = at.value();
    } else if (Status linked = SetNext(pager, previous, at.value()); !linked.ok()) {
      return linked.error();
    }
    previous = at.value();
  }
  return first;
}

}  // namespace

Status ReadLongValue(Pager& pager, ByteView field, PageNumber page, std::string& value) {
  const Result<LongValueDescriptor> parsed = ParseLongValue(field, page);
  if (!parsed.ok()) return parsed.status();
  const LongValueDescriptor& descriptor = parsed.value();
  if (descriptor.kind == LongValueKind::Inline) {
    value = AsText(descriptor.data);
    return {};
  }
  if (descriptor.length > std::uint64_t{pager.page_count()} * pager.page_size()) {
    return Damaged(page, "a long value that is longer than the file");
  }
  const ReadScope scope(pager);
  if (!scope.status().ok()) return scope.status();
  if (descriptor.kind == LongValueKind::Chain) return ReadChain(pager, descriptor, page, value);

  const Result<ValueRow> row = ReadRow(pager, descriptor.first);
  if (!row.ok()) return row.status();
  if (row.value().bytes.size() < descriptor.length) {
    return Damaged(descriptor.first.page, "a long value ends before its length");
  }
  value = AsText(row.value().bytes).substr(0, descriptor.length);
  return {};
}

Result<std::string> ReadLongValue(Pager& pager, ByteView field, PageNumber page) {
  std::string value;
  if (Status read = ReadLongValue(pager, field, page, value); !read.ok()) return read.error();
  return value;
}

Result<std::string> StoreLongValue(Pager& pager, ByteView value, bool apart,
                                   const LongValueSink& insert) {
  const Layout& layout = pager.layout();
  if (value.size() > kMaxLongValue) return JetError(kFieldTooSmall);
  const auto length = static_cast<std::uint32_t>(value.size());
  const auto field = [&](LongValueKind kind, RowPointer first) {
    const auto bytes = LongValueField(kind, length, first);
    return std::string(AsText(bytes));
  };
  if (length == 0 || (!apart && length <= layout.data.max_inline_value)) {
    return field(LongValueKind::Inline, {}).append(AsText(value));
  }
  const bool single = length <= layout.data.max_long_value_row;
  const Result<RowPointer> first = single ? insert(value) : StoreChain(pager, value, insert);
  if (!first.ok()) return first.error();
  return field(single ? LongValueKind::Single : LongValueKind::Chain, first.value());
}

// A row of a long value is named by one field alone, so that its slot may be used again.
LongValues::LongValues(UsageMaps& maps, const LongValueMaps& column)
    : pages_(maps, {.number = kLongValueOwner,
                    .owned = column.owned,
                    .free = column.free,
                    .reuses_slots = true}) {}

Result<std::string> LongValues::Write(ByteView value, bool apart) {
  return StoreLongValue(pages_.maps().pager(), value, apart,
                        [this](ByteView row) { return pages_.Insert(row, SlotKind::Row); });
}

Status LongValues::Release(ByteView field, PageNumber page) {
  Pager& pager = pages_.maps().pager();
  const Result<LongValueDescriptor> value = ParseLongValue(field, page);
  if (!value.ok()) return value.error();
  const Result<std::vector<RowPointer>> rows = RowsOf(pager, value.value());
  if (!rows.ok()) return rows.error();
  for (const RowPointer& row : rows.value()) {
    if (Result<ValueRow> there = ReadRow(pager, row); !there.ok()) return there.error();
    const Result<bool> ours = pages_.maps().Has(pages_.owner().owned, row.page);
    if (!ours.ok()) return ours.error();
    if (!ours.value()) return Damaged(row.page, "a long value of another column");
  }
  for (const RowPointer& row : rows.value()) {
    if (Status deleted = pages_.Delete(row); !deleted.ok()) return deleted;
  }
  return {};
}

}  // namespace zent::jet
