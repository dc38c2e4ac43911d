#include "odbc/RowChange.h"

#include "odbc/Identifiers.h"

namespace zent::odbc {
namespace {

void Append(BoundText& to, const BoundText& part) {
  to.text += part.text;
  to.values.insert(to.values.end(), part.values.begin(), part.values.end());
}

}  // namespace

bool IsComparable(const OdbcColumn& column) {
  switch (KindOf(column.type)) {
    case ColumnKind::Bit:
    case ColumnKind::Integer:
    case ColumnKind::Decimal:
    case ColumnKind::Text:
    case ColumnKind::Binary:
    case ColumnKind::DateTime:
      return true;
    case ColumnKind::Double:
    case ColumnKind::LongText:
    case ColumnKind::LongBinary:
    case ColumnKind::Other:
      break;
  }
  return false;
}

BoundText RowTest(const std::vector<ColumnValue>& values, std::string_view quote) {
  BoundText test;
  for (const ColumnValue& item : values) {
    if (!test.text.empty()) test.text += " AND ";
    test.text += QuoteIdentifier(item.column.name, quote);
    if (IsNull(item.value)) {
      test.text += " IS NULL";
      continue;
    }
    test.text += "=?";
    test.values.emplace_back(item.value, item.column.type);
  }
  return test;
}

BoundText BothTests(const BoundText& a, const BoundText& b) {
  BoundText both = a;
  if (!a.text.empty() && !b.text.empty()) both.text += " AND ";
  Append(both, b);
  return both;
}

BoundText UpdateText(std::string_view table, const std::vector<ColumnValue>& values,
                     const BoundText& test, std::string_view quote) {
  BoundText update{"UPDATE " + std::string(table) + " SET ", {}};
  for (const ColumnValue& item : values) {
    if (!update.values.empty()) update.text += ", ";
    update.text += QuoteIdentifier(item.column.name, quote) + "=?";
    update.values.emplace_back(item.value, item.column.type);
  }
  update.text += " WHERE ";
  Append(update, test);
  return update;
}

BoundText InsertText(std::string_view table, const std::vector<ColumnValue>& values,
                     std::string_view quote) {
  BoundText insert{"INSERT INTO " + std::string(table) + " (", {}};
  std::string marks;
  for (const ColumnValue& item : values) {
    if (!insert.values.empty()) insert.text += ", ";
    insert.text += QuoteIdentifier(item.column.name, quote);
    insert.values.emplace_back(item.value, item.column.type);
    marks += marks.empty() ? "?" : ", ?";
  }
  insert.text += ") VALUES (" + marks + ")";
  return insert;
}

BoundText DeleteText(std::string_view table, const BoundText& test) {
  BoundText statement{"DELETE FROM " + std::string(table) + " WHERE ", {}};
  Append(statement, test);
  return statement;
}

BoundText CountText(std::string_view table, const BoundText& test) {
  BoundText statement{"SELECT COUNT(*) FROM " + std::string(table) + " WHERE ", {}};
  Append(statement, test);
  return statement;
}

}  // namespace zent::odbc
