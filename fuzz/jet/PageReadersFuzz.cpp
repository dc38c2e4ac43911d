// Any bytes as a page or part of one: each reader refuses them or gives what is written and read
// again the same. The first byte picks the reader, the second the version.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "jet/format/DataPage.h"
#include "jet/format/DefinitionPages.h"
#include "jet/format/FileHeader.h"
#include "jet/format/IndexPage.h"
#include "jet/format/LongValueDescriptor.h"
#include "jet/format/PropertyBlob.h"
#include "jet/format/RowCodec.h"
#include "jet/format/TableDefinition.h"
#include "jet/format/UsageMap.h"
#include "jet/format/ValueCodec.h"

namespace {

using zent::jet::ByteView;
using zent::jet::JetVersion;

void Require(bool kept) {
  if (!kept) std::abort();
}

void ReadDefinition(JetVersion version, ByteView bytes) {
  const auto table = zent::jet::ParseTableDefinition(version, bytes, 1);
  if (!table.ok()) return;
  const std::vector<std::uint8_t> stream = zent::jet::SerialiseTableDefinition(table.value());
  const auto again = zent::jet::ParseTableDefinition(version, stream, 1);
  Require(again.ok() && zent::jet::SerialiseTableDefinition(again.value()) == stream);
}

/// A row read by a table of all types, each column fixed and variable.
void ReadRow(JetVersion version, ByteView bytes) {
  zent::jet::TableDefinition table = {.version = version, .variable_slots = 20};
  for (std::uint8_t type = 1; type <= 17; ++type) {
    zent::jet::ColumnDefinition column = {.type = static_cast<zent::jet::ColumnType>(type),
                                          .number = type,
                                          .slot = type,
                                          .fixed_offset = type,
                                          .length = type};
    table.columns.push_back(column);
    column.number = static_cast<std::uint16_t>(type + 17);
    column.flags = zent::jet::kFixedColumn;
    table.columns.push_back(column);
  }
  const auto row = zent::jet::RowView::Open(table, bytes, 1);
  if (!row.ok()) return;
  for (const zent::jet::ColumnDefinition& column : table.columns) {
    ByteView field;
    if (row.value().Field(column, field) != zent::jet::RowView::FieldState::Present) continue;
    Require(field.data() >= bytes.data() &&
            field.data() + field.size() <= bytes.data() + bytes.size());
    (void)zent::jet::DecodeField(version, column, field, 1);
    (void)zent::jet::ParseLongValue(field, 1);
  }
}

void ReadProperties(JetVersion version, ByteView bytes) {
  const auto blob = zent::jet::ParsePropertyBlob(version, bytes, 1);
  if (!blob.ok()) return;
  for (const zent::jet::PropertySet& set : blob.value().sets) {
    for (const zent::jet::Property& property : set.properties) {
      (void)zent::jet::PropertyValue(version, property);
    }
  }
  const auto written = zent::jet::SerialisePropertyBlob(version, blob.value());
  if (!written.ok()) return;
  const auto again = zent::jet::ParsePropertyBlob(version, zent::jet::AsBytes(written.value()), 1);
  Require(again.ok() && again.value().sets.size() == blob.value().sets.size());
}

void ReadIndexPage(JetVersion version, ByteView page) {
  const auto view = zent::jet::IndexPageView::Open(version, page, 1);
  if (!view.ok()) return;
  const zent::jet::IndexPage content = view.value().Load();
  std::vector<std::uint8_t> built(page.size());
  if (!zent::jet::BuildIndexPage(version, content, built)) return;
  const auto again = zent::jet::IndexPageView::Open(version, built, 1);
  Require(again.ok() && again.value().Load() == content);
}

void ReadUsageMap(JetVersion version, ByteView row) {
  const auto map = zent::jet::UsageMapView::Open(version, row, 1);
  if (!map.ok() || map.value().kind() != zent::jet::MapKind::Inline) return;
  const zent::jet::PageBits bits = map.value().bits();
  for (auto page = bits.Next(0); page && *page != 0xFFFFFFFFU; page = bits.Next(*page + 1)) {
    Require(bits.Has(*page));
  }
}

/// A page that passes the check takes a row and gives it back.
void ReadDataPage(JetVersion version, ByteView page) {
  if (!zent::jet::CheckDataPage(version, page, 1).ok()) return;
  std::vector<std::uint8_t> copy(page.begin(), page.end());
  const std::vector<std::uint8_t> row(5, 'r');
  const auto slot = zent::jet::InsertRow(version, copy, row, zent::jet::SlotKind::Row, true);
  Require(zent::jet::CheckDataPage(version, copy, 1).ok());
  if (!slot) return;
  const auto read = zent::jet::DataPageView::Open(version, copy, 1).value().At(*slot);
  Require(read.ok() &&
          std::equal(row.begin(), row.end(), read.value().bytes.begin(), read.value().bytes.end()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const JetVersion version = data[1] % 2 == 0 ? JetVersion::Jet4 : JetVersion::Jet3;
  std::vector<std::uint8_t> bytes(data + 2, data + size);
  std::vector<std::uint8_t> page = bytes;
  page.resize(zent::jet::LayoutOf(version).page_size);
  switch (data[0] % 7) {
    case 0:
      ReadDefinition(version, bytes);
      break;
    case 1:
      ReadRow(version, bytes);
      break;
    case 2:
      ReadProperties(version, bytes);
      break;
    case 3:
      ReadIndexPage(version, page);
      break;
    case 4:
      ReadUsageMap(version, bytes);
      break;
    case 5:
      ReadDataPage(version, page);
      break;
    default:
      (void)zent::jet::ParseFileHeader(page);
      break;
  }
  return 0;
}
