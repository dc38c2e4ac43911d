#include "jet/tools/ToolsFile.h"

#include <gtest/gtest.h>

#include "jet/catalog/Transaction.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/schema/NewDatabase.h"
#include "jet/schema/Schema.h"
#include "jet/store/MapRow.h"

namespace zent::jet::testing {
namespace {

constexpr int kPeople = 600;
constexpr int kOrders = 300;
constexpr Date kCreated = {37803.5};

NewTable PeopleTable() {
  return {.name = "People",
          .columns = {{.name = "Id", .type = ColumnType::Long, .auto_number = true},
                      {.name = "Name", .type = ColumnType::Text, .size = 200},
                      {.name = "Notes", .type = ColumnType::Memo},
                      {.name = "Photo", .type = ColumnType::Ole},
                      {.name = "Born", .type = ColumnType::Date},
                      {.name = "Paid", .type = ColumnType::Currency},
                      {.name = "Weight", .type = ColumnType::Double},
                      {.name = "Key", .type = ColumnType::Guid},
                      {.name = "Active", .type = ColumnType::Bool}},
          .indexes = {{.name = "PrimaryKey", .columns = {{.name = "Id"}}, .primary = true},
                      {.name = "ByName", .columns = {{.name = "Name", .descending = true}}},
                      {.name = "ByBirth",
                       .columns = {{.name = "Born"}, {.name = "Active"}},
                       .ignore_nulls = true}}};
}

NewTable OrdersTable() {
  return {.name = "Orders",
          .columns = {{.name = "Id", .type = ColumnType::Long},
                      {.name = "Person", .type = ColumnType::Long},
                      {.name = "What", .type = ColumnType::Text, .size = 30}},
          .indexes = {{.name = "PrimaryKey", .columns = {{.name = "Id"}}, .primary = true}}};
}

/// A row of People, by the positions of its columns in the definition.
std::vector<Value> Person(Table& table, int i) {
  std::vector<Value> values(table.definition().columns.size(), Value(Null()));
  const auto set = [&](std::string_view column, Value value) {
    values[table.PositionOf(column).value()] = std::move(value);
  };
  set("Name", "Person " + std::to_string(i * 7919 % 1000) + std::string(20, 'x'));
  if (i % 3 == 0) set("Notes", std::string(static_cast<std::size_t>(i) * 5, 'n'));
  if (i % 50 == 0) set("Photo", Binary{std::string(10000 + static_cast<std::size_t>(i), 'p')});
  if (i % 4 != 0) set("Born", Date{20000.25 + i});
  set("Paid", Currency{std::int64_t{i} * 12345});
  set("Weight", 70.5 + i);
  set("Active", i % 2 == 0);
  return values;
}

void FillPeople(Table& table) {
  std::vector<RowPointer> rows;
  for (int i = 1; i <= kPeople; ++i) {
    std::vector<Value> values = Person(table, i);
    const Result<RowPointer> row = table.Insert(values);
    ASSERT_TRUE(row.ok()) << row.error().description;
    rows.push_back(row.value());
  }
  const std::size_t name = table.PositionOf("Name").value();
  for (std::size_t i = 0; i < rows.size(); i += 10) {
    const ColumnChange longer = {.position = name, .value = std::string(190, 'y')};
    ASSERT_TRUE(table.Update(rows[i], std::span(&longer, 1)).ok());
  }
  for (std::size_t i = 400; i < rows.size(); ++i) ASSERT_TRUE(table.Delete(rows[i]).ok());
}

void FillOrders(Table& table) {
  for (int i = 1; i <= kOrders; ++i) {
    std::vector<Value> values(3, Value(Null()));
    values[table.PositionOf("Id").value()] = i;
    values[table.PositionOf("Person").value()] = 1 + i % 100;
    values[table.PositionOf("What").value()] = "thing " + std::to_string(i);
    const Result<RowPointer> row = table.Insert(values);
    ASSERT_TRUE(row.ok()) << row.error().description;
  }
}

void Fill(Catalog& catalog) {
  Result<Transaction> transaction = Transaction::Begin(catalog);
  ASSERT_TRUE(transaction.ok());
  Schema schema(catalog);
  const Status people = schema.CreateTable(PeopleTable());
  ASSERT_TRUE(people.ok()) << people.error().description;
  ASSERT_TRUE(schema.CreateTable(OrdersTable()).ok());
  const Status related = schema.CreateRelationship({.name = "PeopleOrders",
                                                    .table = "Orders",
                                                    .referenced_table = "People",
                                                    .columns = {{"Person", "Id"}},
                                                    .flags = kCascadesDeletes});
  ASSERT_TRUE(related.ok()) << related.error().description;
  FillPeople(*catalog.OpenTable("People").value());
  FillOrders(*catalog.OpenTable("Orders").value());
  ASSERT_TRUE(transaction.value().Commit().ok());
}

std::string Make() {
  MemoryStorage storage;
  const Status created = CreateDatabase(storage, kPath, {.created = kCreated});
  EXPECT_TRUE(created.ok()) << created.error().description;
  const Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage, kPath, Opened(Sharing::Exclusive));
  const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager.value());
  Fill(*catalog.value());
  return storage.Bytes(kPath);
}

SamplePlaces Find() {
  MemoryStorage storage;
  storage.Put(kPath, SampleDatabase());
  const Result<std::unique_ptr<Pager>> opened =
      Pager::Open(storage, kPath, Opened(Sharing::ReadOnly));
  Pager& pager = *opened.value();
  const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(pager);
  TableStore& people = catalog.value()->OpenTable("People").value()->store();
  SamplePlaces places;
  places.people = people.page();
  places.orders = catalog.value()->OpenTable("Orders").value()->store().page();
  places.people_table = people.definition();
  places.map_page = people.definition().owned_map.page;
  places.map_row = people.definition().owned_map.row;
  places.rows = NextInMap(pager, people.definition().owned_map, 0).value().value_or(0);
  places.last = pager.page_count() - 1;
  const RowPointer values = people.definition().long_value_maps.front().owned;
  places.values = NextInMap(pager, values, 0).value().value_or(0);
  for (TableIndex& index : people.indexes()) {
    if (index.key_columns().front().type != ColumnType::Text) continue;
    places.root = index.tree().place().root;
    const Result<IndexPageHold> root = HoldIndexPage(pager, places.root, places.people);
    places.leaf = root.value().view.Child(0);
    places.second_leaf = HoldIndexPage(pager, places.leaf, places.people).value().view.next();
  }
  return places;
}

void ReadTables(Catalog& catalog) {
  const Result<std::vector<CatalogObject>> tables = catalog.Tables();
  if (!tables.ok()) return;
  for (const CatalogObject& object : tables.value()) {
    static_cast<void>(catalog.Properties(object));
    if (!object.IsLocalTable()) continue;
    const Result<Table*> table = catalog.OpenTableAt(object.definition(), object.name);
    if (!table.ok()) continue;
    TableStore& store = table.value()->store();
    RowScan scan(store.rows());
    while (scan.Next().value_or(false)) {
      static_cast<void>(store.Values(scan.bytes(), scan.page()));
    }
    for (TableIndex& index : store.indexes()) {
      IndexCursor cursor = index.tree().Cursor();
      Result<bool> on = cursor.SeekFirst();
      while (on.value_or(false)) on = cursor.Next();
    }
  }
}

}  // namespace

const std::string& SampleDatabase() {
  static const std::string bytes = Make();
  return bytes;
}

const SamplePlaces& PlacesOfSample() {
  static const SamplePlaces places = Find();
  return places;
}

std::uint32_t DamagedFile::U16(PageNumber page, std::size_t offset) const {
  return LoadU16(AsBytes(bytes_), page * kPage + offset);
}

std::uint32_t DamagedFile::U32(PageNumber page, std::size_t offset) const {
  return U16(page, offset) | (U16(page, offset + 2) << 16U);
}

PageNumber DamagedFile::PageOfChain() const {
  const Layout& layout = LayoutOf(JetVersion::Jet4);
  for (PageNumber page = 1; page <= at().last; ++page) {
    if (U32(page, layout.data.owner) != kLongValueOwner) continue;
    const std::size_t row = U16(page, layout.data.directory) & 0x1FFFU;
    if (U16(page, layout.data.row_count) != 1 || row >= kPage) continue;
    const bool fills = kPage - row == layout.data.max_long_value_row;
    if (fills && U32(page, row) >> 8U <= at().last) return page;
  }
  ADD_FAILURE() << "no chain";
  return 0;
}

void DamagedFile::PutU8(PageNumber page, std::size_t offset, unsigned value) {
  bytes_[page * kPage + offset] = static_cast<char>(value);
}

void DamagedFile::PutU16(PageNumber page, std::size_t offset, unsigned value) {
  PutU8(page, offset, value & 0xFFU);
  PutU8(page, offset + 1, value >> 8U);
}

void DamagedFile::PutU32(PageNumber page, std::size_t offset, std::uint32_t value) {
  PutU16(page, offset, value & 0xFFFFU);
  PutU16(page, offset + 2, value >> 16U);
}

Verified VerifyBytes(std::string_view bytes) {
  MemoryStorage storage;
  storage.Put(kPath, bytes);
  Verified verified;
  const Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage, kPath, Opened(Sharing::ReadOnly));
  const Result<VerifySummary> summary =
      pager.ok() ? VerifyDatabase(*pager.value(),
                                  [&](const std::string& line) { verified.faults += line + "\n"; })
                 : Result<VerifySummary>(pager.error());
  if (summary.ok()) verified.summary = summary.value();
  verified.error = summary.number();
  EXPECT_EQ(storage.Bytes(kPath), bytes) << "the check has written";
  return verified;
}

void ReadEverything(std::string_view bytes) {
  MemoryStorage storage;
  storage.Put(kPath, bytes);
  {
    const Result<std::unique_ptr<Pager>> pager =
        Pager::Open(storage, kPath, Opened(Sharing::ReadOnly));
    if (!pager.ok()) return;
    const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager.value());
    if (!catalog.ok()) return;
    static_cast<void>(catalog.value()->Relationships());
    ReadTables(*catalog.value());
  }
  EXPECT_EQ(storage.Bytes(kPath), bytes) << "reading has written";
}

}  // namespace zent::jet::testing
