#include "jet/format/Value.h"

#include <algorithm>

namespace zent::jet {
namespace {

struct TypeFacts {
  ColumnType type;
  std::size_t size;
  const char* name;
};

constexpr std::array kTypes = {
    TypeFacts{ColumnType::Bool, 0, "bool"},         TypeFacts{ColumnType::Byte, 1, "byte"},
    TypeFacts{ColumnType::Int, 2, "int"},           TypeFacts{ColumnType::Long, 4, "long"},
    TypeFacts{ColumnType::Currency, 8, "currency"}, TypeFacts{ColumnType::Single, 4, "single"},
    TypeFacts{ColumnType::Double, 8, "double"},     TypeFacts{ColumnType::Date, 8, "date"},
    TypeFacts{ColumnType::Binary, 0, "binary"},     TypeFacts{ColumnType::Text, 0, "text"},
    TypeFacts{ColumnType::Ole, 0, "ole"},           TypeFacts{ColumnType::Memo, 0, "memo"},
    TypeFacts{ColumnType::Guid, 16, "guid"},        TypeFacts{ColumnType::Numeric, 17, "numeric"},
};

const TypeFacts* FactsOf(ColumnType type) {
  const auto* const found = std::find_if(kTypes.begin(), kTypes.end(),
                                         [&](const TypeFacts& row) { return row.type == type; });
  return found == kTypes.end() ? nullptr : found;
}

// In the order of the alternatives of Value.
constexpr std::array kTypeOfAlternative = {
    ColumnType::Long /* null: see the header */,
    ColumnType::Bool,
    ColumnType::Byte,
    ColumnType::Int,
    ColumnType::Long,
    ColumnType::Currency,
    ColumnType::Single,
    ColumnType::Double,
    ColumnType::Date,
    ColumnType::Text,
    ColumnType::Binary,
    ColumnType::Guid,
    ColumnType::Numeric,
};
static_assert(kTypeOfAlternative.size() == std::variant_size_v<Value>);

}  // namespace

ColumnType TypeOf(const Value& value) { return kTypeOfAlternative[value.index()]; }

std::size_t FixedSizeOf(ColumnType type) {
  const TypeFacts* facts = FactsOf(type);
  return facts == nullptr ? 0 : facts->size;
}

const char* NameOf(ColumnType type) {
  const TypeFacts* facts = FactsOf(type);
  return facts == nullptr ? "unknown" : facts->name;
}

}  // namespace zent::jet
