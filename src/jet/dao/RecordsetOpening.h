#pragma once

#include <memory>
#include <string_view>

#include "base/Status.h"
#include "jet/dao/DatabaseCore.h"
#include "jet/dao/Recordset.h"
#include "jet/sql/syntax/Statement.h"

namespace zent::jet {

class ResultSet;

/// Makes recordsets, standing on their first row.
struct RecordsetOpening {
  DatabaseCore& core;

  /// `source`: the name of a table, or a SELECT.
  Result<std::unique_ptr<Recordset>> Open(std::string_view source, RecordsetType type);

 private:
  using Made = std::unique_ptr<Recordset::State>;
  Result<Made> OfTable(std::string_view name, RecordsetType type);
  Result<Made> OfQuery(std::string_view statement, RecordsetType type);
  Status TakeRows(ResultSet& rows, Recordset::State& state);
  Status CopyRows(ResultSet& rows, Recordset::State& state);
};

}  // namespace zent::jet
