#include "database/AdoConnection.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

#include "base/Text.h"

namespace zent {

std::string AdoConnectionText(std::string_view path, std::string_view password) {
  return fmt::format(
      "Provider=Microsoft.Jet.OLEDB.4.0;Data Source={};Jet OLEDB:Database Password = {}", path,
      password);
}

AccessOpen AccessOpenOf(std::string_view connection_text) {
  AccessOpen request;
  for (std::size_t at = 0; at < connection_text.size();) {
    const std::size_t end = std::min(connection_text.find(';', at), connection_text.size());
    const std::string_view pair = connection_text.substr(at, end - at);
    at = end + 1;
    const std::size_t equals = pair.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view key = TrimBlanks(pair.substr(0, equals));
    const std::string value(TrimBlanks(pair.substr(equals + 1)));
    if (EqualsIgnoringCase(key, "Data Source")) request.path = value;
    if (EqualsIgnoringCase(key, "Jet OLEDB:Database Password")) {
      request.connect = value.empty() ? "" : ";pwd=" + value;
    }
  }
  return request;
}

}  // namespace zent
