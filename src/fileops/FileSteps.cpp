#include "fileops/FileSteps.h"

#include "base/Text.h"
#include "driver/run/Messages.h"
#include "driver/run/PathMacros.h"
#include "lib/FuncLib.h"

namespace zent {

std::optional<CopyArguments> ReadCopyArguments(UpdateRun& run, const TokenList& tokens,
                                               bool quiet) {
  const Result<std::string> source = tokens.At(2);
  const Result<std::string> destination = tokens.At(3);
  if (source.ok() && destination.ok()) return CopyArguments{source.value(), destination.value()};
  ReportUnlessQuiet(run, std::string(kErrorCopying) + source.value_or(""), destination.error(),
                    quiet);
  return std::nullopt;
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
