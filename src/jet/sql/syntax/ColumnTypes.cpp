#include "jet/sql/syntax/ColumnTypes.h"

#include <algorithm>
#include <array>

#include "base/Text.h"

namespace zent::jet {
namespace {

// The first name of each type is the one that is printed.
constexpr std::array kTypeNames = {
    ColumnTypeName{"TEXT", ColumnType::Text},
    ColumnTypeName{"VARCHAR", ColumnType::Text},
    ColumnTypeName{"CHAR", ColumnType::Text},
    ColumnTypeName{"CHARACTER", ColumnType::Text},
    ColumnTypeName{"ALPHANUMERIC", ColumnType::Text},
    ColumnTypeName{"STRING", ColumnType::Text},
    ColumnTypeName{"NCHAR", ColumnType::Text},
    ColumnTypeName{"NVARCHAR", ColumnType::Text},
    ColumnTypeName{"MEMO", ColumnType::Memo},
    ColumnTypeName{"LONGTEXT", ColumnType::Memo},
    ColumnTypeName{"LONGCHAR", ColumnType::Memo},
    ColumnTypeName{"NOTE", ColumnType::Memo},
    ColumnTypeName{"NTEXT", ColumnType::Memo},
    ColumnTypeName{"BYTE", ColumnType::Byte},
    ColumnTypeName{"TINYINT", ColumnType::Byte},
    ColumnTypeName{"INTEGER1", ColumnType::Byte},
    ColumnTypeName{"SHORT", ColumnType::Int},
    ColumnTypeName{"SMALLINT", ColumnType::Int},
    ColumnTypeName{"INTEGER2", ColumnType::Int},
    ColumnTypeName{"LONG", ColumnType::Long},
    ColumnTypeName{"INTEGER", ColumnType::Long},
    ColumnTypeName{"INT", ColumnType::Long},
    ColumnTypeName{"INTEGER4", ColumnType::Long},
    ColumnTypeName{"COUNTER", ColumnType::Long, true},
    ColumnTypeName{"AUTOINCREMENT", ColumnType::Long, true},
    ColumnTypeName{"SINGLE", ColumnType::Single},
    ColumnTypeName{"REAL", ColumnType::Single},
    ColumnTypeName{"FLOAT4", ColumnType::Single},
    ColumnTypeName{"IEEESINGLE", ColumnType::Single},
    ColumnTypeName{"DOUBLE", ColumnType::Double},
    ColumnTypeName{"FLOAT", ColumnType::Double},
    ColumnTypeName{"FLOAT8", ColumnType::Double},
    ColumnTypeName{"IEEEDOUBLE", ColumnType::Double},
    ColumnTypeName{"NUMBER", ColumnType::Double},
    ColumnTypeName{"CURRENCY", ColumnType::Currency},
    ColumnTypeName{"MONEY", ColumnType::Currency},
    ColumnTypeName{"DATETIME", ColumnType::Date},
    ColumnTypeName{"DATE", ColumnType::Date},
    ColumnTypeName{"TIME", ColumnType::Date},
    ColumnTypeName{"TIMESTAMP", ColumnType::Date},
    ColumnTypeName{"YESNO", ColumnType::Bool},
    ColumnTypeName{"BIT", ColumnType::Bool},
    ColumnTypeName{"LOGICAL", ColumnType::Bool},
    ColumnTypeName{"LOGICAL1", ColumnType::Bool},
    ColumnTypeName{"BOOLEAN", ColumnType::Bool},
    ColumnTypeName{"GUID", ColumnType::Guid},
    ColumnTypeName{"UNIQUEIDENTIFIER", ColumnType::Guid},
    ColumnTypeName{"BINARY", ColumnType::Binary},
    ColumnTypeName{"VARBINARY", ColumnType::Binary},
    ColumnTypeName{"LONGBINARY", ColumnType::Ole},
    ColumnTypeName{"OLEOBJECT", ColumnType::Ole},
    ColumnTypeName{"IMAGE", ColumnType::Ole},
    ColumnTypeName{"GENERAL", ColumnType::Ole},
    ColumnTypeName{"DECIMAL", ColumnType::Numeric},
    ColumnTypeName{"NUMERIC", ColumnType::Numeric},
    ColumnTypeName{"DEC", ColumnType::Numeric},
};

}  // namespace

const ColumnTypeName* FindColumnType(std::string_view name) {
  const auto* const found =
      std::find_if(kTypeNames.begin(), kTypeNames.end(),
                   [&](const ColumnTypeName& row) { return EqualsIgnoringCase(row.name, name); });
  return found == kTypeNames.end() ? nullptr : found;
}

std::string_view ColumnTypeNameOf(ColumnType type, bool auto_number) {
  const auto* const found =
      std::find_if(kTypeNames.begin(), kTypeNames.end(), [&](const ColumnTypeName& row) {
        return row.type == type && row.auto_number == auto_number;
      });
  return found == kTypeNames.end() ? std::string_view() : found->name;
}

}  // namespace zent::jet
