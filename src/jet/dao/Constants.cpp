#include "jet/dao/Constants.h"

namespace zent::jet {

ColumnType ToColumnType(DataType type) {
  return type == DataType::Decimal ? ColumnType::Numeric : static_cast<ColumnType>(type);
}

DataType ToDataType(ColumnType type) {
  return type == ColumnType::Numeric ? DataType::Decimal : static_cast<DataType>(type);
}

bool IsDataType(DataType type) {
  switch (type) {
    case DataType::Boolean:
    case DataType::Byte:
    case DataType::Integer:
    case DataType::Long:
    case DataType::Currency:
    case DataType::Single:
    case DataType::Double:
    case DataType::Date:
    case DataType::Binary:
    case DataType::ShortText:
    case DataType::LongBinary:
    case DataType::Memo:
    case DataType::Guid:
    case DataType::Decimal:
      return true;
  }
  return false;
}

}  // namespace zent::jet
