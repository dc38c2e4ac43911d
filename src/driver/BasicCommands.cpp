#include "driver/BasicCommands.h"

#include <array>

#include "base/Text.h"
#include "driver/run/PathMacros.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

/// True for a file name alone, without macro, drive or folder.
bool IsBareName(std::string_view path) {
  return path.substr(0, 2) != "$(" && path.find_first_of("\\/:") == std::string_view::npos;
}

}  // namespace

Status ShowText(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> text = tokens.At(2);
  if (!text.ok()) return text.error();
  run.ShowMsg(StripQuotes(text.value()));
  return {};
}

Status WaitSeconds(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> seconds = tokens.At(2);
  if (!seconds.ok()) return seconds.error();
  run.Pause(LeadingNumber(seconds.value()));
  return {};
}

Status WriteSetting(UpdateRun& run, const TokenList& tokens) {
  std::array<std::string, 4> arguments;  // file, section, key, value
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    Result<std::string> token = tokens.At(i + 2);
    if (!token.ok()) return token.error();
    arguments.at(i) = std::move(token.value());
  }
  const auto& [file, section, key, value] = arguments;

  const std::string path = IsBareName(file) ? file : ExpandPath(run, file);
  const Status written = WriteIniValue(run.platform, path, section, key, value);
  if (!written.ok()) run.Fail(path + ": " + written.error().description);
  return {};
}

}  // namespace zent
