#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/host/posix/PosixStorage.h"
#include "jet/readers/Readers.h"
#include "jet/schema/NewDatabase.h"
#include "jet/schema/Schema.h"
#include "jet/storage/Pager.h"

/// Two readers that share nothing with the engine see the rows that it wrote.
namespace zent::jet::testing {
namespace {

using Row = ReaderRow;
constexpr int kRows = 700;

void Expect(const Status& status) {
  EXPECT_TRUE(status.ok()) << (status.ok() ? "" : status.error().description);
}

/// Columns whose texts both programs write in one way.
NewTable Things() {
  NewTable table{.name = "Things"};
  table.columns = {{.name = "Id", .auto_number = true},
                   {.name = "Title", .type = ColumnType::Text, .size = 60},
                   {.name = "Plain", .type = ColumnType::Text, .size = 60, .compressed = false},
                   {.name = "Small", .type = ColumnType::Byte},
                   {.name = "Short", .type = ColumnType::Int},
                   {.name = "Flag", .type = ColumnType::Bool},
                   {.name = "Half", .type = ColumnType::Double},
                   {.name = "Day", .type = ColumnType::Date},
                   {.name = "Notes", .type = ColumnType::Memo}};
  table.indexes = {{.name = "PrimaryKey", .columns = {{.name = "Id"}}, .primary = true},
                   {.name = "ByTitle", .columns = {{.name = "Title", .descending = true}}}};
  return table;
}

/// The i-th row, as values and as the texts that a reader shall give.
struct Sample {
  std::vector<Value> values;
  Row texts;
};
Sample SampleRow(int i) {
  const std::string number = std::to_string(i);
  const std::string title = i % 5 == 0 ? "Z\xC3\xBCrich \xE6\x97\xA5" + number : "Title " + number;
  const std::string notes(static_cast<std::size_t>(i * 13 % 9000), 'n');
  const bool empty = i % 7 == 0;
  Sample sample{
      .values = {Null(), title, "Plain " + number, static_cast<std::uint8_t>(i % 256),
                 static_cast<std::int16_t>(-i), i % 3 == 0, i + 0.5, Date{38000.0 + 0.5},
                 notes.empty() ? Value() : Value(Text(notes))},
      .texts = {number, title, "Plain " + number, std::to_string(i % 256), std::to_string(-i),
                i % 3 == 0 ? "1" : "0", number + ".5", "2004-01-14 12:00:00", notes}};
  if (notes.empty()) sample.texts[8].reset();
  if (empty) {
    for (const std::size_t column : {1U, 3U, 6U, 7U, 8U}) {
      sample.values[column] = Null();
      sample.texts[column].reset();
    }
  }
  return sample;
}

void InsertRows(Catalog& catalog) {
  const Result<Table*> table = catalog.OpenTable("Things");
  ASSERT_TRUE(table.ok());
  const std::vector<std::size_t>& order = table.value()->display_order();
  for (int i = 1; i <= kRows; ++i) {
    const Sample sample = SampleRow(i);
    std::vector<Value> values(order.size());
    for (std::size_t k = 0; k < order.size(); ++k) values[order[k]] = sample.values[k];
    Expect(table.value()->Insert(values).status());
  }
}

/// Makes the file, through changes of all kinds.
void MakeFile(const std::string& path) {
  PosixStorage storage;
  Expect(CreateDatabase(storage, path, {.created = {.days = 38000}}));
  const Result<std::unique_ptr<Pager>> pager = Pager::Open(storage, path, {});
  ASSERT_TRUE(pager.ok());
  const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager.value());
  ASSERT_TRUE(catalog.ok());
  Expect(pager.value()->Begin());
  Schema schema(*catalog.value(), Date{38000});
  Expect(schema.CreateTable(Things()));
  Expect(schema.CreateTable({.name = "Gone", .columns = {{.name = "A"}}}));
  InsertRows(*catalog.value());
  Expect(schema.CreateIndex("Things", {.name = "ByDay", .columns = {{.name = "Day"}}}));
  Expect(schema.AddColumn("Things", {.name = "Later", .type = ColumnType::Text}));
  Expect(schema.DropColumn("Things", "Short"));
  Expect(schema.DropTable("Gone"));
  Expect(schema.RenameTable("Things", "Order Things"));
  Expect(pager.value()->Commit());
}

std::vector<Row> ExpectedRows() {
  std::vector<Row> rows;
  for (int i = 1; i <= kRows; ++i) {
    Row row = SampleRow(i).texts;
    row.erase(row.begin() + 4);
    row.emplace_back();  // the column that came later
    rows.push_back(std::move(row));
  }
  return rows;
}

TEST(IndependentReaders, SeeTheRowsThatTheEngineWrote) {
  const std::string path = (std::filesystem::path(ZENT_READER_FOLDER) / "written.mdb").string();
  std::filesystem::remove(path);
  MakeFile(path);
  {
    SCOPED_TRACE("mdbtools");
    ExpectRows(RowsOfMdbTools(path, "Order Things"), ExpectedRows());
  }
  {
    SCOPED_TRACE("mdb-reader");
    ExpectRows(RowsOfMdbReader(path, "Order Things"), ExpectedRows());
  }
}

}  // namespace
}  // namespace zent::jet::testing
