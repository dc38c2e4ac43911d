#include "jet/schema/SystemRows.h"

#include <array>

#include "base/CaseFold.h"

namespace zent::jet {
namespace {

bool Same(const Value& a, const Value& b) {
  const Text* const text = std::get_if<Text>(&a);
  const Text* const other = std::get_if<Text>(&b);
  return text != nullptr && other != nullptr ? SameName(*text, *other) : a == b;
}

}  // namespace

Result<std::vector<RowPointer>> FindRows(SystemTable& table, std::size_t column,
                                         const Value& value) {
  const std::array columns = {column};
  Result<std::optional<std::vector<RowPointer>>> found = table.Seek(columns, std::span(&value, 1));
  if (!found.ok()) return found.error();
  if (found.value()) return std::move(*found.value());

  std::vector<RowPointer> rows;
  RowScan scan(table.store().rows());
  Result<bool> more = scan.Next();
  for (; more.value_or(false); more = scan.Next()) {
    const Result<Value> field =
        table.store().Field(scan.bytes(), table.position(column), scan.page());
    if (!field.ok()) return field.error();
    if (Same(field.value(), value)) rows.push_back(scan.at());
  }
  if (!more.ok()) return more.error();
  return rows;
}

Status DeleteRows(SystemTable& table, std::size_t column, const Value& value) {
  const Result<std::vector<RowPointer>> rows = FindRows(table, column, value);
  if (!rows.ok()) return rows.error();
  for (const RowPointer row : rows.value()) {
    if (Status deleted = table.store().Delete(row); !deleted.ok()) return deleted;
  }
  return {};
}

}  // namespace zent::jet
