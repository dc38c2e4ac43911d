#pragma once

#include "jet/format/JetErrors.h"
#include "jet/sql/expressions/Evaluator.h"

namespace zent::jet {

/// For expressions that read no row.
class NoRow final : public RowValues {
 public:
  Result<const Value*> At(std::size_t /*column*/) override { return JetError(kItemNotFound); }
};

}  // namespace zent::jet
