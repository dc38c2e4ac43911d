#include "jet/schema/IndexFill.h"

#include "jet/format/IndexKey.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/EntrySorter.h"
#include "jet/store/IndexBuilder.h"

namespace zent::jet {
namespace {

class Filling {
 public:
  Filling(TableStore& table, const TableDefinition& definition, TableIndex& index,
          std::size_t budget)
      : table_(table),
        definition_(definition),
        index_(index),
        sorter_(budget),
        builder_(index.tree()) {}

  Status Fill(bool required) {
    const std::vector<Value> nulls(index_.key_columns().size());
    Result<std::string> null_key = IndexKey(index_.key_columns(), nulls);
    if (null_key.ok()) null_key_ = std::move(null_key.value());  // yes/no fields are never null
    do {
      if (Status gathered = Gather(required); !gathered.ok()) return gathered;
      sorter_.Sort();
      if (Status emitted = Emit(); !emitted.ok()) return emitted;
    } while (sorter_.NextPass());
    return builder_.Finish();
  }
  std::uint32_t distinct() const { return distinct_; }

 private:
  Status Gather(bool required) {
    RowScan scan(table_.rows());
    Result<bool> more = scan.Next();
    for (; more.value_or(false); more = scan.Next()) {
      const Result<RowFields> fields = LoadFields(definition_, scan.bytes(), scan.page());
      if (!fields.ok()) return fields.error();
      const Result<TableIndex::RowKey> key = index_.KeyOf(definition_, fields.value(), scan.page());
      if (!key.ok()) return key.error();
      if (required && key.value().has_null) return JetError(kNullInKey);
      if (key.value().key) sorter_.Add(*key.value().key, scan.at());
    }
    return more.status();
  }

  Status Emit() {
    for (std::size_t i = 0; i < sorter_.count(); ++i) {
      const std::string_view key = sorter_.key(i);
      const bool again = last_key_ && *last_key_ == key;
      if (again && index_.unique() && key != null_key_) return JetError(kDuplicateKey);
      if (!again) {
        ++distinct_;
        last_key_ = key;
      }
      if (Status added = builder_.Add(key, sorter_.row(i)); !added.ok()) return added;
    }
    return {};
  }

  TableStore& table_;
  const TableDefinition& definition_;
  TableIndex& index_;
  EntrySorter sorter_;
  IndexBuilder builder_;
  std::string null_key_;
  std::optional<std::string> last_key_;
  std::uint32_t distinct_ = 0;
};

}  // namespace

Status FillIndex(UsageMaps& maps, TableStore& table, std::size_t position,
                 TableDefinition& definition, std::size_t budget) {
  Result<TableIndex> index = TableIndex::Open(maps, table.page(), definition, position);
  if (!index.ok()) return index.error();
  Filling filling(table, definition, index.value(), budget);
  if (Status s = filling.Fill(definition.real_indexes[position].IsRequired()); !s.ok()) return s;
  definition.real_indexes[position].distinct_keys = filling.distinct();
  return {};
}

}  // namespace zent::jet
