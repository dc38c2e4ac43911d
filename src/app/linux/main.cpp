#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

#include "app/HostFile.h"
#include "app/Program.h"
#include "app/linux/Desktop.h"
#include "app/linux/EmptyMachine.h"
#include "app/linux/PrefixMachine.h"
#include "jet/host/posix/PosixStorage.h"
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
  jet::Storage& databases() override { return *databases_; }
  std::string ComputerName() override;
  std::unique_ptr<UpdateWindow> MakeScreen(WindowChoice choice, bool scripted) override;
  Result<std::string> ReadInput() override { return ReadAll(std::cin); }
  void Show(const std::string& text) override { std::cout << text; }
  void Complain(const std::string& text) override { std::cerr << "zentupdate: " << text << "\n"; }
  std::ostream* Notes() override { return &std::cerr; }

 private:
  /// The folder of the machine that the line means; of an empty one for a conversion without.
  Result<std::filesystem::path> FolderFor(const CommandLine& line);

  std::filesystem::path package_;
  EmptyMachine empty_machine_;
  jet::PosixStorage host_files_;
  jet::Storage* databases_ = nullptr;
  std::unique_ptr<DesktopWindows> windows_;
  std::unique_ptr<PrefixMachine> machine_;
  PosixConsoleInput input_{STDIN_FILENO};
};

std::string LinuxHost::ComputerName() {
  std::array<char, 256> name = {};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "localhost";
}

Result<std::filesystem::path> LinuxHost::FolderFor(const CommandLine& line) {
  if (!line.conversion || !line.machine.empty()) return MachineFolder(line);
  if (const Status made = empty_machine_.Make(); !made.ok()) return made.error();
  return empty_machine_.folder();
}

std::optional<Refusal> LinuxHost::OpenMachine(const CommandLine& line) {
  package_ = std::filesystem::absolute(line.package.empty() ? "." : line.package);
  if (!std::filesystem::is_directory(package_)) {
    return Refusal{ExitCode::NoPackage, "no package folder: " + package_.string()};
  }
  const Result<std::filesystem::path> folder = FolderFor(line);
  if (!folder.ok()) {
    return Refusal{ExitCode::Failed, "temporary folder: " + folder.error().description};
  }
  if (folder.value().empty()) {
    return Refusal{ExitCode::WrongCommandLine, "no machine: use --machine, or set WINEPREFIX"};
  }
  windows_ = MakeDesktopWindows();
  Result<std::unique_ptr<PrefixMachine>> machine =
      PrefixMachine::Open({.folder = folder.value(),
                           .package = package_,
                           .follow_profile_links = line.follow_profile_links,
                           .path_list = Environment("PATH"),
                           .windows = windows_.get()});
  if (!machine.ok()) {
    return Refusal{CodeOfMachineError(machine.error()), "machine: " + machine.error().description};
  }
  machine_ = std::move(machine.value());
  databases_ = line.conversion ? &host_files_ : &machine_->databases();
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
