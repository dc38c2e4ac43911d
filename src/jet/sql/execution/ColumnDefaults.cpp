#include "jet/sql/execution/ColumnDefaults.h"

#include <array>
#include <string_view>
#include <utility>

#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/execution/NoRow.h"
#include "jet/sql/expressions/ColumnBinder.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/Conversion.h"

namespace zent::jet {
namespace {

/// Words that expressions do not know but that people choose from a list.
std::optional<Expression> FromWord(std::string_view text) {
  constexpr std::array<std::pair<std::string_view, bool>, 4> kWords = {
      {{"Yes", true}, {"No", false}, {"On", true}, {"Off", false}}};
  for (const auto& [word, value] : kWords) {
    if (!EqualsIgnoringCase(word, text)) continue;
    Expression literal;
    literal.value = value;
    return literal;
  }
  return std::nullopt;
}

std::optional<Expression> ParseDefault(std::string_view text) {
  while (!text.empty() && (text.front() == '=' || text.front() == ' ')) text.remove_prefix(1);
  if (std::optional<Expression> word = FromWord(text)) return word;
  Result<Expression> parsed = ParseExpression(text);
  if (!parsed.ok()) return std::nullopt;
  ColumnBinder binder({});
  if (!binder.Bind(parsed.value()).ok() || !binder.Finish().ok()) return std::nullopt;
  return std::move(parsed.value());
}

}  // namespace

ColumnDefaults::ColumnDefaults(const Table& table, EvaluationContext context)
    : table_(table), evaluator_(context) {
  const TableDefinition& definition = table.definition();
  for (const ColumnDefinition& column : definition.columns) {
    const PropertySet* const set = table.properties().Find(column.name);
    const Property* const property = set == nullptr ? nullptr : set->Find("DefaultValue");
    const Value value =
        property == nullptr ? Value() : PropertyValue(definition.version, *property);
    const auto* const text = std::get_if<Text>(&value);
    expressions_.push_back(text == nullptr || column.IsAutoNumber() ? std::nullopt
                                                                    : ParseDefault(*text));
  }
}

Value ColumnDefaults::For(std::size_t position) {
  const std::optional<Expression>& expression = expressions_[position];
  if (!expression) return Null();
  NoRow no_row;
  const Result<Value> value = evaluator_.Evaluate(*expression, no_row);
  if (!value.ok()) return Null();
  Result<Value> converted = ConvertForColumn(table_.definition().columns[position], value.value());
  return converted.ok() ? std::move(converted.value()) : Value(Null());
}

}  // namespace zent::jet
