#include <gtest/gtest.h>

#include <utility>

#include "jet/catalog/Transaction.h"
#include "jet/fakes/CatalogFile.h"
#include "jet/format/JetErrors.h"

namespace zent::jet::testing {
namespace {

/// A file with a table of numbers, committed and with no transaction open.
struct Numbers {
  Numbers() {
    TableBuilder table(file.file());
    table.Column("Id", ColumnType::Long).Index({0}, kUniqueIndex, true);
    file.AddTable("Numbers", table);
    EXPECT_TRUE(file.file().pager().Commit().ok());
  }
  Status Put(int number) {
    std::vector<Value> row = {static_cast<std::int32_t>(number)};
    return file.table("Numbers").Insert(row).status();
  }
  std::uint32_t Count() { return file.table("Numbers").store().RowCount().value_or(99); }

  CatalogFile file;
};

TEST(Transaction, KeepsWhatIsCommitted) {
  Numbers numbers;
  Result<Transaction> transaction = Transaction::Begin(numbers.file.catalog());
  ASSERT_TRUE(transaction.ok());
  EXPECT_TRUE(numbers.Put(1).ok());
  const std::uint64_t generation = numbers.file.catalog().generation();
  EXPECT_TRUE(transaction.value().Commit().ok());
  EXPECT_EQ(numbers.file.catalog().generation(), generation);
  EXPECT_EQ(numbers.Count(), 1U);
  EXPECT_EQ(transaction.value().Commit().number(), kInvalidOperation);
  EXPECT_EQ(transaction.value().Rollback().number(), kInvalidOperation);
}

TEST(Transaction, RollsBackAtItsEndAndForgets) {
  Numbers numbers;
  const std::uint64_t generation = numbers.file.catalog().generation();
  {
    Result<Transaction> begun = Transaction::Begin(numbers.file.catalog());
    ASSERT_TRUE(begun.ok());
    const Transaction transaction = std::move(begun.value());
    EXPECT_TRUE(numbers.Put(1).ok());
    EXPECT_EQ(numbers.Count(), 1U);
  }
  EXPECT_GT(numbers.file.catalog().generation(), generation);
  EXPECT_EQ(numbers.Count(), 0U);
  EXPECT_FALSE(numbers.file.file().pager().in_transaction());
}

TEST(Transaction, WithinAnotherDecidesForItWhenItFails) {
  Numbers numbers;
  Result<Transaction> outer = Transaction::Begin(numbers.file.catalog());
  ASSERT_TRUE(outer.ok());
  EXPECT_TRUE(numbers.Put(1).ok());
  {
    Result<Transaction> inner = Transaction::Begin(numbers.file.catalog());
    ASSERT_TRUE(inner.ok());
    EXPECT_TRUE(numbers.Put(2).ok());
    EXPECT_TRUE(inner.value().Commit().ok());
  }
  {
    Result<Transaction> inner = Transaction::Begin(numbers.file.catalog());
    ASSERT_TRUE(inner.ok());
    EXPECT_TRUE(inner.value().Rollback().ok());
  }
  EXPECT_FALSE(outer.value().Commit().ok());
  EXPECT_EQ(numbers.Count(), 0U);
}

TEST(Transaction, GoesOnAfterARefusedChange) {
  Numbers numbers;
  Result<Transaction> transaction = Transaction::Begin(numbers.file.catalog());
  ASSERT_TRUE(transaction.ok());
  EXPECT_TRUE(numbers.Put(1).ok());
  EXPECT_EQ(numbers.Put(1).number(), kDuplicateKey);
  EXPECT_TRUE(numbers.Put(2).ok());
  EXPECT_TRUE(transaction.value().Commit().ok());
  EXPECT_EQ(numbers.Count(), 2U);
}

}  // namespace
}  // namespace zent::jet::testing
