#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "jet/catalog/Transaction.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/NewDatabase.h"
#include "jet/schema/Schema.h"
#include "jet/tools/ToolsFile.h"

/// Damaged files that are written: what damage makes of a change must stay within its table.
namespace zent::jet::testing {
namespace {

constexpr unsigned kSeed = 20;
constexpr int kRuns = 100;
constexpr int kDamagedBytes = 12;  // of each file

const std::vector<std::string>& TableNames() {
  static const std::vector<std::string> names = {"Red", "Green", "Blue"};
  return names;
}

/// Values of the columns that are there, by their names; of the others none.
Result<std::vector<Value>> ValuesFor(Table& table, int number, std::size_t note_size) {
  std::vector<Value> values(table.definition().columns.size(), Value(Null()));
  const std::pair<const char*, Value> given[] = {
      {"Name", Text("Name " + std::to_string(number * 37 % 101) + std::string(80, 'x'))},
      {"Notes", Text(note_size, static_cast<char>('a' + number % 26))},
      {"Size", std::int32_t{number}},
  };
  for (const auto& [column, value] : given) {
    const Result<std::size_t> position = table.PositionOf(column);
    if (!position.ok()) return position.error();
    values[position.value()] = value;
  }
  return values;
}

Status InsertRow(Table& table, int number) {
  constexpr std::size_t kNotes[] = {0, 0, 30, 0, 700, 0, 30, 1500, 0, 5000};
  Result<std::vector<Value>> values =
      ValuesFor(table, number, kNotes[static_cast<std::size_t>(number) % std::size(kNotes)]);
  if (!values.ok()) return values.status();
  return table.Insert(values.value()).status();
}

void Fill(Catalog& catalog) {
  Result<Transaction> transaction = Transaction::Begin(catalog);
  ASSERT_TRUE(transaction.ok());
  for (const std::string& name : TableNames()) {
    const NewTable table = {
        .name = name,
        .columns = {{.name = "Id", .type = ColumnType::Long, .auto_number = true},
                    {.name = "Name", .type = ColumnType::Text, .size = 100},
                    {.name = "Notes", .type = ColumnType::Memo},
                    {.name = "Size", .type = ColumnType::Long}},
        .indexes = {{.name = "PrimaryKey", .columns = {{.name = "Id"}}, .primary = true},
                    {.name = "ByName", .columns = {{.name = "Name"}}}}};
    ASSERT_TRUE(Schema(catalog).CreateTable(table).ok());
  }
  // By turns, so that the pages of the tables lie among each other.
  for (int number = 0; number < 60; ++number) {
    for (const std::string& name : TableNames()) {
      const Status inserted = InsertRow(*catalog.OpenTable(name).value(), number);
      ASSERT_TRUE(inserted.ok()) << inserted.error().description;
    }
  }
  ASSERT_TRUE(transaction.value().Commit().ok());
}

/// A database of three tables that have nothing to do with each other.
const std::string& ThreeTables() {
  static const std::string made = [] {
    MemoryStorage storage;
    EXPECT_TRUE(CreateDatabase(storage, kPath, {}).ok());
    {
      const Result<std::unique_ptr<Pager>> pager =
          Pager::Open(storage, kPath, Opened(Sharing::Exclusive));
      const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager.value());
      Fill(*catalog.value());
    }
    return storage.Bytes(kPath);
  }();
  return made;
}

/// What a reader finds in a table: rows with their texts, and the entries of each index.
struct TableState {
  int error = 0;  ///< number, when it cannot be read to its end
  std::map<RowPointer, std::string> rows = {};
  std::vector<std::pair<std::string, RowPointer>> entries = {};

  bool operator==(const TableState&) const = default;
};

std::string TextOf(ByteView row, const std::vector<Value>& values) {
  std::string text(AsText(row));
  for (const Value& value : values) {
    if (const auto* const one = std::get_if<Text>(&value)) text += *one;
    if (const auto* const one = std::get_if<Binary>(&value)) text += one->bytes;
  }
  return text;
}

Status ReadTable(Catalog& catalog, const std::string& name, TableState& state) {
  const Result<Table*> table = catalog.OpenTable(name);
  if (!table.ok()) return table.status();
  TableStore& store = table.value()->store();
  RowScan scan(store.rows());
  Result<bool> more = scan.Next();
  for (; more.value_or(false); more = scan.Next()) {
    const Result<std::vector<Value>> values = store.Values(scan.bytes(), scan.page());
    if (!values.ok()) return values.status();
    state.rows[scan.at()] = TextOf(scan.bytes(), values.value());
  }
  if (!more.ok()) return more.status();
  for (TableIndex& index : store.indexes()) {
    IndexCursor cursor = index.tree().Cursor();
    Result<bool> on = cursor.SeekFirst();
    for (; on.value_or(false); on = cursor.Next()) {
      state.entries.emplace_back(cursor.key(), cursor.row());
    }
    if (!on.ok()) return on.status();
  }
  return {};
}

std::map<std::string, TableState> ReadTables(const std::string& bytes) {
  MemoryStorage storage;
  storage.Put(kPath, bytes);
  std::map<std::string, TableState> states;
  for (const std::string& name : TableNames()) states[name].error = kCannotOpenDatabase;
  const Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage, kPath, Opened(Sharing::ReadOnly));
  if (!pager.ok()) return states;
  const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager.value());
  if (!catalog.ok()) return states;
  for (auto& [name, state] : states)
    state.error = ReadTable(*catalog.value(), name, state).number();
  return states;
}

/// One change, committed unless it is refused. Whether it was committed.
bool Change(Catalog& catalog, const std::string& name,
            const std::function<Status(Table&)>& change) {
  Result<Transaction> transaction = Transaction::Begin(catalog);
  if (!transaction.ok()) return false;
  const Result<Table*> table = catalog.OpenTable(name);
  if (!table.ok() || !change(*table.value()).ok()) return false;
  return transaction.value().Commit().ok();
}

/// Inserts, updates and deletes rows, a transaction each. Returns how many were committed.
int ChangeTable(Catalog& catalog, const std::string& name) {
  std::vector<RowPointer> rows;
  if (const Result<Table*> table = catalog.OpenTable(name); table.ok()) {
    RowScan scan(table.value()->store().rows());
    while (scan.Next().value_or(false)) rows.push_back(scan.at());
  }
  int committed = 0;
  const auto change = [&](const std::function<Status(Table&)>& one) {
    committed += Change(catalog, name, one) ? 1 : 0;
  };
  for (int number = 105; number < 110; ++number) {
    change([number](Table& table) { return InsertRow(table, number); });
  }
  for (std::size_t i = 0; i < rows.size(); i += 9) {
    change([&](Table& table) {
      const Result<std::size_t> name_at = table.PositionOf("Name");
      const Result<std::size_t> notes_at = table.PositionOf("Notes");
      if (!name_at.ok() || !notes_at.ok()) return Status(JetError(kItemNotFound));
      const ColumnChange changes[] = {{name_at.value(), Text(80, 'z')},
                                      {notes_at.value(), Text(100 * i, 'n')}};
      return table.Update(rows[i], changes);
    });
  }
  for (std::size_t i = 4; i < rows.size(); i += 9) {
    change([&](Table& table) { return table.Delete(rows[i]); });
  }
  return committed;
}

/// Whether the maps say of no page that two use it, or that it is both free and in use. Of such a
/// file the next page that is taken may be anybody's.
bool MapsAreSound(const std::string& bytes) {
  const Verified verified = VerifyBytes(bytes);
  if (verified.error != 0) return false;
  for (const char* const fault :
       {"is marked free and used by", "is also used by", "is also another's",
        "beyond the end of the file", "more faults"}) {
    if (verified.faults.find(fault) != std::string::npos) return false;
  }
  return true;
}

/// Changes one table of such a file; the others must be as they were. Returns the commits.
int TryToChange(const std::string& damaged, const std::string& name,
                const std::map<std::string, TableState>& before) {
  SCOPED_TRACE(name);
  MemoryStorage storage;
  storage.Put(kPath, damaged);
  int committed = 0;
  {
    const Result<std::unique_ptr<Pager>> pager =
        Pager::Open(storage, kPath, Opened(Sharing::Exclusive));
    if (!pager.ok()) return 0;
    const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager.value());
    if (!catalog.ok()) return 0;
    committed = ChangeTable(*catalog.value(), name);
  }
  const std::string changed = storage.Bytes(kPath);
  if (committed == 0) {
    EXPECT_TRUE(changed == damaged) << "what was refused has written";
  }
  for (const auto& [other, state] : ReadTables(changed)) {
    // What could not be read before may have become readable: its pages beyond the end, say.
    if (other == name || before.at(other).error != 0) continue;
    EXPECT_EQ(state.error, 0) << other;
    EXPECT_TRUE(state == before.at(other)) << other;
  }
  return committed;
}

TEST(Robust, ChangesOfADamagedFileStayInTheirTable) {
  std::mt19937 random(kSeed);
  int tried = 0;
  int committed = 0;
  for (int run = 0; run < kRuns; run += int{ZENT_DAMAGE_ONE_OF}) {
    SCOPED_TRACE("seed " + std::to_string(kSeed) + ", run " + std::to_string(run));
    std::string damaged = ThreeTables();
    for (int i = 0; i < kDamagedBytes; ++i) {
      damaged[random() % damaged.size()] = static_cast<char>(random() & 0xFFU);
    }
    if (!MapsAreSound(damaged)) continue;
    const std::map<std::string, TableState> before = ReadTables(damaged);
    for (const std::string& name : TableNames()) {
      ++tried;
      committed += TryToChange(damaged, name, before);
    }
  }
  // Most of it is done, or nothing was shown.
  EXPECT_GT(tried, kRuns / int{ZENT_DAMAGE_ONE_OF});
  EXPECT_GT(committed, tried);
}

}  // namespace
}  // namespace zent::jet::testing
