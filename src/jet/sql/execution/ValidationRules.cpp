#include "jet/sql/execution/ValidationRules.h"

#include <fmt/format.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "jet/format/JetErrors.h"
#include "jet/sql/expressions/ColumnBinder.h"
#include "jet/sql/expressions/Evaluator.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/Logic.h"

namespace zent::jet {
namespace {

class NewRow final : public RowValues {
 public:
  explicit NewRow(std::span<const Value> values) : values_(values) {}
  Result<const Value*> At(std::size_t column) override {
    if (column >= values_.size()) return JetError(kItemNotFound);
    return &values_[column];
  }

 private:
  std::span<const Value> values_;
};

struct Rule {
  Expression test;
  std::string text;  ///< what the user reads
};

Text TextOfProperty(const Table& table, const PropertySet* set, std::string_view name) {
  const Property* const property = set == nullptr ? nullptr : set->Find(name);
  if (property == nullptr) return {};
  const Value value = PropertyValue(table.definition().version, *property);
  const auto* const text = std::get_if<Text>(&value);
  return text == nullptr ? Text() : *text;
}

/// Adds the rule of a column or, with an empty name, of the table.
void AddRule(const Table& table, const std::string& column, std::vector<Rule>& rules) {
  const PropertySet* const set = table.properties().Find(column);
  const Text written = TextOfProperty(table, set, "ValidationRule");
  if (written.empty()) return;
  Result<Expression> parsed =
      column.empty() ? ParseExpression(written) : ParseRule(written, column);
  if (!parsed.ok()) return;
  std::vector<ScopeColumn> scope;
  for (const ColumnDefinition& one : table.definition().columns) {
    scope.push_back({table.name(), one.name});
  }
  ColumnBinder binder(std::move(scope));
  if (!binder.Bind(parsed.value()).ok() || !binder.Finish().ok()) return;
  Text text = TextOfProperty(table, set, "ValidationText");
  if (text.empty()) {
    text =
        fmt::format("One or more values are prohibited by the validation rule '{}' set for '{}'.",
                    written, column.empty() ? table.name() : table.name() + "." + column);
  }
  rules.push_back({std::move(parsed.value()), std::move(text)});
}

}  // namespace

void AddValidationRules(Table& table, EvaluationContext context) {
  std::vector<Rule> found;
  for (const ColumnDefinition& column : table.definition().columns) {
    AddRule(table, column.name, found);
  }
  AddRule(table, "", found);
  if (found.empty()) return;
  table.SetRowCheck([rules = std::move(found), context](std::span<const Value> values) -> Status {
    NewRow row(values);
    Evaluator evaluator(context);
    for (const Rule& rule : rules) {
      const Result<Value> value = evaluator.Evaluate(rule.test, row);
      if (!value.ok() || IsNull(value.value())) continue;
      const Result<bool> allowed = IsTrue(value.value());
      if (allowed.ok() && !allowed.value()) return JetError(kValidationFailed, rule.text);
    }
    return {};
  });
}

}  // namespace zent::jet
