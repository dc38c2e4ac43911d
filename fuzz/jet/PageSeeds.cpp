// Writes the seeds of the page readers' fuzz target into a folder: one good part of a file for each
// reader and version. PageSeeds FOLDER
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "jet/format/DataPage.h"
#include "jet/format/IndexPage.h"
#include "jet/format/PropertyBlob.h"
#include "jet/format/RowCodec.h"
#include "jet/format/TableDefinition.h"
#include "jet/format/UsageMap.h"

namespace {

using zent::jet::JetVersion;

zent::jet::TableDefinition Table(JetVersion version) {
  zent::jet::TableDefinition table = {.version = version, .max_columns = 2, .variable_slots = 1};
  table.columns.push_back({.name = "Id", .flags = zent::jet::kFixedColumn, .length = 4});
  table.columns.push_back(
      {.name = "Text", .type = zent::jet::ColumnType::Memo, .number = 1, .length = 0});
  table.real_indexes.push_back({.columns = {{.column = 0}}, .root = 3});
  table.logical_indexes.push_back({.name = "PrimaryKey"});
  table.long_value_maps.push_back({.column = 1});
  return table;
}

std::vector<std::uint8_t> Row(const zent::jet::TableDefinition& table) {
  zent::jet::RowBuilder builder(table);
  builder.Clear();
  const std::vector<std::uint8_t> field(16, 'x');
  for (const zent::jet::ColumnDefinition& column : table.columns) builder.Set(column, field);
  const auto row = builder.Build();
  return {row.value().begin(), row.value().end()};
}

std::vector<std::uint8_t> Properties(JetVersion version) {
  zent::jet::PropertyBlob blob;
  blob.SetOf("").Set({.name = "Description", .data = "abcd"});
  blob.SetOf("Id").Set({.name = "Required", .type = zent::jet::ColumnType::Bool, .data = "x"});
  const std::string bytes = zent::jet::SerialisePropertyBlob(version, blob).value();
  return {bytes.begin(), bytes.end()};
}

std::vector<std::uint8_t> Index(JetVersion version) {
  zent::jet::IndexPage content;
  for (std::uint8_t i = 0; i < 20; ++i) {
    content.entries.push_back({std::string(5, static_cast<char>(i)), {.page = i, .row = i}});
  }
  std::vector<std::uint8_t> page(zent::jet::LayoutOf(version).page_size);
  zent::jet::BuildIndexPage(version, content, page);
  return page;
}

std::vector<std::uint8_t> Map(JetVersion version) {
  std::vector<std::uint8_t> row = zent::jet::NewUsageMapRow(version);
  zent::jet::SetInlineBit(row, 9, true);
  return row;
}

std::vector<std::uint8_t> Data(JetVersion version) {
  std::vector<std::uint8_t> page(zent::jet::LayoutOf(version).page_size);
  zent::jet::InitDataPage(version, 5, page);
  const std::vector<std::uint8_t> row(30, 'r');
  for (int i = 0; i < 3; ++i) {
    zent::jet::InsertRow(version, page, row, zent::jet::SlotKind::Row, false);
  }
  return page;
}

bool Write(const std::string& folder, std::uint8_t reader, std::uint8_t version,
           const std::vector<std::uint8_t>& bytes) {
  const std::string path =
      folder + "/seed-" + std::to_string(reader) + "-" + std::to_string(version);
  std::ofstream file(path, std::ios::binary);
  file.put(static_cast<char>(reader));
  file.put(static_cast<char>(version));
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  return file.good();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("PageSeeds FOLDER\n", stderr);
    return 64;
  }
  const std::string folder = argv[1];
  bool written = true;
  for (const std::uint8_t number : {std::uint8_t{0}, std::uint8_t{1}}) {
    const JetVersion version = number == 0 ? JetVersion::Jet4 : JetVersion::Jet3;
    const zent::jet::TableDefinition table = Table(version);
    written = Write(folder, 0, number, SerialiseTableDefinition(table)) &&
              Write(folder, 1, number, Row(table)) &&
              Write(folder, 2, number, Properties(version)) &&
              Write(folder, 3, number, Index(version)) && Write(folder, 4, number, Map(version)) &&
              Write(folder, 5, number, Data(version)) && written;
  }
  return written ? 0 : 1;
}
