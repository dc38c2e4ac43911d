#include "jet/tools/CatalogRows.h"

#include "base/Text.h"

namespace zent::jet {

Value CatalogRow::Field(std::string_view column) const {
  const std::vector<ColumnDefinition>& columns = table_.definition().columns;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!EqualsIgnoringCase(columns[i].name, column)) continue;
    return table_.Field(scan_.bytes(), i, scan_.page()).value_or(Null());
  }
  return Null();
}

std::int32_t CatalogRow::Number(std::string_view column) const {
  const Value value = Field(column);
  if (const auto* const wide = std::get_if<std::int32_t>(&value)) return *wide;
  if (const auto* const narrow = std::get_if<std::int16_t>(&value)) return *narrow;
  return 0;
}

std::string CatalogRow::TextOf(std::string_view column) const {
  const Value value = Field(column);
  const auto* const text = std::get_if<Text>(&value);
  return text == nullptr ? std::string() : *text;
}

Result<std::string> CatalogRow::Bytes(std::string_view column) const {
  const std::vector<ColumnDefinition>& columns = table_.definition().columns;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!EqualsIgnoringCase(columns[i].name, column)) continue;
    const Result<Value> value = table_.Field(scan_.bytes(), i, scan_.page());
    if (!value.ok()) return value.error();
    const auto* const binary = std::get_if<Binary>(&value.value());
    return binary == nullptr ? std::string() : binary->bytes;
  }
  return std::string();
}

Status ForEachCatalogRow(TableStore& table, const std::function<bool(const CatalogRow&)>& visit) {
  RowScan scan(table.rows());
  while (true) {
    const Result<bool> more = scan.Next();
    if (!more.ok()) return more.error();
    if (!more.value() || !visit(CatalogRow(table, scan))) return {};
  }
}

}  // namespace zent::jet
