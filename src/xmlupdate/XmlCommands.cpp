#include "xmlupdate/XmlCommands.h"

#include <optional>
#include <string>

#include "driver/run/PathBounds.h"
#include "xmlupdate/ExtraFields.h"
#include "xmlupdate/modMergeXMLs.h"

namespace zent {

Status UpdateXmlFiles(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> argument = tokens.At(2);
  if (!argument.ok()) return argument.error();
  const std::optional<std::string> description = UpdateDescription(run, argument.value());
  if (!description) return {};

  const bool failed_before = run.state.xml_load_failed;
  run.ShowMsg("");
  run.ShowMsg("Updating XML files.");
  Status merged = MergeXMLs(run, run.state.DataPath, *description);
  if (!merged.ok() || run.Refused()) return merged;

  // An assignment, not an "or": installations rely on either side of it.
  run.state.ErrorOccurred = run.state.xml_load_failed;
  if (failed_before) run.Fail("an XML file failed to load earlier in this run");
  return {};
}

Status UpdateExtraFields(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> argument = tokens.At(2);
  if (!argument.ok()) return argument.error();
  const std::optional<std::string> description = UpdateDescription(run, argument.value());
  if (!description) return {};
  return UpdateXFields(run, *description);
}

}  // namespace zent
