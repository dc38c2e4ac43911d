#include "fileops/Shortcuts.h"

#include <string>
#include <string_view>

#include "driver/run/PathMacros.h"
#include "lib/FuncLib.h"
#include "lib/SetUpFuncs.h"

namespace zent {
namespace {

constexpr std::string_view kProgramGroup = "Zent";
constexpr std::string_view kStartMenu = "..";
constexpr std::string_view kDesktop = R"(..\..\Desktop)";
constexpr std::string_view kShortcutHeadline = "Error Creating Shell Link ";

struct Shortcut {
  std::string name;
  std::string target;
};

/// The arguments of both commands, the target expanded.
Result<Shortcut> ShortcutOf(const UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> name = tokens.At(2);
  const Result<std::string> target = tokens.At(3);
  if (!name.ok()) return name.error();
  if (!target.ok()) return target.error();
  return Shortcut{.name = name.value(), .target = ExpandPath(run, target.value())};
}

Status ReportMissingArgument(UpdateRun& run, const TokenList& tokens, const RuntimeError& error) {
  return run.ReportError(std::string(kShortcutHeadline) + tokens.At(2).value_or(""), error);
}

void MakeShortcut(UpdateRun& run, const Shortcut& shortcut, std::string_view folder,
                  std::string parent_folder) {
  const Status made =
      CreateShellLink(run.platform, shortcut.target, folder, {}, shortcut.name, parent_folder);
  if (!made.ok()) {
    run.Fail("no shortcut in " + parent_folder + "\\" + std::string(folder) + ": " +
             made.error().description);
  }
}

/// A shortcut is made whether or not it leads anywhere.
void RecordMissingTarget(UpdateRun& run, const std::string& target) {
  FileSystem& files = run.platform.files;
  if (FileExists(files, target) || FolderExists(files, target)) return;
  run.Warn("the target of the shortcut is missing: " + target);
}

}  // namespace

Status CreateGroupShortcut(UpdateRun& run, const TokenList& tokens) {
  const Result<Shortcut> shortcut = ShortcutOf(run, tokens);
  if (!shortcut.ok()) return ReportMissingArgument(run, tokens, shortcut.error());

  run.ShowMsg("Creating Shell Link " + shortcut.value().name);
  MakeShortcut(run, shortcut.value(), kProgramGroup, {});
  RecordMissingTarget(run, shortcut.value().target);
  return {};
}

Status CreateDesktopShortcut(UpdateRun& run, const TokenList& tokens) {
  const Result<Shortcut> shortcut = ShortcutOf(run, tokens);
  if (!shortcut.ok()) return ReportMissingArgument(run, tokens, shortcut.error());

  run.ShowMsg("Creating desktop shortcut to " + shortcut.value().name);
  MakeShortcut(run, shortcut.value(), kDesktop, std::string(kProgramsMacro));
  MakeShortcut(run, shortcut.value(), kStartMenu, std::string(kProgramsMacro));
  RecordMissingTarget(run, shortcut.value().target);
  return {};
}

}  // namespace zent
