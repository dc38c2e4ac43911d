#pragma once

#include <cstdint>
#include <vector>

#include "base/Status.h"
#include "jet/sql/expressions/Evaluator.h"

namespace zent::jet {

/// Rows that come one after the other and can be found again by their place, a few numbers.
class RowStream : public RowValues {
 public:
  /// Begins anew.
  virtual Status Restart() = 0;
  virtual Result<bool> Next() = 0;

  /// Numbers that a place is made of.
  virtual std::size_t place_size() const = 0;
  /// Appends the place of the present row.
  virtual void NotePlace(std::vector<std::uint32_t>& places) const = 0;
  /// Goes back to a row; the rows that come next are then those behind it no longer.
  virtual Status GoTo(const std::uint32_t* place) = 0;
};

}  // namespace zent::jet
