#pragma once

namespace zent {

/// Types of fields, with DAO's numbers. An engine may know fewer; one that it does not know is an
/// error when a field is created and Binary when one is read.
enum class FieldType : int {
  Unknown = 0,
  Boolean = 1,
  Byte = 2,
  Integer = 3,  ///< 16 bits
  Long = 4,     ///< 32 bits
  Currency = 5,
  Single = 6,
  Double = 7,
  Date = 8,
  Binary = 9,
  Text = 10,
  LongBinary = 11,
  Memo = 12,
  Guid = 15,
  BigInt = 16,  ///< 64 bits; servers only
  Decimal = 20,
};

}  // namespace zent
