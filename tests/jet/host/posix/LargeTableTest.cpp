#include <gtest/gtest.h>
#include <sys/resource.h>

#include <charconv>
#include <cstdlib>
#include <filesystem>

#include "jet/fakes/TableBuilder.h"
#include "jet/format/JetErrors.h"
#include "jet/host/posix/PosixStorage.h"
#include "support/TempFolder.h"

// Freed memory that the sanitizer keeps back would count as ours.
extern "C" const char* __asan_default_options();  // NOLINT: the name is the sanitizer's
const char* __asan_default_options() { return "quarantine_size_mb=1"; }  // NOLINT: as above

/// Tables as large as users have them, and as large as the format allows.
namespace zent::jet::testing {
namespace {

constexpr std::size_t kCachePages = 4096;  // 16 MB
constexpr std::size_t kNoteSize = 1900;    // characters of two bytes: a page a row
constexpr std::size_t kMegabyte = 1U << 20U;
constexpr PageNumber kMostPages = 524288;  // pages of 2 GB

/// Size of the large database in MB: 200, or what ZENT_DATABASE_MB says.
std::size_t DatabaseMegabytes() {
  std::size_t megabytes = 200;
  if (const char* const given = std::getenv("ZENT_DATABASE_MB"); given != nullptr) {
    const std::string_view text = given;
    std::from_chars(text.data(), text.data() + text.size(), megabytes);
  }
  return megabytes;
}

/// The most memory that this process has had so far, in bytes.
std::size_t PeakMemory() {
  rusage usage = {};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

/// A database on disk with a table of coded notes.
class NotesFile {
 public:
  NotesFile() : path_(folder_.Put("Korvo.mdb", EmptyStoreFile()).string()) {
    Open();
    page_ = TableBuilder(*file_)
                .AutoNumber("Id")
                .Column("Code", ColumnType::Text, 40)
                .Column("Note", ColumnType::Memo)
                .Index({1}, kUniqueIndex | kRequiredIndex, true)
                .Build()
                ->page();
    Reopen();
  }

  /// Commits, and opens the file anew.
  void Reopen() {
    file_->Commit();
    table_.reset();
    file_.reset();
    Open();
  }
  /// Makes the file longer by pages of zeros that no map names.
  void Lengthen(PageNumber pages) {
    file_->Commit();
    table_.reset();
    file_.reset();
    std::filesystem::resize_file(path_, std::uint64_t{pages} * 4096);
    Open();
  }

  int Insert(int number) {
    std::vector<Value> values = {Null(), CodeOf(number), NoteOf(number)};
    return table_->Insert(values).number();
  }
  /// Whether the row is found by its code, with its note.
  bool Finds(int number) {
    TableIndex& index = table_->indexes()[0];
    IndexCursor cursor = index.tree().Cursor();
    const std::vector<Value> code = {CodeOf(number)};
    if (!cursor.Seek(IndexKey(index.key_columns(), code).value()).value_or(false)) return false;
    return table_->Fetch(cursor.row()).value_or({Null(), Null(), Null()})[2] == NoteOf(number);
  }
  /// Rows in the table, all of them read; those with a wrong note are not counted.
  int CountRows() {
    int rows = 0;
    RowScan scan(table_->rows());
    std::vector<Value> values;
    while (scan.Next().value_or(false)) {
      if (!table_->Load(scan.bytes(), scan.page(), values).ok()) continue;
      if (values[2] == NoteOf(std::get<std::int32_t>(values[0]) - 1)) ++rows;
    }
    return rows;
  }

  StoreFile& file() { return *file_; }
  TableStore& table() { return *table_; }
  std::uint64_t Size() const { return std::filesystem::file_size(path_); }

 private:
  static Value CodeOf(int number) {
    return "CM" + std::to_string(number * 48'271LL % 2'147'483'647);
  }
  static Value NoteOf(int number) {
    return std::string(kNoteSize, static_cast<char>('a' + number % 26));
  }
  void Open() {
    file_ = std::make_unique<StoreFile>(storage_, path_, kCachePages);
    if (page_ != 0) table_ = std::move(TableStore::Open(file_->maps(), page_).value());
  }

  zent::testing::TempFolder folder_;
  std::string path_;
  PosixStorage storage_;
  std::unique_ptr<StoreFile> file_;
  std::unique_ptr<TableStore> table_;
  PageNumber page_ = 0;
};

TEST(LargeTable, KeepsMemoryAtTheBoundOfTheCache) {
  NotesFile notes;
  const int rows = static_cast<int>(DatabaseMegabytes() * kMegabyte / 4096);
  const std::size_t before = PeakMemory();

  for (int number = 0; number < rows; ++number) ASSERT_EQ(notes.Insert(number), 0);
  EXPECT_GT(notes.file().pager().counters().spills, 0U);
  EXPECT_LE(notes.file().pager().counters().most_pages_held, kCachePages);
  notes.Reopen();
  EXPECT_EQ(notes.CountRows(), rows);
  for (int number = 0; number < rows; number += 997) ASSERT_TRUE(notes.Finds(number));

  EXPECT_GT(notes.Size(), std::uint64_t{DatabaseMegabytes()} * kMegabyte * 9 / 10);
  EXPECT_LT(notes.Size(), std::uint64_t{DatabaseMegabytes()} * kMegabyte * 11 / 10);
  // The pages of the cache, and as much again for what the system and the sanitizer add.
  EXPECT_LE(PeakMemory() - before, 3 * kCachePages * 4096);
}

TEST(LargeTable, RollsBackWhatOutgrewTheCache) {
  NotesFile notes;
  const int rows = 2 * kCachePages;
  for (int number = 0; number < rows; ++number) ASSERT_EQ(notes.Insert(number), 0);
  notes.Reopen();
  const std::uint64_t size = notes.Size();
  for (int number = rows; number < 2 * rows; ++number) ASSERT_EQ(notes.Insert(number), 0);
  const ColumnChange change{2, "changed"};
  RowScan scan(notes.table().rows());
  for (int row = 0; row < rows; ++row) {
    ASSERT_TRUE(scan.Next().value_or(false));
    if (row % 3 != 0) continue;
    ASSERT_TRUE(notes.table().Update(scan.at(), {&change, 1}).ok());
  }
  EXPECT_GT(notes.file().pager().counters().spills, 0U);

  notes.file().Rollback();
  EXPECT_EQ(notes.CountRows(), rows);
  EXPECT_EQ(notes.table().RowCount().value_or(0), static_cast<std::uint32_t>(rows));
  EXPECT_EQ(notes.Size(), size);
}

TEST(LargeTable, RefusesARowThatWouldOutgrowTheFormat) {
  NotesFile notes;
  for (int number = 0; number < 3; ++number) ASSERT_EQ(notes.Insert(number), 0);
  constexpr PageNumber kPages = kMostPages - 30;
  notes.Lengthen(kPages);

  int number = 3;
  int error = 0;
  for (; error == 0 && number < 5000; ++number) error = notes.Insert(number);
  EXPECT_EQ(error, kDatabaseTooLarge);
  EXPECT_FALSE(notes.file().pager().Commit().ok());
  ASSERT_TRUE(notes.file().pager().Begin().ok());

  EXPECT_EQ(notes.Size(), std::uint64_t{kPages} * 4096);
  EXPECT_EQ(notes.CountRows(), 3);
  EXPECT_TRUE(notes.Finds(2));
  EXPECT_EQ(notes.table().RowCount().value_or(0), 3U);
  // Within its limit the file goes on to take rows.
  EXPECT_EQ(notes.Insert(3), 0);
  notes.Reopen();
  EXPECT_EQ(notes.CountRows(), 4);
  EXPECT_TRUE(notes.Finds(3));
}

// The search for free pages had gone beyond it when it became free again.
TEST(LargeTable, TakesAPageThatARollbackMadeFreeBeforeTheFileIsFull) {
  NotesFile notes;
  notes.Lengthen(kMostPages - 30);  // the map of free pages takes some of them
  StoreFile& file = notes.file();
  const PageNumber first = file.NewPage();
  file.Rollback();

  bool given = false;
  int error = 0;
  for (int count = 0; error == 0 && count < 1000; ++count) {
    const Result<PageEdit> page = file.maps().allocator().Allocate();
    error = page.number();
    given = given || (page.ok() && page.value().page() == first);
  }
  EXPECT_EQ(error, kDatabaseTooLarge);
  EXPECT_TRUE(given);
  EXPECT_TRUE(file.FreePages().empty());
}

}  // namespace
}  // namespace zent::jet::testing
