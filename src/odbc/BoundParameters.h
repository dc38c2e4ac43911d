#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "base/Status.h"
#include "odbc/OdbcHandle.h"
#include "odbc/OdbcParameter.h"
#include "odbc/OdbcSession.h"

namespace zent::odbc {

/// A parameter in the form that the driver reads, and the types it is told.
struct BoundParameter {
  using Content = std::variant<std::monostate, unsigned char, SQLINTEGER, SQLBIGINT, double,
                               std::vector<SQLWCHAR>, std::string, SQL_TIMESTAMP_STRUCT>;
  Content content;
  SQLSMALLINT c_type = SQL_C_DEFAULT;
  SQLSMALLINT sql_type = SQL_WVARCHAR;
  SQLULEN size = 1;
  SQLSMALLINT digits = 0;
  SQLLEN length = SQL_NULL_DATA;  ///< in bytes

  /// The address and the length of the content's bytes.
  void* Data();
  SQLLEN Capacity() const;
};

/// Chooses form and types of one parameter.
BoundParameter BindableForm(const OdbcParameter& parameter);

/// The parameters of a statement, kept until it has been run.
class BoundParameters {
 public:
  explicit BoundParameters(std::span<const OdbcParameter> values);
  Status BindTo(OdbcSession& session, const OdbcHandle& statement);

 private:
  std::vector<BoundParameter> bound_;
};

}  // namespace zent::odbc
