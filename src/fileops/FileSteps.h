#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

/// What the file commands have in common: their arguments, and how they report.
namespace zent {

/// The subject follows: the source as written, or the file.
inline constexpr std::string_view kErrorCopying = "Error Copying ";

// --- Arguments ---

/// The arguments of a copy, as written.
struct CopyArguments {
  std::string source;
  std::string destination;
};

/// Tokens 2 and 3 of a copy command. Nothing when one of them is missing: that is reported then,
/// with a box unless `quiet`.
std::optional<CopyArguments> ReadCopyArguments(UpdateRun& run, const TokenList& tokens,
                                               bool quiet = false);

/// Where a file of the machine goes when a command names `destination`: a folder macro gets the
/// file's name behind it. Of a `source` that is a full path or begins with a macro only the last
/// part is that name, for two full paths behind one another name no place.
std::string DestinationOnMachine(const UpdateRun& run, std::string_view source,
                                 std::string_view destination);

/// Makes the attributes of a file normal, so that it can be replaced. A missing file is no error,
/// nor is one that cannot be changed: what follows says so.
void ClearAttributes(UpdateRun& run, std::string_view path);

// --- Reports ---

/// UpdateRun::Report; with `quiet` without the box.
void ReportUnlessQuiet(UpdateRun& run, std::string_view headline, const RuntimeError& error,
                       bool quiet);

/// What a box about a file in use has below its three lines.
enum class RetryAdvice { None, CloseOutlook };

/// Asks whether a step whose file is in use is to be tried again. On Cancel ErrorOccurred is set
/// and the command recorded as failed; the result is false.
bool AskToRetry(UpdateRun& run, std::string_view headline, const RuntimeError& error,
                RetryAdvice advice = RetryAdvice::None);

}  // namespace zent
