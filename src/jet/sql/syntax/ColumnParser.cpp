#include <utility>

#include "jet/sql/syntax/ColumnTypes.h"
#include "jet/sql/syntax/StatementParsers.h"

namespace zent::jet {
namespace {

/// A number between brackets, if there are any: the size of a text or binary column.
Status ParseSize(TokenStream& tokens, int highest, std::uint16_t& size) {
  size = 255;
  if (!tokens.TakeMark("(")) return {};
  const Result<std::int32_t> number = tokens.ExpectNumber(1, highest, "size");
  if (!number.ok()) return number.error();
  size = static_cast<std::uint16_t>(number.value());
  return tokens.ExpectMark(")");
}

Status ParsePrecision(TokenStream& tokens, ColumnSpecification& column) {
  column.precision = kDefaultPrecision;
  if (!tokens.TakeMark("(")) return {};
  const Result<std::int32_t> precision = tokens.ExpectNumber(1, kMaxPrecision, "precision");
  if (!precision.ok()) return precision.error();
  column.precision = static_cast<std::uint8_t>(precision.value());
  if (tokens.TakeMark(",")) {
    const Result<std::int32_t> scale = tokens.ExpectNumber(0, precision.value(), "scale");
    if (!scale.ok()) return scale.error();
    column.scale = static_cast<std::uint8_t>(scale.value());
  }
  return tokens.ExpectMark(")");
}

}  // namespace

Result<ColumnSpecification> ParseColumnSpecification(TokenStream& tokens) {
  Result<std::string> name = tokens.ExpectName("a column");
  if (!name.ok()) return name.error();
  const ColumnTypeName* const type =
      tokens.Peek().kind == TokenKind::Word ? FindColumnType(tokens.Peek().text) : nullptr;
  if (type == nullptr) return tokens.Error("type of the column expected");
  tokens.Skip();

  ColumnSpecification column{
      .name = std::move(name.value()), .type = type->type, .auto_number = type->auto_number};
  Status done;
  if (column.type == ColumnType::Text) done = ParseSize(tokens, kMaxTextSize, column.size);
  if (column.type == ColumnType::Binary) done = ParseSize(tokens, kMaxBinarySize, column.size);
  if (column.type == ColumnType::Numeric) done = ParsePrecision(tokens, column);
  if (!done.ok()) return done.error();

  if (tokens.TakeKeyword("NOT")) {
    const Status null = tokens.ExpectKeyword("NULL");
    if (!null.ok()) return null.error();
    column.required = true;
  } else {
    (void)tokens.TakeKeyword("NULL");
  }
  return column;
}

}  // namespace zent::jet
