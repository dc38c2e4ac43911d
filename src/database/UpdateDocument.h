#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Status.h"
#include "database/Structure.h"
#include "driver/run/UpdateRun.h"

namespace zent {

/// What an update document asks for.
struct UpdateDocument {
  std::string version;        ///< without what stands behind a "-" in the fourth place
  std::string server_script;  ///< its lines end with CR LF; empty for none
  std::string table;          ///< empty when the document names none
  std::vector<NewField> fields;
  /// The error of the first field that is not whole; `fields` are those before it. A field matters
  /// only to a database that is to get it.
  Status fields_read = {};
};

/// Reads the document. Nothing when it cannot be loaded: the command is recorded as failed then.
/// Error: it lacks its version.
Result<std::optional<UpdateDocument>> ReadUpdateDocument(UpdateRun& run, const std::string& path);

/// A version as it is compared: "3.6-2" is "3.6".
std::string ComparableVersion(std::string_view version);

}  // namespace zent
