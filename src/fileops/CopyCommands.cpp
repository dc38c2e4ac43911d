#include "fileops/CopyCommands.h"

#include <algorithm>
#include <array>

#include "base/Text.h"
#include "driver/run/PathBounds.h"
#include "driver/run/PathMacros.h"
#include "fileops/FileSteps.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr double kRetryPause = 5;  // seconds

/// Add-ins of the mail program, which holds them while it runs.
constexpr std::array<std::string_view, 4> kOutlookAddIns = {"KVONewMailCtrl.dll", "kvocf.dll",
                                                            "kvoolrd.dll", "zentbar.dll"};

bool IsOutlookAddIn(std::string_view source) {
  return std::any_of(kOutlookAddIns.begin(), kOutlookAddIns.end(), [&](std::string_view name) {
    return FindIgnoringCase(source, name) != std::string_view::npos;
  });
}

std::string Headline(const std::string& source) { return std::string(kErrorCopying) + source; }

/// Copies where no box but the plain one is asked for.
void CopyOnce(UpdateRun& run, const std::string& source, const std::string& from,
              const std::string& to) {
  const Status copied = run.platform.files.Copy(from, to);
  if (!copied.ok()) run.Report(Headline(source), copied.error());
}

}  // namespace

void CopyPackageFile(UpdateRun& run, const std::string& source, const std::string& destination,
                     bool quiet) {
  const std::optional<std::string> from = PackageSource(run, source);
  if (!from) return;
  const std::string to = ExpandDestination(run, source, destination);
  ClearAttributes(run, to);
  run.ShowMsg("Copying " + source + " to " + to);

  const RetryAdvice advice = IsOutlookAddIn(source) ? RetryAdvice::CloseOutlook : RetryAdvice::None;
  Status copied = run.platform.files.Copy(*from, to);
  while (copied.number() == kPermissionDenied && !quiet) {
    if (!AskToRetry(run, Headline(source), copied.error(), advice)) return;
    run.Pause(kRetryPause);
    copied = run.platform.files.Copy(*from, to);
  }
  if (!copied.ok()) ReportUnlessQuiet(run, Headline(source), copied.error(), quiet);
}

Status CopyFromPackage(UpdateRun& run, const TokenList& tokens) {
  const std::optional<CopyArguments> arguments = ReadCopyArguments(run, tokens);
  if (!arguments) return {};
  CopyPackageFile(run, arguments->source, arguments->destination, /*quiet=*/false);
  return {};
}

Status CopyFromPackageIfMissing(UpdateRun& run, const TokenList& tokens) {
  const std::optional<CopyArguments> arguments = ReadCopyArguments(run, tokens);
  if (!arguments) return {};
  const std::optional<std::string> from = PackageSource(run, arguments->source);
  if (!from) return {};

  const std::string to = ExpandDestination(run, arguments->source, arguments->destination);
  if (PlainFileExists(run.platform.files, to)) {
    run.Skip("already there: " + to);
    return {};
  }
  // The message names the destination only, unlike that of "copy"; it is kept so.
  run.ShowMsg("Copying " + to);
  CopyOnce(run, arguments->source, *from, to);
  return {};
}

Status CopyOnMachine(UpdateRun& run, const TokenList& tokens) {
  const std::optional<CopyArguments> arguments = ReadCopyArguments(run, tokens);
  if (!arguments) return {};
  const std::string& source = arguments->source;
  const std::string from = ExpandPath(run, source);
  const std::string to = DestinationOnMachine(run, source, arguments->destination);
  ClearAttributes(run, to);
  run.ShowMsg("Copying " + from + " to " + to);

  const Status copied = run.platform.files.Copy(from, to);
  if (copied.ok()) return {};
  if (copied.number() != kPermissionDenied) {
    return run.ReportError(Headline(source), copied.error());
  }
  if (AskToRetry(run, Headline(source), copied.error())) CopyOnce(run, source, from, to);
  return {};
}

Status CopyOnMachineIfMissing(UpdateRun& run, const TokenList& tokens) {
  const std::optional<CopyArguments> arguments = ReadCopyArguments(run, tokens);
  if (!arguments) return {};
  const std::string from = ExpandPath(run, arguments->source);
  const std::string to = DestinationOnMachine(run, arguments->source, arguments->destination);
  if (PlainFileExists(run.platform.files, to)) {
    run.Skip("already there: " + to);
    return {};
  }
  if (!PlainFileExists(run.platform.files, from)) {
    run.Skip("no source: " + from);
    return {};
  }
  run.ShowMsg("Copying " + from + " to " + to);
  CopyOnce(run, arguments->source, from, to);
  return {};
}

}  // namespace zent
