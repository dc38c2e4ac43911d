#include "fileops/FileSteps.h"

#include "base/CaseFold.h"
#include "base/Text.h"
#include "driver/run/Messages.h"
#include "driver/run/PathMacros.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

/// True when the ".." of a relative path ever lead above where it starts. A text, not the disk, is
/// asked: above the root of a drive there is nothing, but a package need not lie at one.
bool ClimbsAboveItsStart(std::string_view path) {
  int depth = 0;
  while (!path.empty() && depth >= 0) {
    const std::size_t end = MinOf(path.find_first_of("\\/"), path.size());
    const std::string_view name = path.substr(0, end);
    path.remove_prefix(MinOf(end + 1, path.size()));
    if (name == "..") {
      --depth;
    } else if (!name.empty() && name != ".") {
      ++depth;
    }
  }
  return depth < 0;
}

/// True when `path` lies in `folder`. What has no full form leads nowhere, not outside.
bool LiesIn(FileSystem& files, std::string_view path, std::string_view folder) {
  const Result<std::string> full_path = files.FullPath(path);
  const Result<std::string> full_folder = files.FullPath(folder);
  if (!full_path.ok() || !full_folder.ok()) return true;
  return FoldName(full_path.value()).starts_with(FoldName(AddBackslash(full_folder.value())));
}

}  // namespace

std::optional<CopyArguments> ReadCopyArguments(UpdateRun& run, const TokenList& tokens,
                                               bool quiet) {
  const Result<std::string> source = tokens.At(2);
  const Result<std::string> destination = tokens.At(3);
  if (source.ok() && destination.ok()) return CopyArguments{source.value(), destination.value()};
  ReportUnlessQuiet(run, std::string(kErrorCopying) + source.value_or(""), destination.error(),
                    quiet);
  return std::nullopt;
}

std::optional<std::string> PackageSource(UpdateRun& run, const std::string& source) {
  std::string path = run.state.CurrDir + source;
  const bool is_outside =
      ClimbsAboveItsStart(source) || !LiesIn(run.platform.files, path, run.state.CurrDir);
  if (is_outside && !run.Tolerate("source outside the package folder: " + source)) {
    return std::nullopt;
  }
  return path;
}

std::string DestinationOnMachine(const UpdateRun& run, std::string_view source,
                                 std::string_view destination) {
  const bool is_plain_name = IsRelativePath(source) && !source.starts_with("$(");
  return ExpandDestination(run, is_plain_name ? std::string(source) : GetFileName(source),
                           destination);
}

void ClearAttributes(UpdateRun& run, std::string_view path) {
  static_cast<void>(run.platform.files.SetAttributes(path, kAttributeNormal));
}

void ReportUnlessQuiet(UpdateRun& run, std::string_view headline, const RuntimeError& error,
                       bool quiet) {
  if (quiet) {
    run.FailStep(error);
  } else {
    run.Report(headline, error);
  }
}

bool AskToRetry(UpdateRun& run, std::string_view headline, const RuntimeError& error,
                RetryAdvice advice) {
  std::string text = ErrorText(headline, error);
  if (advice == RetryAdvice::CloseOutlook) {
    text += kLineBreak;
    text += kLineBreak;
    text += "Please close Outlook and Retry.";
  }
  const Answer answer = run.Ask({.title = {}, .text = text, .buttons = BoxButtons::RetryCancel});
  if (answer == Answer::Retry) return true;
  run.FailStep(error);
  return false;
}

}  // namespace zent
