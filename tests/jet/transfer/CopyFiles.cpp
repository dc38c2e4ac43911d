#include "jet/transfer/CopyFiles.h"

#include <gtest/gtest.h>

#include <functional>

#include "jet/catalog/Transaction.h"
#include "jet/format/ValueText.h"
#include "jet/schema/NewDatabase.h"
#include "jet/schema/Schema.h"
#include "jet/transfer/DatabaseChecks.h"

namespace zent::jet::testing {
namespace {

void Expect(const Status& status) {
  EXPECT_TRUE(status.ok()) << (status.ok() ? "" : status.error().description);
}

Property TextProperty(std::string_view name, std::string_view text) {
  return MakeProperty(name, ColumnType::Text, true, Value(Text(text))).value();
}

NewTable Things() {
  NewTable table{.name = "Things"};
  table.columns = {
      {.name = "Id", .type = ColumnType::Long, .auto_number = true},
      {.name = "Gone", .type = ColumnType::Text, .size = 100},
      {.name = "Name", .type = ColumnType::Text, .size = 50, .required = true},
      {.name = "Number", .type = ColumnType::Double},
      {.name = "Price", .type = ColumnType::Currency},
      {.name = "Done", .type = ColumnType::Bool},
      {.name = "Day", .type = ColumnType::Date},
      {.name = "Notes", .type = ColumnType::Memo},
      {.name = "Picture", .type = ColumnType::Ole},
      {.name = "Weight", .type = ColumnType::Numeric, .precision = 10, .scale = 2},
      {.name = "Code", .type = ColumnType::Binary, .size = 20},
      {.name = "Global", .type = ColumnType::Guid},
  };
  table.columns[2].properties = {TextProperty("Description", "what it is called")};
  table.indexes = {
      {.name = "PrimaryKey", .columns = {{.name = "Id"}}, .primary = true},
      {.name = "ByName", .columns = {{.name = "Name", .descending = true}, {.name = "Number"}}},
      {.name = "ByDay", .columns = {{.name = "Day"}}, .ignore_nulls = true},
  };
  table.properties = {TextProperty("Description", "Things of all kinds")};
  return table;
}

/// Of each length that is stored in another way.
std::string LongText(int i) {
  constexpr std::size_t kLengths[] = {0, 5, 40, 900, 2030, 2100, 9000};
  return std::string(kLengths[static_cast<std::size_t>(i) % std::size(kLengths)],
                     static_cast<char>('a' + i % 26));
}

void FillThings(Table& table, int rows) {
  const auto set = [&](std::vector<Value>& values, std::string_view column, Value value) {
    values[table.PositionOf(column).value()] = std::move(value);
  };
  for (int i = 0; i < rows; ++i) {
    std::vector<Value> values(table.definition().columns.size());
    set(values, "Name", "Thing " + std::to_string(i % 17));
    set(values, "Number", i * 1.5);
    set(values, "Done", i % 2 == 0);
    set(values, "Weight", ParseDecimal(std::to_string(i) + ".25").value());
    set(values, "Global", Guid{{static_cast<std::uint8_t>(i), 1, 2}});
    if (i % 3 != 0) {
      set(values, "Price", Currency{std::int64_t{i} * 12345});
      set(values, "Day", Date{38000.25 + i % 5});
      set(values, "Notes", LongText(i));
      set(values, "Picture", Binary{LongText(i + 1)});
      set(values, "Code", Binary{std::string("\0\xFF", 2)});
    }
    Expect(table.Insert(values).status());
  }
}

void FillParts(Table& table) {
  for (std::int32_t i = 1; i <= 10; ++i) {
    std::vector<Value> values(table.definition().columns.size());
    values[table.PositionOf("Thing").value()] = i % 4 + 1;
    Expect(table.Insert(values).status());
  }
}

NewTable Letters() {
  NewTable table{.name = "Letters"};
  table.columns = {
      {.name = "Id", .type = ColumnType::Long, .auto_number = true},
      {.name = "Subject", .type = ColumnType::Text, .size = 255},
      {.name = "Body", .type = ColumnType::Memo},
      {.name = "Seal", .type = ColumnType::Ole},
  };
  table.indexes = {
      {.name = "PrimaryKey", .columns = {{.name = "Id"}}, .primary = true},
      {.name = "BySubject", .columns = {{.name = "Subject"}, {.name = "Id", .descending = true}}},
      {.name = "Backwards",
       .columns = {{.name = "Subject", .descending = true}},
       .ignore_nulls = true},
  };
  return table;
}

void AddLetters(Table& table, int first, int rows) {
  const std::string subjects[] = {
      "Offer", "co-op", "\xC3\x89t\xC3\xA9 ", "\xE6\x97\xA5\xE6\x9C\xAC", std::string(255, 'w'),
      "a"};
  for (int i = first; i < first + rows; ++i) {
    std::vector<Value> values(table.definition().columns.size());
    if (i % 7 != 6) values[1] = subjects[static_cast<std::size_t>(i) % std::size(subjects)];
    if (i % 5 != 4) values[2] = LongText(i);
    if (i % 5 != 3) values[3] = Binary{LongText(i + 3)};
    Expect(table.Insert(values).status());
  }
}

void FillLetters(Catalog& catalog, int rows) {
  Schema schema(catalog);
  Expect(schema.CreateTable(Letters()));
  AddLetters(*catalog.OpenTable("Letters").value(), 0, rows / 2);
  Expect(schema.AddColumn("Letters", {.name = "Later", .type = ColumnType::Text, .size = 50}));
  Table& letters = *catalog.OpenTable("Letters").value();
  AddLetters(letters, rows / 2, rows - rows / 2);
  std::vector<RowPointer> grown;
  RowScan scan(letters.store().rows());
  for (int i = 0; scan.Next().value_or(false); ++i) {
    if (i % 3 == 0) grown.push_back(scan.at());
  }
  for (const RowPointer row : grown) {
    const ColumnChange change = {.position = 1, .value = Text(std::string(200, 'g'))};
    Expect(letters.Update(row, {&change, 1}));
  }
}

void FillWide(Catalog& catalog) {
  constexpr std::size_t kColumns = 130;
  NewTable wide{.name = "Wide"};
  for (std::size_t i = 0; i < kColumns; ++i) {
    wide.columns.push_back({.name = "Memo" + std::to_string(i), .type = ColumnType::Memo});
  }
  Expect(Schema(catalog).CreateTable(wide));
  Table& table = *catalog.OpenTable("Wide").value();
  // Each short enough for the row, which has no room for all of them.
  std::vector<Value> brief(kColumns, Text(25, 's'));
  Expect(table.Insert(brief).status());
  // Longer than half a page: each lies on a page of its own.
  for (int row = 0; row < 5; ++row) {
    std::vector<Value> values(kColumns, Text(1500, static_cast<char>('a' + row)));
    Expect(table.Insert(values).status());
  }
}

void FillMany(Catalog& catalog) {
  Schema schema(catalog);
  for (int i = 0; i < 100; ++i) {
    NewTable table{.name = "Table" + std::to_string(i)};
    table.columns = {{.name = "Id", .type = ColumnType::Long}};
    Expect(schema.CreateTable(table));
  }
}

void Fill(Catalog& catalog, int rows) {
  Schema schema(catalog);
  Expect(schema.CreateTable(Things()));
  NewTable parts{.name = "Parts"};
  parts.columns = {{.name = "No", .type = ColumnType::Long, .auto_number = true},
                   {.name = "Thing", .type = ColumnType::Long}};
  parts.flags = kHiddenObject;
  Expect(schema.CreateTable(parts));
  FillThings(*catalog.OpenTable("Things").value(), rows);
  Expect(schema.DropColumn("Things", "Gone"));
  Relationship relationship{.name = "ThingsParts",
                            .table = "Parts",
                            .referenced_table = "Things",
                            .columns = {{"Thing", "Id"}}};
  relationship.flags = kCascadesDeletes;
  if (rows >= 4) Expect(schema.CreateRelationship(relationship));
  if (rows >= 4) FillParts(*catalog.OpenTable("Parts").value());
  if (rows == 0) return;
  // The last number is not used again.
  Table& things = *catalog.OpenTable("Things").value();
  std::optional<RowPointer> last;
  RowScan scan(things.store().rows());
  while (scan.Next().value_or(false)) last = scan.at();
  Expect(things.Delete(*last));
}

void MakeFilled(Storage& storage, std::string_view path, const NewDatabase& made,
                const std::function<void(Catalog&)>& fill) {
  Expect(CreateDatabase(storage, path, made));
  const OpenedDatabase opened = OpenCatalog(storage, path);
  ASSERT_TRUE(opened.catalog);
  Result<Transaction> transaction = Transaction::Begin(*opened.catalog);
  ASSERT_TRUE(transaction.ok());
  fill(*opened.catalog);
  Expect(transaction.value().Commit());
}

}  // namespace

void MakeEmpty(Storage& storage, std::string_view path) {
  Expect(CreateDatabase(storage, path, NewDatabase()));
}

void MakeSource(Storage& storage, std::string_view path, int rows, std::string_view password) {
  NewDatabase made;
  made.password = password;
  MakeFilled(storage, path, made, [rows](Catalog& catalog) { Fill(catalog, rows); });
}

void MakeLetters(Storage& storage, std::string_view path, int rows) {
  MakeFilled(storage, path, NewDatabase(),
             [rows](Catalog& catalog) { FillLetters(catalog, rows); });
}

void MakeWide(Storage& storage, std::string_view path) {
  MakeFilled(storage, path, NewDatabase(), FillWide);
}

void MakeMany(Storage& storage, std::string_view path) {
  MakeFilled(storage, path, NewDatabase(), FillMany);
}

}  // namespace zent::jet::testing
