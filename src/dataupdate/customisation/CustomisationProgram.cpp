#include "dataupdate/customisation/CustomisationProgram.h"

#include <fmt/format.h>

#include <memory>
#include <optional>

#include "base/Text.h"
#include "dataupdate/customisation/QuoteArgument.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kStep{50};

/// The backslash of a drive's root stays: without it the drive's current folder would be meant.
std::string_view WithoutLastBackslash(std::string_view folder) {
  const bool is_root = folder.ends_with(":\\");
  return folder.ends_with('\\') && !is_root ? folder.substr(0, folder.size() - 1) : folder;
}

std::string ArgumentsFor(const CustomisationTask& task) {
  return fmt::format("{} {} {}", QuoteArgument(task.database),
                     QuoteArgument(WithoutLastBackslash(task.customize_folder)),
                     QuoteArgument(WithoutLastBackslash(task.temp_folder)));
}

/// What a program has written, as a description: its lines with CR LF between them, without other
/// controls, without blank ends and without passwords.
std::string Described(std::string_view error_text) {
  std::string text;
  for (const char c : error_text) {
    const bool is_control = static_cast<unsigned char>(c) < ' ' && c != '\t';
    if (c == '\n') text += kLineBreak;
    if (!is_control) text += c;
  }
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return {};
  return MaskPassword(text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1));
}

RuntimeError OwnError(const ProgramEnd& end) {
  std::string description = Described(end.error_text);
  if (description.empty()) {
    description = fmt::format("{} has ended with an error", kCustomisationProgram);
  }
  return {.number = static_cast<int>(end.exit_code), .description = std::move(description)};
}

}  // namespace

std::string CustomisationProgram::Path() const {
  return run_.state.AppPath + std::string(kCustomisationProgram);
}

Result<CustomisationOutcome> CustomisationProgram::Apply(const CustomisationTask& task) {
  const std::string arguments = ArgumentsFor(task);
  const auto program =
      run_.StartWaited({.program = Path(),
                        .arguments = arguments,
                        .command_line = fmt::format("{} {}", QuoteArgument(Path()), arguments)});
  if (!program.ok()) {
    const int number = program.number();
    // Also a file that is no program of this system is no component.
    const bool is_missing =
        number == kFileNotFound || number == kPathNotFound || number == kInvalidProcedureCall;
    return StandardError(is_missing ? kCannotCreateObject : number, Path());
  }

  const Result<ProgramEnd> end = WaitForEnd(*program.value());
  if (!end.ok()) return end.error();
  if (end.value().exit_code == kCustomisationNotOpened) {
    const std::string why = Described(end.value().error_text);
    if (!why.empty()) run_.Note(why);
    return CustomisationOutcome::DatabaseNotOpened;
  }
  if (end.value().exit_code != kCustomisationDone) return OwnError(end.value());
  return CustomisationOutcome::Applied;
}

Result<ProgramEnd> CustomisationProgram::WaitForEnd(RunningProgram& program) {
  const milliseconds latest = run_.platform.clock.Ticks() + kCustomisationLimit;
  for (;;) {
    const Result<std::optional<ProgramEnd>> ended = program.Wait(kStep);
    if (!ended.ok()) return ended.error();
    if (ended.value()) return *ended.value();
    run_.window.ProcessEvents(milliseconds(0));
    if (run_.window.CloseRequested()) return LeftRunning("the update was closed");
    if (run_.platform.clock.Ticks() >= latest) {
      return LeftRunning(fmt::format("no end within {} minutes", kCustomisationLimit.count()));
    }
  }
}

RuntimeError CustomisationProgram::LeftRunning(std::string_view reason) const {
  return StandardError(kAutomationError, fmt::format("{}, {} is still at work", reason, Path()));
}

}  // namespace zent
