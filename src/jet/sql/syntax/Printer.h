#pragma once

#include <string>
#include <string_view>

#include "jet/sql/syntax/Statement.h"

/// Trees as text in one form: keywords in capitals, names in brackets only where they need them,
/// round brackets only where the binding does. Parsing the text gives the same tree.
namespace zent::jet {

std::string PrintStatement(const Statement& statement);
std::string PrintSelect(const SelectStatement& select);
std::string PrintExpression(const Expression& expression);

/// A name as statements need it: "Name", "[Order Details]".
std::string PrintName(std::string_view name);
/// A text between single quotes, those within it doubled.
std::string PrintText(std::string_view text);
/// A value that the tokenizer can give, as it reads it.
std::string PrintLiteral(const Value& value);

}  // namespace zent::jet
