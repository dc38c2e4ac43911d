#pragma once

#include <random>

#include "jet/random/DatabaseModel.h"
#include "jet/schema/NewTable.h"

namespace zent::jet::testing {

/// What columns there are.
enum class Palette : std::uint8_t {
  All,       ///< every type
  Portable,  ///< those whose values other readers write in one way; no empty texts
};

/// Makes columns and values. Values repeat now and then, so that keys do.
class RandomValues {
 public:
  RandomValues(unsigned seed, Palette palette) : random_(seed), palette_(palette) {}

  std::size_t Pick(std::size_t below) { return random_() % below; }
  bool Chance(std::size_t one_in) { return Pick(one_in) == 0; }

  ColumnType Type();
  /// Null now and then, never for Yes/No and AutoNumbers.
  Value ValueFor(const ModelColumn& column);
  /// Of every kind of storage that a long value has.
  std::string LongBytes();

 private:
  Value Filled(const ModelColumn& column);
  std::string Letters(std::size_t least, std::size_t most);

  std::mt19937 random_;
  Palette palette_;
};

/// The column as it is made in a file.
NewColumn NewColumnOf(const ModelColumn& column);

}  // namespace zent::jet::testing
