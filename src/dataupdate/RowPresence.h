#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "base/Status.h"
#include "database/port/OpenedDatabase.h"

namespace zent {

/// Tells whether a table has a row with given texts in some of its fields, for as many questions as
/// there are rows to bring in. An index over just these fields answers each; a file's table without
/// one is read once, and from then on the answer comes from memory, but for a text of more than 255
/// characters that begins like one that is there. A server is asked each time.
class RowPresence {
 public:
  /// `fields` of `table` in `database`, which outlives this.
  static Result<RowPresence> Of(OpenedDatabase& database, std::string_view table,
                                std::vector<std::string> fields);

  /// Whether `statement` gives a row: it asks for the rows whose fields are equal to `values`, one
  /// for each. Without values it says something else, as a quote that is not doubled makes it, and
  /// is always run, to fail as it does.
  Result<bool> Has(const std::string& statement,
                   const std::optional<std::vector<std::string>>& values);

  /// Takes notice of a row that was added.
  void Added(const std::vector<std::string>& values);

 private:
  RowPresence(OpenedDatabase& database, std::vector<std::string> fields)
      : database_(&database), fields_(std::move(fields)) {}

  Status ReadAll(std::string_view table);
  /// What the beginnings of these texts share with all that the database holds equal to them.
  std::string KeyOf(const std::vector<std::string>& values) const;
  void Keep(const std::vector<std::string>& values);

  OpenedDatabase* database_;
  std::vector<std::string> fields_;
  bool in_memory_ = false;
  std::unordered_set<std::string> whole_;       ///< keys of rows whose texts they take whole
  std::unordered_set<std::string> beginnings_;  ///< of rows with a text that is longer
};

}  // namespace zent
