#include "jet/sql/syntax/SyntaxError.h"

#include <fmt/format.h>

#include "base/Text.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {

RuntimeError SyntaxError(std::string_view statement, std::size_t at, std::string_view reason) {
  constexpr std::size_t kShown = 40;
  std::string_view piece = FirstCharacters(statement.substr(at), kShown);
  if (piece.empty()) {
    const std::size_t all = CountCharacters(statement);
    piece = statement.substr(SkipCharacters(statement, all > kShown ? all - kShown : 0));
  }
  const std::size_t position = CountCharacters(statement.substr(0, at)) + 1;
  return JetErrorBecause(kSyntaxError, fmt::format("character {}: {}", position, reason),
                         TrimBlanks(piece));
}

}  // namespace zent::jet
