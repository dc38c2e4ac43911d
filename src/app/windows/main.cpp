#include <windows.h>

#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/Program.h"
#include "app/windows/ComputerName.h"
#include "app/windows/HostFolders.h"
#include "app/windows/LibrarySearch.h"
#include "app/windows/Terminal.h"
#include "app/windows/Win32Machine.h"
#include "jet/host/win32/Win32Storage.h"
#include "platform/win32/WideText.h"
#include "ui/console/ConsoleWindow.h"
#include "ui/console/win32/HandleInput.h"
#include "ui/console/win32/HandleOutput.h"
#include "ui/win32/Win32UpdateWindow.h"

namespace zent {
namespace {

/// This system: the machine is the one that the program runs on; words go to the caller's console,
/// or into a message box.
class WindowsHost final : public ProgramHost {
 public:
  /// `alone`: nobody is there to close a message box.
  explicit WindowsHost(bool alone) : alone_(alone) {}

  ProgramTexts Texts() override {
    return {.parts = "machine: this one; window: Windows",
            .default_package = "the folder of the program",
            .takes_machine = false};
  }
  std::optional<Refusal> OpenMachine(const CommandLine& line) override;
  const Platform& platform() override { return machine_->platform(); }
  const std::string& package() override { return machine_->package(); }
  std::string ShownPackage() override { return machine_->package(); }
  jet::Storage& databases() override { return databases_; }
  std::string ComputerName() override { return zent::ComputerName(); }
  std::unique_ptr<UpdateWindow> MakeScreen(WindowChoice choice, bool scripted) override;
  Result<std::string> ReadInput() override;
  void Show(const std::string& text) override;
  void Complain(const std::string& text) override;
  std::ostream* Notes() override;

 private:
  void ShowBox(const std::string& text, UINT icon) const;

  bool alone_;
  Terminal terminal_;
  std::optional<HandleInput> input_;
  std::optional<HandleOutput> output_;
  std::optional<HandleOutput> notes_;
  std::unique_ptr<Win32Machine> machine_;
  jet::Win32Storage databases_;
};

std::optional<Refusal> WindowsHost::OpenMachine(const CommandLine& line) {
  const std::string package = line.conversion        ? FullFolder(".")
                              : line.package.empty() ? ProgramFolder()
                                                     : FullFolder(line.package);
  if (!IsFolder(package)) return Refusal{ExitCode::NoPackage, "no package folder: " + package};
  Result<std::unique_ptr<Win32Machine>> machine = Win32Machine::Open(AnsiFolder(package));
  if (machine.ok()) {
    machine_ = std::move(machine.value());
    return std::nullopt;
  }
  const RuntimeError& error = machine.error();
  if (error.number == kPermissionDenied) {
    return Refusal{ExitCode::MachineInUse, "machine: " + error.description};
  }
  return Refusal{ExitCode::NoPackage, "package folder " + package + ": " + error.description};
}

std::unique_ptr<UpdateWindow> WindowsHost::MakeScreen(WindowChoice choice, bool scripted) {
  if (choice != WindowChoice::Console && HasDesktop()) return std::make_unique<Win32UpdateWindow>();
  if (choice == WindowChoice::Window) return nullptr;
  if (scripted) {
    terminal_.JoinCaller();
  } else {
    terminal_.Open();
  }
  input_.emplace(terminal_.input());
  output_.emplace(terminal_.output());
  return std::make_unique<ConsoleWindow>(*input_, *output_, !scripted && input_->IsConsole());
}

Result<std::string> WindowsHost::ReadInput() {
  constexpr std::size_t kLimit = 16U << 20U;  // bytes
  terminal_.JoinCaller();
  return ReadToEnd(terminal_.input(), kLimit);
}

void WindowsHost::Show(const std::string& text) {
  terminal_.JoinCaller();
  if (terminal_.output() == nullptr) return ShowBox(text, MB_ICONINFORMATION);
  HandleOutput(terminal_.output()) << text << std::flush;
}

void WindowsHost::Complain(const std::string& text) {
  terminal_.JoinCaller();
  if (terminal_.error() == nullptr) return ShowBox(text, MB_ICONERROR);
  HandleOutput(terminal_.error()) << "zentupdate: " << text << std::endl;
}

std::ostream* WindowsHost::Notes() {
  terminal_.JoinCaller();
  return &notes_.emplace(terminal_.error());
}

void WindowsHost::ShowBox(const std::string& text, UINT icon) const {
  if (alone_ || !HasDesktop()) return;
  MessageBoxW(nullptr, WideOf(text).c_str(), L"ZentUpdate", MB_OK | MB_SETFOREGROUND | icon);
}

/// Before the line is read: what it is wrong in must not wait for anybody either.
bool SaysThatNobodyIsThere(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    if (argument == "--unattended" || argument.starts_with("--answers")) return true;
  }
  return false;
}

ExitCode Main(const std::vector<std::string>& arguments) {
  WindowsHost host(SaysThatNobodyIsThere(arguments));
  std::vector<const char*> pointers;
  pointers.reserve(arguments.size());
  for (const std::string& argument : arguments) pointers.push_back(argument.c_str());
  try {
    return RunProgram(host, static_cast<int>(pointers.size()), pointers.data());
  } catch (const std::exception& defect) {
    host.Complain(defect.what());
    return ExitCode::Failed;
  }
}

}  // namespace
}  // namespace zent

int wmain(int argc, wchar_t** argv) {
  zent::LimitLibrarySearch();
  std::vector<std::string> arguments;
  arguments.reserve(static_cast<std::size_t>(argc));
  for (int i = 0; i < argc; ++i) arguments.push_back(zent::Utf8Of(argv[i]));
  return zent::NativeExitCode(zent::Main(arguments));
}
