#include "fileops/CopyAndRegister.h"

#include "base/Text.h"
#include "driver/run/PathMacros.h"
#include "fileops/CopyCommands.h"
#include "fileops/FileSteps.h"
#include "fileops/Registration.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

/// Copies, and registers what could be copied.
Status CopyThenRegister(UpdateRun& run, const std::string& source, const std::string& destination,
                        bool quiet) {
  CopyPackageFile(run, source, destination, quiet);
  if (run.Refused()) return {};
  if (quiet) run.state.ErrorOccurred = false;
  if (run.state.ErrorOccurred) {
    run.Fail("not registered: " + destination);
    return {};
  }
  return RegisterComponent(run, destination, quiet);
}

}  // namespace

Status CopyAndRegister(UpdateRun& run, const TokenList& tokens) {
  const std::string keyword = ToLower(TrimBlanks(tokens.At(1).value_or("")));
  bool quiet = keyword != "cr" && keyword != "ccr";

  const std::optional<CopyArguments> arguments = ReadCopyArguments(run, tokens, quiet);
  Status done;
  if (arguments) {
    const auto& [source, destination] = *arguments;
    const std::string to = ExpandDestination(run, source, destination);
    if (keyword == "ccr" && PlainFileExists(run.platform.files, to)) {
      run.ShowMsg("Already exist, skipping: " + to);
      run.Skip("already there: " + to);
      return {};
    }
    done = CopyThenRegister(run, source, to, quiet);
  }
  // A refusal by a strict run is no error of the command: nothing forgets it.
  if (quiet && !run.Refused()) run.state.ErrorOccurred = false;
  return done;
}

}  // namespace zent
