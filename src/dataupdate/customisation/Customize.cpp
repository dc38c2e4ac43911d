#include "dataupdate/customisation/Customize.h"

#include "dataupdate/customisation/CustomisationProgram.h"
#include "driver/run/Messages.h"
#include "driver/run/PathBounds.h"
#include "driver/run/PathMacros.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::string_view kConnectTextStart = "DSN=";

std::string CustomizeFolder(const UpdateRun& run) { return run.state.DataPath + "Customize\\"; }

bool IsCustomised(const UpdateRun& run) {
  return FileExists(run.platform.files, CustomizeFolder(run) + "Customize.ini");
}

bool IsConnectText(std::string_view database) { return database.starts_with(kConnectTextStart); }

Status ReportFailure(UpdateRun& run, const RuntimeError& error) {
  run.ShowMsg(ErrorText("Error customizing Korvo ", error));
  run.FailStep(error);
  return {};
}

Status ReportUnopened(UpdateRun& run, const std::string& database) {
  const std::string shown = MaskPassword(database);
  run.ShowMsg("Error Customizing Korvo - could not open database " + shown);
  run.state.ErrorOccurred = true;
  run.Fail("could not open database " + shown);
  return {};
}

Status Run(UpdateRun& run, const TokenList& tokens, bool unless_customised) {
  const Result<std::string> argument = tokens.At(2);
  if (!argument.ok()) return ReportFailure(run, argument.error());
  const std::string database = CustomisedDatabase(run, argument.value());
  const bool is_touched = !unless_customised || !IsCustomised(run);
  if (is_touched && !IsConnectText(database) && !LiesInKnownFolder(run, database) &&
      !run.Tolerate("database outside the known folders: " + argument.value())) {
    return {};
  }
  CustomisationProgram component(run);
  return Customize(run, component, database, unless_customised);
}

}  // namespace

Status Customize(UpdateRun& run, CustomisationComponent& component, const std::string& database,
                 bool unless_customised) {
  const std::string folder = CustomizeFolder(run);
  if (unless_customised && IsCustomised(run)) {
    run.Skip(folder + "Customize.ini is there");
    return {};
  }
  const Result<CustomisationOutcome> outcome =
      component.Apply({.database = database,
                       .customize_folder = folder,
                       .temp_folder = run.state.AppPath + "Temp\\"});
  if (!outcome.ok()) return ReportFailure(run, outcome.error());
  if (outcome.value() == CustomisationOutcome::Applied) return {};
  return ReportUnopened(run, database);
}

std::string CustomisedDatabase(const UpdateRun& run, const std::string& argument) {
  if (IsConnectText(argument)) return argument;
  const bool is_name = argument.empty() || IsRelativePath(argument);
  const bool has_macro = argument.starts_with("$(");
  return is_name && !has_macro ? run.state.DataPath + argument : ExpandPath(run, argument);
}

Status RunCustomisation(UpdateRun& run, const TokenList& tokens) { return Run(run, tokens, false); }

Status RunCustomisationOnce(UpdateRun& run, const TokenList& tokens) {
  return Run(run, tokens, true);
}

}  // namespace zent
