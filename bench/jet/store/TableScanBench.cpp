// A full scan of a table of 100,000 rows and five columns, every value decoded, against mdb-export
// of mdbtools, which writes the same values as text.
#include <cstdlib>

#include "Ratio.h"
#include "jet/store/PeopleFile.h"

namespace {

using zent::jet::bench::kRows;
using zent::jet::bench::PeopleFile;

/// Opens the file as any reader does and decodes all rows; how many there were.
std::int32_t ScanAll(const std::string& path, zent::jet::PageNumber page) {
  zent::jet::PosixStorage storage;
  const auto pager = zent::jet::Pager::Open(
      storage, path, {.sharing = zent::jet::Sharing::ReadOnly, .user = {"PC1", "Admin"}});
  if (!pager.ok()) return 0;
  const zent::jet::ReadScope scope(*pager.value());
  zent::jet::UsageMaps maps(*pager.value());
  const auto table = zent::jet::TableStore::Open(maps, page);
  if (!table.ok()) return 0;
  zent::jet::RowScan scan(table.value()->rows());
  std::vector<zent::jet::Value> values;
  std::int32_t rows = 0;
  while (scan.Next().value_or(false)) {
    if (!table.value()->Load(scan.bytes(), scan.page(), values).ok()) return 0;
    ++rows;
  }
  return rows;
}

}  // namespace

int main() {
  PeopleFile people(PeopleFile::Id);
  if (!people.Fill(kRows)) return 1;
  people.Close();

  bool whole = true;
  const double ours = zent::bench::BestTime(
      [&] { whole = whole && ScanAll(people.path(), people.page()) == kRows; });
  const std::string command = "mdb-export '" + people.path() + "' People >/dev/null";
  const double theirs =
      zent::bench::BestTime([&] { whole = whole && std::system(command.c_str()) == 0; });
  zent::bench::PrintRatio("scan of 100,000 rows: time against mdb-export", ours / theirs,
                          "at most 0.33");
  return whole ? 0 : 1;
}
