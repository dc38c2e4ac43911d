#include "SampleFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "jet/format/DataPage.h"
#include "jet/format/DefinitionPages.h"
#include "jet/format/IndexPage.h"
#include "jet/format/LongValueDescriptor.h"
#include "jet/format/Rc4.h"
#include "jet/format/UsageMap.h"
#include "jet/format/ValueCodec.h"

namespace zent::jet {
namespace {

constexpr std::int16_t kLocalTable = 1;

std::vector<std::uint8_t> ReadAll(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

SampleFile::SampleFile(const std::filesystem::path& path) {
  const std::vector<std::uint8_t> bytes = ReadAll(path);
  const Result<FileHeader> header = ParseFileHeader(bytes);
  EXPECT_TRUE(header.ok());
  header_ = header.value();
  const std::size_t page_size = LayoutOf(header_.version).page_size;
  for (std::size_t at = 0; at + page_size <= bytes.size(); at += page_size) {
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    pages_.emplace_back(begin, begin + static_cast<std::ptrdiff_t>(page_size));
    CryptPage(header_.database_key, page_count() - 1, pages_.back());
  }
}

std::vector<PageNumber> SampleFile::Tables() const {
  const TableDefinition catalog = Definition(kObjectsPage);
  const auto named = [&](std::string_view name) {
    return *std::find_if(catalog.columns.begin(), catalog.columns.end(),
                         [&](const ColumnDefinition& column) { return column.name == name; });
  };
  std::vector<PageNumber> tables;
  ForEachRow(catalog, [&](RowPointer, const RowView& row) {
    if (FieldOf(catalog, named("Type"), row) != Value(kLocalTable)) return;
    const Value id = FieldOf(catalog, named("Id"), row);
    tables.push_back(static_cast<PageNumber>(std::get<std::int32_t>(id)));
  });
  return tables;
}

std::vector<PageNumber> SampleFile::DefinitionPages(PageNumber first) const {
  std::vector<PageNumber> pages;
  DefinitionJoiner joiner(version());
  for (PageNumber page = first; !joiner.complete(); page = joiner.next()) {
    pages.push_back(page);
    const Status added = joiner.Add(page, Page(page));
    EXPECT_TRUE(added.ok());
    if (!added.ok()) break;
  }
  return pages;
}

std::vector<std::uint8_t> SampleFile::DefinitionStream(PageNumber first) const {
  DefinitionJoiner joiner(version());
  for (const PageNumber page : DefinitionPages(first)) {
    EXPECT_TRUE(joiner.Add(page, Page(page)).ok());
  }
  return {joiner.stream().begin(), joiner.stream().end()};
}

TableDefinition SampleFile::Definition(PageNumber first) const {
  const Result<TableDefinition> table =
      ParseTableDefinition(version(), DefinitionStream(first), first);
  EXPECT_TRUE(table.ok()) << (table.ok() ? "" : table.error().description);
  return table.ok() ? table.value() : TableDefinition{};
}

Slot SampleFile::SlotAt(RowPointer at) const {
  const Result<DataPageView> page = DataPageView::Open(version(), Page(at.page), at.page);
  EXPECT_TRUE(page.ok()) << (page.ok() ? "" : page.error().description);
  if (!page.ok()) return {};
  const Result<Slot> slot = page.value().At(at.row);
  EXPECT_TRUE(slot.ok()) << (slot.ok() ? "" : slot.error().description);
  return slot.value_or({});
}

std::vector<PageNumber> SampleFile::PagesOf(RowPointer map) const {
  std::vector<PageNumber> pages;
  const auto collect = [&](const PageBits& bits) {
    for (auto page = bits.Next(0); page; page = bits.Next(*page + 1)) pages.push_back(*page);
  };
  const Result<UsageMapView> view = UsageMapView::Open(version(), SlotAt(map).bytes, map.page);
  EXPECT_TRUE(view.ok());
  if (!view.ok()) return pages;
  if (view.value().kind() == MapKind::Inline) {
    collect(view.value().bits());
    return pages;
  }
  for (std::size_t i = 0; i < view.value().reference_count(); ++i) {
    const PageNumber page = view.value().reference(i);
    if (page == 0 || page >= page_count()) continue;
    const Result<PageBits> bits = OpenBitmapPage(version(), Page(page), i, page);
    if (bits.ok()) collect(bits.value());
  }
  return pages;
}

void SampleFile::ForEachRow(const TableDefinition& table, const VisitRow& visit) const {
  for (const PageNumber number : PagesOf(table.owned_map)) {
    const Result<DataPageView> page = DataPageView::Open(version(), Page(number), number);
    ASSERT_TRUE(page.ok()) << page.error().description;
    for (std::size_t i = 0; i < page.value().count(); ++i) {
      const RowPointer at = {.page = number, .row = static_cast<std::uint8_t>(i)};
      Slot slot = SlotAt(at);
      if (slot.kind == SlotKind::Deleted || slot.kind == SlotKind::Moved) continue;
      if (slot.kind == SlotKind::Pointer) {
        slot = SlotAt(RowPointer::FromPacked(LoadU32(slot.bytes, 0)));
      }
      const Result<RowView> row = RowView::Open(table, slot.bytes, number);
      ASSERT_TRUE(row.ok()) << row.error().description;
      visit(at, row.value());
    }
  }
}

std::string SampleFile::LongValue(ByteView field) const {
  const Result<LongValueDescriptor> found = ParseLongValue(field, 0);
  EXPECT_TRUE(found.ok());
  const LongValueDescriptor& value = found.value();
  if (value.kind == LongValueKind::Inline) return std::string(AsText(value.data));
  if (value.kind == LongValueKind::Single) {
    return std::string(AsText(SlotAt(value.first).bytes)).substr(0, value.length);
  }
  std::string bytes;
  for (RowPointer at = value.first; at.page != 0 && bytes.size() < value.length;) {
    const ByteView row = SlotAt(at).bytes;
    bytes += AsText(row.subspan(4));
    at = RowPointer::FromPacked(LoadU32(row, 0));
  }
  return bytes.substr(0, value.length);
}

Value SampleFile::FieldOf(const TableDefinition& table, const ColumnDefinition& column,
                          const RowView& row) const {
  if (column.type == ColumnType::Bool) return row.Has(column);
  ByteView bytes;
  const RowView::FieldState state = row.Field(column, bytes);
  EXPECT_NE(state, RowView::FieldState::Damaged) << column.name;
  if (state != RowView::FieldState::Present) return Null{};
  std::string long_value;
  if (IsLong(column.type)) {
    long_value = LongValue(bytes);
    bytes = AsBytes(long_value);
  }
  const Result<Value> value = DecodeField(table.version, column, bytes, 0);
  EXPECT_TRUE(value.ok()) << column.name;
  return value.value_or(Null{});
}

std::vector<SampleFile::Entry> SampleFile::EntriesOf(PageNumber root) const {
  PageNumber number = root;
  std::vector<Entry> entries;
  for (int steps = 0; steps < 10000; ++steps) {
    const Result<IndexPageView> page = IndexPageView::Open(version(), Page(number), number);
    EXPECT_TRUE(page.ok()) << (page.ok() ? "" : page.error().description);
    if (!page.ok()) break;
    const IndexPageView& view = page.value();
    if (!view.leaf()) {  // down its first child
      number = view.count() > 0 ? view.Child(0) : view.tail();
      continue;
    }
    for (std::size_t i = 0; i < view.count(); ++i) entries.push_back({view.Key(i), view.Row(i)});
    number = view.next();
    if (number == 0) break;
  }
  return entries;
}

}  // namespace zent::jet
