#include "odbc/CatalogQuestion.h"

#include <cstdlib>

#include "odbc/WideText.h"

namespace zent::odbc {
namespace {

constexpr std::size_t kLongestName = 1000;

}  // namespace

CatalogArgument::CatalogArgument(std::string_view text) {
  if (!text.empty()) text_ = ToWide(text.substr(0, kLongestName));
}

std::string EscapePattern(std::string_view name, std::string_view escape) {
  std::string pattern;
  for (const char c : name) {
    if (c == '%' || c == '_' || (!escape.empty() && c == escape.front())) pattern += escape;
    pattern += c;
  }
  return pattern;
}

Status ForEachRow(OdbcStatement& answer, const std::function<Status(OdbcStatement&)>& row) {
  while (true) {
    const Result<bool> there = answer.Next();
    if (!there.ok()) return there.error();
    if (!there.value()) return {};
    if (Status taken = row(answer); !taken.ok()) return taken;
  }
}

Result<std::string> TextAt(OdbcStatement& answer, std::size_t number) {
  const Result<OdbcValue> value = answer.Value(number - 1);
  if (!value.ok()) return value.error();
  const auto* text = std::get_if<std::string>(&value.value());
  return text == nullptr ? std::string() : *text;
}

Result<std::int64_t> NumberAt(OdbcStatement& answer, std::size_t number) {
  const Result<OdbcValue> value = answer.Value(number - 1);
  if (!value.ok()) return value.error();
  if (const auto* whole = std::get_if<std::int64_t>(&value.value())) return *whole;
  // Some drivers give their numbers as decimal or text.
  if (const auto* exact = std::get_if<Decimal>(&value.value())) {
    return std::int64_t{std::strtoll(exact->digits.c_str(), nullptr, 10)};
  }
  if (const auto* text = std::get_if<std::string>(&value.value())) {
    return std::int64_t{std::strtoll(text->c_str(), nullptr, 10)};
  }
  return std::int64_t{0};
}

}  // namespace zent::odbc
