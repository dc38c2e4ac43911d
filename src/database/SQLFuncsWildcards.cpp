#include <algorithm>
#include <vector>

#include "base/Text.h"
#include "database/SQLFuncs.h"
#include "database/SqlScanner.h"

namespace zent {

bool FindWildcards(std::string_view statement) {
  const std::vector<SqlStar> stars = FindStars(statement);
  return std::any_of(stars.begin(), stars.end(), [](const SqlStar& star) { return star.pattern; });
}

std::string TranslateWildcards(std::string_view statement) {
  std::string text(statement);
  if (!FindWildcards(statement)) return text;
  for (const SqlStar& star : FindStars(statement)) {
    if (!star.column_list) text[star.at] = '%';
  }
  return ReplaceAllIgnoringCase(text, "Count(%)", "Count(*)");
}

}  // namespace zent
