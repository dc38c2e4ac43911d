#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/sql/execution/RowStream.h"
#include "jet/sql/syntax/Statement.h"

namespace zent::jet {

/// The rows of another stream in an order. It keeps their keys and places, not the rows.
class SortedStream final : public RowStream {
 public:
  SortedStream(RowStream& rows, std::span<const OrderTerm> order, Evaluator& evaluator)
      : rows_(rows), order_(order), evaluator_(evaluator) {}

  Status Restart() override;
  Result<bool> Next() override;
  Result<const Value*> At(std::size_t column) override { return rows_.At(column); }
  std::size_t place_size() const override { return rows_.place_size(); }
  void NotePlace(std::vector<std::uint32_t>& places) const override { rows_.NotePlace(places); }
  Status GoTo(const std::uint32_t* place) override { return rows_.GoTo(place); }

 private:
  struct Entry {
    std::size_t key = 0;  ///< where it begins in keys_
    std::size_t end = 0;
    std::size_t place = 0;
  };
  Status Gather();

  RowStream& rows_;
  std::span<const OrderTerm> order_;
  Evaluator& evaluator_;
  bool gathered_ = false;
  std::string keys_;
  std::vector<std::uint32_t> places_;
  std::vector<Entry> entries_;
  std::size_t next_ = 0;
};

/// Appends what puts the present row of `rows` in its place.
Status AppendRowKey(RowValues& rows, std::span<const OrderTerm> order, Evaluator& evaluator,
                    std::string& key);

}  // namespace zent::jet
