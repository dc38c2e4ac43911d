// Any bytes as a database file in memory: it is refused, or checked and dumped, which must not
// write; then rows of its tables are changed, whatever comes of it, and it is checked again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/catalog/Transaction.h"
#include "jet/fakes/MemoryStorage.h"
#include "jet/tools/Dump.h"
#include "jet/tools/Verify.h"

namespace zent::jet {
namespace {

constexpr std::string_view kPath = "C:\\Korvo.mdb";
constexpr std::size_t kMostBytes = std::size_t{512} << 10U;  // larger files take too long
constexpr std::size_t kMostTables = 4;

void Check(Pager& pager) {
  static_cast<void>(VerifyDatabase(pager, [](const std::string&) {}));
}

Value ValueOf(const ColumnDefinition& column) {
  switch (column.type) {
    case ColumnType::Long:
      return std::int32_t{7};
    case ColumnType::Text:
      return Text("text");
    case ColumnType::Memo:
      return Text(5000, 'm');
    default:
      return Null();
  }
}

/// One change, committed unless it is refused.
void Change(Catalog& catalog, const CatalogObject& object,
            const std::function<Status(Table&)>& change) {
  Result<Transaction> transaction = Transaction::Begin(catalog);
  if (!transaction.ok()) return;
  const Result<Table*> table = catalog.OpenTableAt(object.definition(), object.name);
  if (!table.ok() || !change(*table.value()).ok()) return;
  static_cast<void>(transaction.value().Commit());
}

/// The first and the last row that a scan finds; none of an empty table.
std::vector<RowPointer> EndsOf(Catalog& catalog, const CatalogObject& object) {
  std::vector<RowPointer> ends;
  const Result<Table*> table = catalog.OpenTableAt(object.definition(), object.name);
  if (!table.ok()) return ends;
  RowScan scan(table.value()->store().rows());
  while (scan.Next().value_or(false)) {
    if (ends.size() == 2) ends.pop_back();
    ends.push_back(scan.at());
  }
  return ends;
}

void ChangeTable(Catalog& catalog, const CatalogObject& object) {
  const std::vector<RowPointer> rows = EndsOf(catalog, object);
  Change(catalog, object, [](Table& table) {
    std::vector<Value> values;
    for (const ColumnDefinition& column : table.definition().columns) {
      values.push_back(column.IsAutoNumber() ? Value(Null()) : ValueOf(column));
    }
    return table.Insert(values).status();
  });
  if (rows.empty()) return;
  Change(catalog, object, [&](Table& table) {
    std::vector<ColumnChange> changes;
    for (std::size_t i = 0; i < table.definition().columns.size(); ++i) {
      const ColumnDefinition& column = table.definition().columns[i];
      if (!column.IsAutoNumber()) changes.push_back({.position = i, .value = ValueOf(column)});
    }
    return table.Update(rows.front(), changes);
  });
  Change(catalog, object, [&](Table& table) { return table.Delete(rows.back()); });
}

void UseFile(const std::string& bytes) {
  testing::MemoryStorage storage;
  storage.Put(kPath, bytes);
  const Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage, kPath, {.sharing = Sharing::Exclusive});
  if (!pager.ok()) return;
  Check(*pager.value());
  const Result<std::unique_ptr<Catalog>> opened = Catalog::Open(*pager.value());
  if (!opened.ok()) return;
  Catalog& catalog = *opened.value();
  static_cast<void>(DumpDatabase(catalog, {.whole_values = true}, [](std::string_view) {}));
  if (storage.Bytes(kPath) != bytes) std::abort();

  const Result<std::vector<CatalogObject>> objects = catalog.Objects();
  if (!objects.ok()) return;
  std::size_t changed = 0;
  for (const CatalogObject& object : objects.value()) {
    if (!object.IsLocalTable() || object.IsSystem() || changed == kMostTables) continue;
    ChangeTable(catalog, object);
    ++changed;
  }
  Check(*pager.value());
}

}  // namespace
}  // namespace zent::jet

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > zent::jet::kMostBytes) return 0;
  zent::jet::UseFile(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
