#include "odbc/BoundParameters.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "odbc/WideText.h"

namespace zent::odbc {
namespace {

/// Above it a text or binary parameter goes as a long one: no server's short types hold more.
constexpr SQLULEN kLongestShort = 4000;
constexpr SQLULEN kTimestampSize = 19;  // "2005-01-02 03:04:05"

bool IsOneOf(ColumnKind kind, ColumnKind a, ColumnKind b) { return kind == a || kind == b; }

/// As ODBC says it, which has 32 bits for it in programs of 32 bits.
SQLULEN SizeOf(const SqlType& type) {
  return static_cast<SQLULEN>(
      std::min<std::uint64_t>(type.size, std::numeric_limits<SQLULEN>::max()));
}

void SetNumeric(BoundParameter& bound, const SqlType& type, SQLSMALLINT sql_type, SQLULEN size,
                SQLSMALLINT digits) {
  const ColumnKind kind = KindOf(type);
  const bool fits = type.number != 0 && (kind == ColumnKind::Decimal ||
                                         IsOneOf(kind, ColumnKind::Integer, ColumnKind::Double));
  bound.sql_type = fits ? type.number : sql_type;
  bound.size = fits ? SizeOf(type) : size;
  bound.digits = fits ? type.digits : digits;
}

void SetWide(BoundParameter& bound, const std::string& utf8) {
  std::vector<SQLWCHAR> wide = ToWide(utf8);
  bound.c_type = SQL_C_WCHAR;
  bound.length = static_cast<SQLLEN>((wide.size() - 1) * sizeof(SQLWCHAR));
  bound.content = std::move(wide);
}

struct Binder {
  const SqlType& type;
  BoundParameter& bound;

  void operator()(std::monostate) const {
    bound.c_type = SQL_C_WCHAR;
    if (type.number == 0) return;
    bound.sql_type = type.number;
    bound.size = std::clamp<SQLULEN>(SizeOf(type), 1, kLongestShort);
    bound.digits = type.digits;
  }

  void operator()(bool value) const {
    bound.c_type = SQL_C_BIT;
    bound.sql_type = SQL_BIT;
    bound.length = 1;
    bound.content = static_cast<unsigned char>(value ? 1 : 0);
  }

  // Not every driver takes numbers of 64 bits: those that need no more go in 32.
  void operator()(std::int64_t value) const {
    if (value >= std::numeric_limits<SQLINTEGER>::min() &&
        value <= std::numeric_limits<SQLINTEGER>::max()) {
      bound.c_type = SQL_C_SLONG;
      bound.length = sizeof(SQLINTEGER);
      bound.content = static_cast<SQLINTEGER>(value);
      SetNumeric(bound, type, SQL_INTEGER, 10, 0);
    } else {
      bound.c_type = SQL_C_SBIGINT;
      bound.length = sizeof(SQLBIGINT);
      bound.content = static_cast<SQLBIGINT>(value);
      SetNumeric(bound, type, SQL_BIGINT, 19, 0);
    }
  }

  void operator()(double value) const {
    bound.c_type = SQL_C_DOUBLE;
    bound.length = sizeof(double);
    bound.content = value;
    SetNumeric(bound, type, SQL_DOUBLE, 15, 0);
  }

  void operator()(const Decimal& value) const {
    SetWide(bound, value.digits);
    const std::size_t point = value.digits.find('.');
    const std::size_t digits = point == std::string::npos ? 0 : value.digits.size() - point - 1;
    const std::size_t all = static_cast<std::size_t>(std::count_if(
        value.digits.begin(), value.digits.end(), [](char c) { return c >= '0' && c <= '9'; }));
    SetNumeric(bound, type, SQL_DECIMAL, std::max<SQLULEN>(all, 1),
               static_cast<SQLSMALLINT>(digits));
  }

  void operator()(const std::string& value) const {
    SetWide(bound, value);
    bound.size = std::max<SQLULEN>(static_cast<SQLULEN>(bound.length) / sizeof(SQLWCHAR), 1);
    const bool fits =
        type.number != 0 && IsOneOf(KindOf(type), ColumnKind::Text, ColumnKind::LongText);
    bound.sql_type = fits ? type.number : SQLSMALLINT{SQL_WVARCHAR};
    if (bound.size > kLongestShort) bound.sql_type = SQL_WLONGVARCHAR;
  }

  void operator()(const Bytes& value) const {
    bound.c_type = SQL_C_BINARY;
    bound.length = static_cast<SQLLEN>(value.bytes.size());
    bound.size = std::max<SQLULEN>(value.bytes.size(), 1);
    bound.sql_type = bound.size > kLongestShort ? SQL_LONGVARBINARY : SQL_VARBINARY;
    bound.content = value.bytes;
  }

  void operator()(const DateTime& value) const {
    SQL_TIMESTAMP_STRUCT stamp = {};
    stamp.year = value.year;
    stamp.month = value.month;
    stamp.day = value.day;
    stamp.hour = value.hour;
    stamp.minute = value.minute;
    stamp.second = value.second;
    bound.c_type = SQL_C_TYPE_TIMESTAMP;
    bound.sql_type = SQL_TYPE_TIMESTAMP;
    bound.digits = SecondDigits(value.nanoseconds);
    stamp.fraction = Cut(value.nanoseconds, bound.digits);
    bound.size = kTimestampSize + (bound.digits > 0 ? static_cast<SQLULEN>(bound.digits) + 1 : 0);
    bound.length = sizeof(stamp);
    bound.content = stamp;
  }

  /// The column's own digits of a second, or the fewest of 0, 3 and 6 that hold the value: a column
  /// of fewer digits refuses more, even zeros.
  SQLSMALLINT SecondDigits(std::uint32_t nanoseconds) const {
    if (type.number != 0 && KindOf(type) == ColumnKind::DateTime) {
      return std::clamp<SQLSMALLINT>(type.digits, 0, 9);
    }
    if (nanoseconds == 0) return 0;
    return nanoseconds % 1000000 == 0 ? 3 : 6;
  }

  static std::uint32_t Cut(std::uint32_t nanoseconds, SQLSMALLINT digits) {
    std::uint32_t step = 1;
    for (SQLSMALLINT digit = digits; digit < 9; ++digit) step *= 10;
    return nanoseconds - nanoseconds % step;
  }
};

}  // namespace

void* BoundParameter::Data() {
  return std::visit(
      [](auto& value) -> void* {
        using Type = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<Type, std::monostate>) {
          return nullptr;
        } else if constexpr (std::is_same_v<Type, std::string> ||
                             std::is_same_v<Type, std::vector<SQLWCHAR>>) {
          return value.data();
        } else {
          return &value;
        }
      },
      content);
}

SQLLEN BoundParameter::Capacity() const { return std::max<SQLLEN>(length, 0); }

BoundParameter BindableForm(const OdbcParameter& parameter) {
  BoundParameter bound;
  std::visit(Binder{parameter.type, bound}, parameter.value);
  return bound;
}

BoundParameters::BoundParameters(std::span<const OdbcParameter> values) {
  bound_.reserve(values.size());
  for (const OdbcParameter& value : values) bound_.push_back(BindableForm(value));
}

Status BoundParameters::BindTo(OdbcSession& session, const OdbcHandle& statement) {
  SQLUSMALLINT number = 0;
  for (BoundParameter& bound : bound_) {
    const SQLRETURN code = session.calls.bind_parameter(
        statement.get(), ++number, SQL_PARAM_INPUT, bound.c_type, bound.sql_type, bound.size,
        bound.digits, bound.Data(), bound.Capacity(), &bound.length);
    if (Status done = session.Check(statement, code); !done.ok()) return done;
  }
  return {};
}

}  // namespace zent::odbc
