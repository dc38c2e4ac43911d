#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "jet/catalog/Table.h"
#include "jet/dao/RowOrder.h"

namespace zent::jet {

/// Gives the table as it is open now: a rollback or a change of the schema opens it anew.
using OpenedTable = std::function<Result<Table*>()>;

/// The rows of a table in the order of the file, looked up as they are asked for. Rows that are
/// gone are passed over.
class FileOrder final : public RowOrder {
 public:
  explicit FileOrder(OpenedTable table) : table_(std::move(table)) {}

  Found First() override;
  Found Last() override;
  Found Next() override { return Step(at_ + 1); }
  Found Previous() override;
  Result<bool> GoTo(RowPointer row) override;
  void Deleted() override;
  void Added(RowPointer row) override;
  std::size_t visited() const override {
    return std::max(most_, reached_ - std::min(reached_, gone_));
  }

 private:
  /// The first row that is there from `place` on.
  Found Step(std::size_t place);
  /// Looks up more rows until there are more than `place`; false behind the last one.
  Result<bool> Extend(std::size_t place);
  Result<bool> IsThere(RowPointer row);

  OpenedTable table_;
  std::vector<RowPointer> rows_;  ///< those seen, ascending
  std::size_t at_ = 0;
  std::size_t reached_ = 0;  ///< places from the first on that were visited ...
  std::size_t gone_ = 0;     ///< ... and those of them without a row
  std::size_t most_ = 0;     ///< visited before it began anew
};

/// The rows of a table in the order of an index. The place is an entry: it stays when the tree
/// changes.
class IndexOrder final : public RowOrder {
 public:
  /// `real`: place of the index in the definition of the table as `table` has given it last;
  /// nothing when it is gone. It must outlive the order.
  IndexOrder(OpenedTable table, const std::optional<std::size_t>& real)
      : table_(std::move(table)), real_(real) {}

  Found First() override;
  Found Last() override;
  Found Next() override;
  Found Previous() override;
  Result<bool> GoTo(RowPointer row) override;
  void Deleted() override {}
  void Added(RowPointer) override {}
  std::size_t visited() const override { return 0; }

  /// The key that begins with `values`, those of the first columns.
  Result<std::string> KeyOf(std::span<const Value> values);
  /// The first entry whose key begins with `key`, or is not below it, or is above all that begin
  /// with it; the last one that begins with it or is below, or is below all.
  Found SeekEqual(const std::string& key);
  Found SeekFrom(const std::string& key);
  Found SeekAbove(const std::string& key);
  Found SeekUpTo(const std::string& key);
  Found SeekBelow(const std::string& key);

 private:
  Result<TableIndex*> Index();
  Result<TableIndex*> IndexOf(Table& table) const;
  Found Take(const Result<bool>& found, const IndexCursor& cursor);
  Found Before(const std::string& key);

  OpenedTable table_;
  const std::optional<std::size_t>& real_;
  std::string key_;
  RowPointer row_;
};

}  // namespace zent::jet
