#include "odbc/Identifiers.h"

#include <utility>
#include <vector>

namespace zent::odbc {
namespace {

constexpr std::size_t kMostParts = 3;

char ClosingOf(char quote) { return quote == '[' ? ']' : quote; }

bool IsNameByte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '$' || c == '#' || c == '@' || static_cast<unsigned char>(c) >= 0x80;
}

std::optional<std::string> TakeQuoted(std::string_view& text) {
  const char closing = ClosingOf(text.front());
  std::string name;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == closing) {
      if (at + 1 == text.size() || text[at + 1] != closing) {
        text.remove_prefix(at + 1);
        return name;
      }
      ++at;
    }
    name += text[at];
  }
  return std::nullopt;
}

std::optional<std::string> TakePart(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  if (text.front() == '"' || text.front() == '`' || text.front() == '[') return TakeQuoted(text);
  std::size_t length = 0;
  while (length < text.size() && IsNameByte(text[length])) ++length;
  if (length == 0) return std::nullopt;
  std::string name(text.substr(0, length));
  text.remove_prefix(length);
  return name;
}

}  // namespace

std::string QuoteIdentifier(std::string_view name, std::string_view quote) {
  if (quote.empty()) return std::string(name);
  const char closing = ClosingOf(quote.front());
  std::string quoted(1, quote.front());
  for (const char c : name) {
    quoted += c;
    if (c == closing) quoted += c;
  }
  return quoted + closing;
}

std::string QuoteTable(const TableName& table, std::string_view quote) {
  std::string quoted;
  for (const std::string* part : {&table.catalog, &table.schema, &table.name}) {
    if (part->empty()) continue;
    if (!quoted.empty()) quoted += '.';
    quoted += QuoteIdentifier(*part, quote);
  }
  return quoted;
}

std::optional<TableName> TakeTableName(std::string_view& text) {
  std::vector<std::string> parts;
  do {
    if (!parts.empty()) text.remove_prefix(1);
    std::optional<std::string> part = TakePart(text);
    if (!part || parts.size() == kMostParts) return std::nullopt;
    parts.push_back(std::move(*part));
  } while (!text.empty() && text.front() == '.');
  TableName table;
  table.name = std::move(parts.back());
  if (parts.size() > 1) table.schema = std::move(parts[parts.size() - 2]);
  if (parts.size() > 2) table.catalog = std::move(parts.front());
  return table;
}

}  // namespace zent::odbc
