#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "odbc/OdbcCalls.h"

/// Texts of the calls: UTF-16 in units of two bytes, on every system.
namespace zent::odbc {

static_assert(sizeof(SQLWCHAR) == 2, "the wide texts of ODBC are UTF-16");

/// The wide form of `utf8`, with a zero behind it.
std::vector<SQLWCHAR> ToWide(std::string_view utf8);

/// UTF-8 of the first `length` units of `buffer`, or of all of it when it has fewer.
std::string FromWide(const std::vector<SQLWCHAR>& buffer, std::size_t length);

/// UTF-8 of a text that comes in pieces, none of which has to end with a whole character.
class WideTextPieces {
 public:
  /// The UTF-8 of `units` and of what earlier pieces left over; keeps half a character back.
  std::string Add(const SQLWCHAR* units, std::size_t count);
  /// What is left over at the end: empty, or half a character.
  std::string Finish();

 private:
  std::u16string kept_;
};

}  // namespace zent::odbc
