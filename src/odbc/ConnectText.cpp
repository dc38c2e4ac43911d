#include "odbc/ConnectText.h"

#include <utility>

#include "base/Text.h"

namespace zent::odbc {
namespace {

constexpr std::size_t kShortestHidden = 4;
constexpr std::string_view kStars = "***";

/// Takes a value in braces from the start of `text`: "{a}}b}" is "a}b".
std::string TakeBraced(std::string_view& text) {
  std::string value;
  std::size_t at = 1;
  while (at < text.size()) {
    if (text[at] == '}') {
      if (at + 1 >= text.size() || text[at + 1] != '}') break;
      ++at;
    }
    value += text[at++];
  }
  text.remove_prefix(text.find(';', at) == std::string_view::npos ? text.size()
                                                                  : text.find(';', at));
  return value;
}

std::string TakeValue(std::string_view& text) {
  const std::string_view value = text.substr(0, text.find(';'));
  text.remove_prefix(value.size());
  return std::string(TrimBlanks(value));
}

std::string TakeAny(std::string_view& text) {
  return text.substr(0, 1) == "{" ? TakeBraced(text) : TakeValue(text);
}

/// Stars for the values of "PWD=" in `message`.
std::string HideAttributes(std::string_view message) {
  std::string hidden;
  while (true) {
    const std::size_t at = FindIgnoringCase(message, "PWD=");
    if (at == std::string_view::npos) return hidden.append(message);
    hidden.append(message.substr(0, at + 4)).append(kStars);
    message.remove_prefix(at + 4);
    TakeAny(message);
  }
}

}  // namespace

std::vector<ConnectAttribute> ParseConnectText(std::string_view text) {
  std::vector<ConnectAttribute> attributes;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of("=;");
    if (end == std::string_view::npos) break;
    const std::string_view name = TrimBlanks(text.substr(0, end));
    const bool has_value = text[end] == '=';
    text.remove_prefix(end + 1);
    if (!has_value) continue;
    const std::size_t start = text.find_first_not_of(' ');
    text.remove_prefix(start == std::string_view::npos ? text.size() : start);
    std::string value = TakeAny(text);
    if (!text.empty()) text.remove_prefix(1);
    attributes.push_back({std::string(name), std::move(value)});
  }
  return attributes;
}

std::string ConnectValue(std::string_view text, std::string_view name) {
  for (const ConnectAttribute& attribute : ParseConnectText(text)) {
    if (EqualsIgnoringCase(attribute.name, name)) return attribute.value;
  }
  return {};
}

std::string HidePassword(std::string_view message, std::string_view connect_text) {
  const std::string password = ConnectValue(connect_text, "PWD");
  std::string hidden = HideAttributes(message);
  if (password.size() < kShortestHidden) return hidden;
  return ReplaceAllIgnoringCase(hidden, password, kStars);
}

}  // namespace zent::odbc
