#include "jet/tools/TableRowsCheck.h"

#include <fmt/format.h>

#include <algorithm>

#include "jet/format/RowCodec.h"
#include "jet/format/ValueCodec.h"

namespace zent::jet {
namespace {

constexpr std::size_t kPointerSize = 4;

const LongValueMaps* MapsOf(const TableDefinition& table, std::uint16_t column) {
  const auto found = std::find_if(table.long_value_maps.begin(), table.long_value_maps.end(),
                                  [&](const LongValueMaps& maps) { return maps.column == column; });
  return found == table.long_value_maps.end() ? nullptr : &*found;
}

}  // namespace

TableRowsCheck::TableRowsCheck(Checking& checking, PageNumber definition,
                               const TableDefinition& table, std::string subject)
    : checking_(checking), definition_(definition), table_(table), subject_(std::move(subject)) {
  owned_ = CheckMap(checking, table.owned_map, subject_);
  const PageUse::User user = checking.use.Add(subject_);
  std::erase_if(owned_, [&](PageNumber page) { return !checking.use.Claim(page, user); });
  const std::vector<PageNumber> free = CheckMap(checking, table.free_map, subject_);
  if (!std::includes(owned_.begin(), owned_.end(), free.begin(), free.end())) {
    checking.faults.Add(subject_, "pages with room that are not among its pages");
  }
  for (const ColumnDefinition& column : table.columns) {
    if (!IsLong(column.type)) continue;
    long_values_.try_emplace(column.number, checking, MapsOf(table, column.number),
                             fmt::format("{}, values of {}", subject_, column.name));
  }
}

void TableRowsCheck::Run(const VisitRow& visit) {
  for (const PageNumber page : owned_) CheckPage(page, visit);
  for (const PageNumber page : owned_) FindStrays(page);
  for (auto& [number, values] : long_values_) values.Finish();
}

std::optional<DataPageView> TableRowsCheck::OpenPage(const Result<PageView>& page,
                                                     PageNumber number) {
  if (!page.ok()) {
    checking_.faults.Add(subject_, page.error());
    return std::nullopt;
  }
  const Result<DataPageView> view =
      DataPageView::Open(checking_.pager.version(), page.value().bytes(), number);
  if (!view.ok()) {
    checking_.faults.Add(subject_, view.error());
    return std::nullopt;
  }
  if (view.value().owner() != definition_) {
    checking_.faults.Add(subject_, fmt::format("page {} names another table", number));
    return std::nullopt;
  }
  return view.value();
}

void TableRowsCheck::CheckPage(PageNumber number, const VisitRow& visit) {
  const Result<PageView> page = checking_.pager.Read(number);
  const std::optional<DataPageView> view = OpenPage(page, number);
  if (!view) return;
  const Status checked = CheckDataPage(checking_.pager.version(), page.value().bytes(), number);
  if (!checked.ok()) checking_.faults.Add(subject_, checked.error());
  for (std::size_t i = 0; i < view->count(); ++i) {
    const RowPointer at = {.page = number, .row = static_cast<std::uint8_t>(i)};
    const Result<Slot> slot = view->At(i);
    if (slot.ok()) CheckSlot(at, slot.value(), visit);
  }
}

void TableRowsCheck::CheckSlot(RowPointer at, const Slot& slot, const VisitRow& visit) {
  switch (slot.kind) {
    case SlotKind::Deleted:
      return;
    case SlotKind::Moved:
      any_moved_ = true;
      return;
    case SlotKind::Pointer:
      ++rows_;
      return CheckMoved(at, slot.bytes, visit);
    case SlotKind::Row:
      ++rows_;
      return CheckRow(at, slot.bytes, at.page, visit);
  }
}

void TableRowsCheck::CheckMoved(RowPointer at, ByteView pointer, const VisitRow& visit) {
  if (pointer.size() < kPointerSize) return Fault(at, "its pointer is cut");
  const RowPointer target = RowPointer::FromPacked(LoadU32(pointer, 0));
  const auto there = [&] { return fmt::format("page {} row {}", target.page, target.row); };
  if (!std::binary_search(owned_.begin(), owned_.end(), target.page)) {
    return Fault(at, "it has moved to " + there() + ", which is not the table's");
  }
  const Result<PageView> page = checking_.pager.Read(target.page);
  const std::optional<DataPageView> view = OpenPage(page, target.page);
  if (!view) return;
  const Result<Slot> slot = view->At(target.row);
  if (!slot.ok()) return checking_.faults.Add(subject_, slot.error());
  if (slot.value().kind != SlotKind::Moved) {
    return Fault(at, "it has moved to " + there() + ", where no moved row is");
  }
  if (!moved_.Mark(target)) return Fault(at, there() + " is the place of two rows");
  CheckRow(at, slot.value().bytes, target.page, visit);
}

void TableRowsCheck::CheckRow(RowPointer at, ByteView bytes, PageNumber page,
                              const VisitRow& visit) {
  const Result<RowView> row = RowView::Open(table_, bytes, page);
  if (!row.ok()) return Fault(at, "it cannot be read");
  if (row.value().column_count() > table_.max_columns) {
    return Fault(
        at, fmt::format("{} columns, more than the table ever had", row.value().column_count()));
  }
  bool right = true;
  for (const ColumnDefinition& column : table_.columns) {
    if (column.type == ColumnType::Bool) continue;
    ByteView field;
    const RowView::FieldState state = row.value().Field(column, field);
    if (state == RowView::FieldState::Null) continue;
    if (state == RowView::FieldState::Damaged) {
      Fault(at, "field " + column.name + " does not lie within the row");
      right = false;
    } else {
      right = CheckField(column, field, at, page) && right;
    }
  }
  if (right) visit(at, bytes, page);
}

bool TableRowsCheck::CheckField(const ColumnDefinition& column, ByteView bytes, RowPointer at,
                                PageNumber page) {
  if (IsLong(column.type)) {
    const std::uint64_t before = checking_.faults.count();
    long_values_.at(column.number).CheckField(bytes, at);
    return checking_.faults.count() == before;
  }
  const Result<Value> value = DecodeField(checking_.pager.version(), column, bytes, page);
  if (value.ok()) return true;
  Fault(at, fmt::format("field {} has {} bytes", column.name, bytes.size()));
  return false;
}

/// Moved rows that no row points to.
void TableRowsCheck::FindStrays(PageNumber number) {
  if (!any_moved_) return;
  const Result<PageView> page = checking_.pager.Read(number);
  if (!page.ok()) return;
  const Result<DataPageView> view =
      DataPageView::Open(checking_.pager.version(), page.value().bytes(), number);
  if (!view.ok()) return;
  for (std::size_t i = 0; i < view.value().count(); ++i) {
    const RowPointer at = {.page = number, .row = static_cast<std::uint8_t>(i)};
    Slot slot;
    if (!view.value().Read(i, slot) || slot.kind != SlotKind::Moved || moved_.Has(at)) continue;
    Fault(at, "a moved row that nothing points to");
  }
}

void TableRowsCheck::Fault(RowPointer at, const std::string& what) {
  checking_.faults.Add(subject_, fmt::format("page {} row {}: {}", at.page, at.row, what));
}

}  // namespace zent::jet
