#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

#include "app/Program.h"
#include "app/linux/Desktop.h"
#include "app/linux/PrefixMachine.h"
#include "ui/console/ConsoleWindow.h"
#include "ui/console/posix/PosixConsoleInput.h"

namespace zent {
namespace {

std::string Environment(const char* name) {
  const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): one thread
  return value == nullptr ? "" : value;
}

std::filesystem::path MachineFolder(const CommandLine& line) {
  if (!line.machine.empty()) return std::filesystem::absolute(line.machine);
  if (const std::string prefix = Environment("WINEPREFIX"); !prefix.empty()) return prefix;
  const std::string home = Environment("HOME");
  return home.empty() ? std::filesystem::path() : std::filesystem::path(home) / ".wine";
}

/// The exit code of a machine that could not be opened.
ExitCode CodeOfMachineError(const RuntimeError& error) {
  if (error.number == kPathNotFound || error.number == kFileNotFound) {
    return ExitCode::WrongCommandLine;
  }
  return error.number == kPermissionDenied ? ExitCode::MachineInUse : ExitCode::Failed;
}

/// This system: the machine is a folder, words go to the terminal.
class LinuxHost final : public ProgramHost {
 public:
  ProgramTexts Texts() override {
    return {.parts = "machine: Wine prefix; " + WindowPart(),
            .default_package = "the current folder"};
  }
  std::optional<Refusal> OpenMachine(const CommandLine& line) override;
  const Platform& platform() override { return machine_->platform(); }
  const std::string& package() override { return machine_->package(); }
  std::string ShownPackage() override { return package_.string(); }
  std::unique_ptr<UpdateWindow> MakeScreen(WindowChoice choice, bool scripted) override;
  void Show(const std::string& text) override { std::cout << text; }
  void Complain(const std::string& text) override { std::cerr << "zentupdate: " << text << "\n"; }
  std::ostream* Notes() override { return &std::cerr; }

 private:
  std::filesystem::path package_;
  std::unique_ptr<DesktopWindows> windows_;
  std::unique_ptr<PrefixMachine> machine_;
  PosixConsoleInput input_{STDIN_FILENO};
};

std::optional<Refusal> LinuxHost::OpenMachine(const CommandLine& line) {
  package_ = std::filesystem::absolute(line.package.empty() ? "." : line.package);
  if (!std::filesystem::is_directory(package_)) {
    return Refusal{ExitCode::NoPackage, "no package folder: " + package_.string()};
  }
  const std::filesystem::path folder = MachineFolder(line);
  if (folder.empty()) {
    return Refusal{ExitCode::WrongCommandLine, "no machine: use --machine, or set WINEPREFIX"};
  }
  windows_ = MakeDesktopWindows();
  Result<std::unique_ptr<PrefixMachine>> machine =
      PrefixMachine::Open({.folder = folder,
                           .package = package_,
                           .follow_profile_links = line.follow_profile_links,
                           .path_list = Environment("PATH"),
                           .windows = windows_.get()});
  if (!machine.ok()) {
    return Refusal{CodeOfMachineError(machine.error()), "machine: " + machine.error().description};
  }
  machine_ = std::move(machine.value());
  return std::nullopt;
}

std::unique_ptr<UpdateWindow> LinuxHost::MakeScreen(WindowChoice choice, bool scripted) {
  if (choice != WindowChoice::Console) {
    std::unique_ptr<UpdateWindow> window = MakeGraphicalWindow();
    if (window != nullptr || choice == WindowChoice::Window) return window;
  }
  const bool interactive = !scripted && ::isatty(STDIN_FILENO) != 0;
  return std::make_unique<ConsoleWindow>(input_, std::cout, interactive);
}

ExitCode Main(int argc, const char* const* argv) {
  // A terminal that goes away must not end a run half-way.
  std::signal(SIGPIPE, SIG_IGN);  // NOLINT(cert-err33-c): there is nothing to do about it
  LinuxHost host;
  return RunProgram(host, argc, argv);
}

}  // namespace
}  // namespace zent

int main(int argc, char** argv) {
  try {
    return zent::NativeExitCode(zent::Main(argc, argv));
  } catch (const std::exception& defect) {
    std::cerr << "zentupdate: " << defect.what() << "\n";
    return zent::NativeExitCode(zent::ExitCode::Failed);
  }
}
