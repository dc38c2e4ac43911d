#include "scenarios/wine/UpdatedMachine.h"

#include <chrono>
#include <thread>

#include "scenarios/ScenarioFiles.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// A package on drive D:, in the folder where the prefix expects it.
const fs::path& WithPackage(const TempFolder& folder, const std::vector<std::string>& lines) {
  std::string list = "[General]\r\nAppName=Korvo\r\n[setup]\r\n";
  for (const std::string& line : lines) list += line + "\r\n";
  folder.Put("package/ZentUpdate.ini", list);
  return folder.path();
}

}  // namespace

bool ComesUp(const fs::path& file) {
  for (int i = 0; i < 500; ++i) {
    if (fs::exists(file)) return true;
    std::this_thread::sleep_for(20ms);
  }
  return false;
}

UpdatedMachine::UpdatedMachine(const std::vector<std::string>& lines)
    : prefix_(ZENT_SAMPLE_MACHINE, ZENT_SAMPLE_MACHINE, WithPackage(folder_, lines)) {}

ProgramEnd UpdatedMachine::Run(std::vector<std::string> more, double seconds) const {
  more.insert(more.begin(), {R"(D:\)", "--console", "--unattended", "--log", R"(E:\log)",
                             "--events", R"(E:\events)"});
  return prefix_.Run(ZENT_PROGRAM, more, seconds);
}

std::string UpdatedMachine::Log() const { return WithoutCarriageReturns(folder_.Get("log")); }

std::string UpdatedMachine::Records() const {
  const std::string records = RecordsOf(folder_.path() / "events", 0);
  return records.substr(0, records.rfind("exit "));
}

HeldFile::HeldFile(const UpdatedMachine& machine, const std::string& windows_path, bool shared)
    : machine_(machine) {
  std::vector<std::string> arguments = {windows_path};
  if (shared) arguments.emplace_back("shared");
  holder_ = std::async(std::launch::async, [&machine, arguments] {
    return machine.prefix().Run(ZENT_HOLD_FILE, arguments);
  });
  held_ = ComesUp(machine.folder().path() / "held");
}

HeldFile::~HeldFile() { Release(); }

void HeldFile::Release() {
  if (!holder_.valid()) return;
  machine_.folder().Put("release", "");
  holder_.get();
}

}  // namespace zent::testing
