#include "fileops/Registration.h"

#include <fmt/format.h>

#include <cstdint>
#include <string_view>

#include "base/Text.h"
#include "driver/run/PathMacros.h"
#include "fileops/FileSteps.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::string_view kRegisterSwitch = "/RegServer";
constexpr std::string_view kTypeLibraryTool = "regtlib.exe";
constexpr std::string_view kLibraryTool = "regsvr32.exe";

/// A path argument in its two forms.
struct ComponentPath {
  std::string shown;  ///< without its macro; a relative path as it is written
  std::string full;   ///< what is meant by it
};

ComponentPath PathOf(const UpdateRun& run, const std::string& argument) {
  const std::string path = ExpandPath(run, argument);
  const bool is_bare = IsRelativePath(argument) && !argument.starts_with("$(");
  return {.shown = is_bare ? argument : path,
          .full = run.platform.files.FullPath(path).value_or(path)};
}

enum class ComponentKind { RegisteringProgram, Program, TypeLibrary, Library };

ComponentKind KindOf(const std::string& path) {
  const std::string name = ToLower(GetFileName(path));
  if (name == "korvo.exe" || name == "zentsearch.exe") return ComponentKind::RegisteringProgram;
  const std::string extension = ToLower(GetFileExtension(path));
  if (extension == "exe") return ComponentKind::Program;
  return extension == "tlb" ? ComponentKind::TypeLibrary : ComponentKind::Library;
}

Launch ProgramLaunch(const ComponentPath& program, std::string_view arguments) {
  return {.program = program.full,
          .arguments = std::string(arguments),
          .command_line =
              arguments.empty() ? program.shown : fmt::format("{} {}", program.shown, arguments)};
}

/// The folder of a registration tool: the Windows folder when the system folder does not hold it.
std::string ToolFolder(UpdateRun& run, std::string_view tool) {
  const std::string system_folder = GetSystemDir(run.platform.system);
  const bool in_system = FileExists(run.platform.files, fmt::format("{}{}", system_folder, tool));
  return in_system ? system_folder : GetWindowsDir(run.platform.system);
}

/// `shown_tool` is how the command line spells the tool.
Launch ToolLaunch(UpdateRun& run, std::string_view tool, std::string_view shown_tool,
                  std::string_view switches, const ComponentPath& component) {
  const std::string folder = ToolFolder(run, tool);
  return {
      .program = fmt::format("{}{}", folder, tool),
      .arguments = fmt::format("{} \"{}\"", switches, component.full),
      .command_line = fmt::format("{}{} {} \"{}\"", folder, shown_tool, switches, component.shown)};
}

Launch RegisterLaunch(UpdateRun& run, const ComponentPath& component) {
  switch (KindOf(component.full)) {
    case ComponentKind::RegisteringProgram:
      return ProgramLaunch(component, kRegisterSwitch);
    case ComponentKind::Program:
      return ProgramLaunch(component, {});
    case ComponentKind::TypeLibrary:
      return ToolLaunch(run, kTypeLibraryTool, kTypeLibraryTool, "-q", component);
    case ComponentKind::Library:
      break;
  }
  return ToolLaunch(run, kLibraryTool, kLibraryTool, "/s", component);
}

Launch UnregisterLaunch(UpdateRun& run, const ComponentPath& component) {
  switch (KindOf(component.full)) {
    case ComponentKind::RegisteringProgram:
      // Deliberately no unregistering: the application's own registration is refreshed.
      return ProgramLaunch(component, kRegisterSwitch);
    case ComponentKind::Program:
      return ProgramLaunch(component, {});
    case ComponentKind::TypeLibrary:
    case ComponentKind::Library:
      break;
  }
  return ToolLaunch(run, kLibraryTool, "regsvr32", "/s /u", component);
}

/// True when a tool finds the component; as the system loads libraries, ".dll" may be left out.
bool ComponentExists(UpdateRun& run, const std::string& path) {
  return FileExists(run.platform.files, path) || FileExists(run.platform.files, path + ".dll");
}

/// Starts what is to do the work; a tool that is nowhere is recorded by its name. A tool that runs
/// is silent about a component that is not there, so that is recorded here, too.
Result<std::uint32_t> StartFor(UpdateRun& run, const Launch& launch,
                               const ComponentPath& component) {
  const bool uses_tool = launch.program != component.full;
  Result<std::uint32_t> task = run.Start(launch);
  if (!uses_tool) return task;
  if (task.number() == kFileNotFound || task.number() == kPathNotFound) {
    run.Fail("the registration tool is missing: " + launch.program);
  } else if (task.ok() && !ComponentExists(run, component.full)) {
    run.Fail("the component is missing: " + component.full);
  }
  return task;
}

std::string Trimmed(const std::string& text) { return std::string(TrimBlanks(text)); }

}  // namespace

Status RegisterComponent(UpdateRun& run, const std::string& file, bool& quiet) {
  const ComponentPath component = PathOf(run, file);
  run.ShowMsg("Registering " + component.shown);
  const Result<std::uint32_t> task = StartFor(run, RegisterLaunch(run, component), component);
  if (task.ok()) return {};
  ReportUnlessQuiet(run, "Error Registering " + file, task.error(), quiet);
  return {};
}

Status UnregisterComponent(UpdateRun& run, const std::string& file, bool& quiet) {
  const ComponentPath component = PathOf(run, file);
  run.ShowMsg("Unregistering " + component.shown);
  const Result<std::uint32_t> task = StartFor(run, UnregisterLaunch(run, component), component);
  if (!task.ok()) {
    ReportUnlessQuiet(run, "Error Unregistering " + file, task.error(), quiet);
    return {};
  }
  // Kept: the Windows folder and the tool's name, also where a program was started instead.
  run.ShowMsg(fmt::format("{}regsvr32 /s /u \"{}\" (RetVal={})", GetWindowsDir(run.platform.system),
                          component.shown, task.value()));
  return {};
}

Status RunProgram(UpdateRun& run, const std::string& program, const std::string& arguments,
                  bool& quiet) {
  const ComponentPath path = PathOf(run, program);
  run.ShowMsg("Running " + path.shown);
  const std::string command_line = path.shown + " " + arguments;
  const Result<std::uint32_t> task =
      run.Start({.program = path.full, .arguments = arguments, .command_line = command_line});
  if (task.ok()) {
    run.ShowMsg(fmt::format("Running {} (RetVal={})", MaskPassword(command_line), task.value()));
  } else {
    ReportUnlessQuiet(run, "Error Running " + program, task.error(), quiet);
  }
  return {};
}

Status RegisterCommand(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> file = tokens.At(2);
  if (!file.ok()) return run.ReportError("Error Registering ", file.error());
  bool quiet = false;
  return RegisterComponent(run, Trimmed(file.value()), quiet);
}

Status UnregisterCommand(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> file = tokens.At(2);
  if (!file.ok()) return run.ReportError("Error Unregistering ", file.error());
  bool quiet = false;
  return UnregisterComponent(run, Trimmed(file.value()), quiet);
}

Status RunCommand(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> program = tokens.At(2);
  const Result<std::string> arguments = tokens.At(3);
  if (!program.ok()) return run.ReportError("Error Running ", program.error());
  if (!arguments.ok()) {
    return run.ReportError("Error Running " + program.value(), arguments.error());
  }
  bool quiet = false;
  return RunProgram(run, program.value(), arguments.value(), quiet);
}

}  // namespace zent
