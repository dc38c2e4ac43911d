#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "jet/format/Value.h"

/// Values as bytes that compare as the values do, so that rows can be put in order, grouped and
/// found without looking at types again.
namespace zent::jet {

enum class KeyClass : std::uint8_t { None, Numbers, Texts, Bytes, Guids };
KeyClass KeyClassOf(const Value& value);

/// Appends the key of `value`: keys of equal values are equal, null comes first, numbers of all
/// types are in one order, texts in that of the collation. No key begins with another. Of a long
/// text all of it counts.
void AppendOrderKey(const Value& value, bool descending, std::string& key);

/// What a query may keep of rows that it has to put in order, group or look up, in bytes. Beyond,
/// it ends with kDatabaseTooLarge.
inline constexpr std::size_t kMaxKeptBytes = std::size_t{256} << 20;
/// What a row that is kept takes of it.
std::size_t KeptBytes(const std::vector<Value>& row);

}  // namespace zent::jet
