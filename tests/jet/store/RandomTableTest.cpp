#include <gtest/gtest.h>

#include <random>

#include "jet/fakes/SampleTable.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"

/// Random changes, commits and rollbacks of a table against a model in memory, over a cache so
/// small that transactions outgrow it; rows are found again through the indexes.
namespace zent::jet::testing {
namespace {

constexpr int kSteps = 1500;
constexpr std::size_t kCachePages = 40;
constexpr unsigned kSeeds[] = {1, 2, 3, 4};

class RandomTable {
 public:
  explicit RandomTable(unsigned seed) : random_(seed) {
    storage_.Put(kPath, SampleTable::Make());
    Open();
  }

  void Step() {
    switch (Pick(20)) {
      case 0:
        return End(true);
      case 1:
        return End(false);
      case 2:
        return Reopen();
      case 3:
      case 4:
        return LookUp();
      case 5:
      case 6:
      case 7:
        return Delete();
      case 8:
      case 9:
      case 10:
      case 11:
        return Update();
      default:
        return Insert();
    }
  }
  void Check() { EXPECT_EQ(ExpectRightTable(*file_, *table_), rows_); }
  std::uint64_t spills() const { return spills_; }

 private:
  std::size_t Pick(std::size_t below) { return random_() % below; }
  TableRows::iterator PickRow() {
    return std::next(rows_.begin(), static_cast<std::ptrdiff_t>(Pick(rows_.size())));
  }
  Value Code() { return Pick(9) == 0 ? Value(Null()) : Value("Code-" + std::to_string(Pick(800))); }
  Value City() {
    return Pick(9) == 0 ? Value(Null()) : Value(std::string(1 + Pick(55), "aeiou"[Pick(5)]));
  }
  Value Note() {
    const std::size_t most[] = {30, 900, 4000, 12000};
    return Pick(5) == 0 ? Value(Null()) : Value(std::string(Pick(most[Pick(4)]) + 1, 'n'));
  }

  void Open() {
    file_ = std::make_unique<StoreFile>(storage_, kPath, kCachePages);
    table_ = SampleTable::Open(*file_);
  }
  void End(bool commit) {
    if (commit) {
      file_->Commit();
      committed_ = rows_;
    } else {
      file_->Rollback();
      rows_ = committed_;
    }
  }
  /// As a program that ends and begins anew; what was not committed is gone.
  void Reopen() {
    spills_ += file_->pager().counters().spills;
    table_.reset();
    file_.reset();
    rows_ = committed_;
    Open();
  }

  /// Whether another row than `except` has that code.
  bool IsTaken(const Value& code, TableRows::iterator except) {
    if (IsNull(code)) return false;
    for (auto row = rows_.begin(); row != rows_.end(); ++row) {
      if (row != except && row->second[SampleTable::Code] == code) return true;
    }
    return false;
  }
  void Insert() {
    std::vector<Value> values = {Null(), Code(), City(), Date{static_cast<double>(Pick(300))},
                                 Note()};
    const bool taken = IsTaken(values[SampleTable::Code], rows_.end());
    const Result<RowPointer> at = table_->Insert(values);
    ASSERT_EQ(at.number(), taken ? kDuplicateKey : 0);
    if (!taken) rows_.emplace(at.value(), values);
  }
  void Update() {
    if (rows_.empty()) return;
    const auto row = PickRow();
    std::vector<ColumnChange> changes = {{SampleTable::City, City()}, {SampleTable::Note, Note()}};
    if (Pick(2) == 0) changes.push_back({SampleTable::Code, Code()});
    const bool taken = changes.size() == 3 && IsTaken(changes[2].value, row);
    ASSERT_EQ(table_->Update(row->first, changes).number(), taken ? kDuplicateKey : 0);
    if (taken) return;
    for (const ColumnChange& change : changes) row->second[change.position] = change.value;
  }
  void Delete() {
    if (rows_.empty()) return;
    const auto row = PickRow();
    ASSERT_TRUE(table_->Delete(row->first).ok());
    rows_.erase(row);
  }
  /// A row is found by its number and by its code, and its values are those of the model.
  void LookUp() {
    if (rows_.empty()) return;
    const auto row = PickRow();
    for (const std::size_t i : {0U, 1U}) {
      TableIndex& index = table_->indexes()[i];
      const Value& value = row->second[index.columns().front()];
      if (IsNull(value)) continue;
      const std::string key = IndexKey(index.key_columns(), std::vector<Value>{value}).value();
      IndexCursor cursor = index.tree().Cursor();
      ASSERT_TRUE(cursor.Seek(key).value_or(false));
      ASSERT_EQ(cursor.row(), row->first);
    }
    ASSERT_EQ(table_->Fetch(row->first).value_or({}), row->second);
  }

  std::mt19937 random_;
  MemoryStorage storage_;
  std::unique_ptr<StoreFile> file_;
  std::unique_ptr<TableStore> table_;
  TableRows rows_;
  TableRows committed_;
  std::uint64_t spills_ = 0;
};

TEST(RandomTable, EqualsTheModelThroughCommitsAndRollbacks) {
  std::uint64_t spills = 0;
  for (const unsigned seed : kSeeds) {
    RandomTable table(seed);
    for (int step = 0; step < kSteps; ++step) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << ", step " << step);
      table.Step();
      if (step % 100 == 99) table.Check();
      ASSERT_FALSE(::testing::Test::HasFailure());
    }
    spills += table.spills();
  }
  EXPECT_GT(spills, 0U);
}

}  // namespace
}  // namespace zent::jet::testing
