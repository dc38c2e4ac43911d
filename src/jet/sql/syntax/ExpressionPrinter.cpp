#include <fmt/format.h>

#include <algorithm>

#include "jet/format/ValueText.h"
#include "jet/sql/syntax/DateLiteral.h"
#include "jet/sql/syntax/Keywords.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {
namespace {

bool IsSimpleName(std::string_view name) {
  if (name.empty() || IsReservedWord(name) || (name.front() >= '0' && name.front() <= '9')) {
    return false;
  }
  return std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  });
}

/// Has a point or exponent, so that it is read as a double again.
std::string DoubleText(double number) {
  std::string text = fmt::format("{}", number);
  if (text.find_first_of(".en") == std::string::npos) text += ".0";
  return text;
}

struct LiteralPrinter {
  std::string operator()(const Null& /*null*/) const { return "NULL"; }
  std::string operator()(bool value) const { return value ? "TRUE" : "FALSE"; }
  std::string operator()(std::uint8_t value) const { return fmt::format("{}", value); }
  // Negative whole numbers come from hexadecimal ones: a sign would be an operator.
  std::string operator()(std::int16_t value) const {
    return value < 0 ? fmt::format("&H{:X}", static_cast<std::uint16_t>(value))
                     : fmt::format("{}", value);
  }
  std::string operator()(std::int32_t value) const {
    return value < 0 ? fmt::format("&H{:X}", static_cast<std::uint32_t>(value))
                     : fmt::format("{}", value);
  }
  std::string operator()(Currency value) const { return CurrencyText(value); }
  std::string operator()(float value) const { return DoubleText(static_cast<double>(value)); }
  std::string operator()(double value) const { return DoubleText(value); }
  std::string operator()(Date value) const { return "#" + PlainDateText(value) + "#"; }
  std::string operator()(const Text& value) const { return PrintText(value); }
  std::string operator()(const Binary& value) const { return PrintText(value.bytes); }
  std::string operator()(const Guid& value) const { return PrintText(GuidText(value)); }
  std::string operator()(const Decimal& value) const { return DecimalText(value); }
};

/// `operand` as it stands beside an operator that binds `binding` or more.
std::string Print(const Expression& operand, Binding binding) {
  std::string text = PrintExpression(operand);
  return BindingOf(operand.kind) < binding ? "(" + text + ")" : text;
}

std::string PrintList(const std::vector<Expression>& operands, std::size_t first) {
  std::string text = "(";
  for (std::size_t i = first; i < operands.size(); ++i) {
    if (i > first) text += ", ";
    text += PrintExpression(operands[i]);
  }
  return text + ")";
}

std::string PrintCall(const Expression& call) {
  if (call.kind == ExpressionKind::Aggregate && call.operands.empty()) return call.name + "(*)";
  return call.name + PrintList(call.operands, 0);
}

std::string PrintBetween(const Expression& test, std::string_view word) {
  return fmt::format("{} {} {} AND {}", Print(test.operands[0], Binding::Comparison), word,
                     Print(test.operands[1], Binding::Concatenate),
                     Print(test.operands[2], Binding::Concatenate));
}

std::string PrintQuery(const Expression& node) {
  const SelectStatement* const select = node.query.get();
  return "(" + (select == nullptr ? std::string() : PrintSelect(*select)) + ")";
}

}  // namespace

std::string PrintName(std::string_view name) {
  if (IsSimpleName(name)) return std::string(name);
  if (name.find(']') != std::string_view::npos) return fmt::format("`{}`", name);
  return fmt::format("[{}]", name);
}

std::string PrintText(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + "'";
}

std::string PrintLiteral(const Value& value) { return std::visit(LiteralPrinter(), value); }

std::string PrintExpression(const Expression& expression) {
  const std::vector<Expression>& operands = expression.operands;
  switch (expression.kind) {
    case ExpressionKind::Literal:
      return PrintLiteral(expression.value);
    case ExpressionKind::Column:
      return (expression.table.empty() ? "" : PrintName(expression.table) + ".") +
             PrintName(expression.name);
    case ExpressionKind::Function:
    case ExpressionKind::Aggregate:
      return PrintCall(expression);
    case ExpressionKind::In:
      return Print(operands[0], Binding::Comparison) + " IN " + PrintList(operands, 1);
    case ExpressionKind::NotIn:
      return Print(operands[0], Binding::Comparison) + " NOT IN " + PrintList(operands, 1);
    case ExpressionKind::Subquery:
      return PrintQuery(expression);
    case ExpressionKind::Exists:
      return "EXISTS " + PrintQuery(expression);
    case ExpressionKind::InQuery:
      return Print(operands[0], Binding::Comparison) + " IN " + PrintQuery(expression);
    case ExpressionKind::NotInQuery:
      return Print(operands[0], Binding::Comparison) + " NOT IN " + PrintQuery(expression);
    case ExpressionKind::Between:
      return PrintBetween(expression, "BETWEEN");
    case ExpressionKind::NotBetween:
      return PrintBetween(expression, "NOT BETWEEN");
    case ExpressionKind::IsNull:
      return Print(operands[0], Binding::Comparison) + " IS NULL";
    case ExpressionKind::IsNotNull:
      return Print(operands[0], Binding::Comparison) + " IS NOT NULL";
    case ExpressionKind::Not:
      return "NOT " + Print(operands[0], Binding::Not);
    case ExpressionKind::Negate:
      return "-" + Print(operands[0], Binding::Negate);
    default:
      break;
  }
  const BinaryOperator* const known = FindOperator(expression.kind);
  return fmt::format("{} {} {}", Print(operands[0], known->binding), known->text,
                     Print(operands[1], Above(known->binding)));
}

}  // namespace zent::jet
