#include "scenarios/wine/WinePrefix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "support/TempFolder.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLoader = "/usr/lib/wine/wine64";
constexpr const char* kServer = "/usr/lib/wine/wineserver";
constexpr const char* kRegistryFiles[] = {"system.reg", "user.reg", "userdef.reg"};

/// The devices of the machine, which Wine enters anew: those of the screen, with the time, when the
/// first window opens; those of the network when its service has started.
constexpr const char* kDeviceKeys[] = {
    R"(system\\controlset001\\control\\class\\{4d36e968-e325-11ce-bfc1-08002be10318})",
    R"(system\\controlset001\\control\\class\\{4d36e96e-e325-11ce-bfc1-08002be10318})",
    R"(system\\controlset001\\control\\video\\)",
    R"(system\\controlset001\\enum\\display\\)",
    R"(software\\microsoft\\windows nt\\currentversion\\networkcards)",
    R"(software\\wow6432node\\microsoft\\windows nt\\currentversion\\networkcards)",
};

/// The prefix that scripts/wine has made, which the ones here are copies of.
fs::path Template() {
  const char* const prefix = std::getenv("WINEPREFIX");
  return prefix == nullptr ? fs::path() : fs::path(prefix);
}

/// Copies the Windows folder by links: it holds some 700 MB, all of which is only read. What
/// programs write to are settings and small texts, and these are copied.
void LinkWindowsFolder(const fs::path& from, const fs::path& to) {
  fs::create_directories(to);
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(from)) {
    const fs::path target = to / fs::relative(entry.path(), from);
    if (entry.is_directory()) {
      fs::create_directories(target);
      continue;
    }
    std::error_code failed;
    if (entry.file_size() >= 4096) fs::create_hard_link(entry.path(), target, failed);
    if (entry.file_size() < 4096 || failed) fs::copy_file(entry.path(), target);
  }
  // The sample machine has no registration tool: a machine that has one brings it.
  fs::remove(to / "system32/regsvr32.exe");
}

/// Lays files over what is there. A program of the sample machines is a script of the host, which
/// Windows cannot start: a program that does nothing takes its place.
void LayFiles(const fs::path& machine, const fs::path& drive) {
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(machine)) {
    const fs::path target = drive / fs::relative(entry.path(), machine);
    if (entry.is_directory()) {
      fs::create_directories(target);
      continue;
    }
    fs::create_directories(target.parent_path());
    const bool is_script =
        entry.path().extension() == ".exe" && ReadHostFile(entry.path()).rfind("#!", 0) == 0;
    fs::remove(target);
    fs::copy_file(is_script ? fs::path(ZENT_IDLE_PROGRAM) : entry.path(), target);
    fs::permissions(target, entry.status().permissions() | fs::perms::owner_read);
  }
}

RegistryText ReadRegistry(const fs::path& file) {
  return RegistryText::Read(fs::exists(file) ? ReadHostFile(file) : "");
}

}  // namespace

PrefixChanges ChangesBetween(const PrefixState& before, const PrefixState& after) {
  PrefixChanges changes{.before = before.files, .after = after.files};
  for (const auto& [name, registry] : after.registry) {
    changes.before[name] = "";
    changes.after[name] = RegistryChanges(before.registry.at(name), registry);
  }
  return changes;
}

WinePrefix::WinePrefix(const fs::path& sample, const fs::path& machine, const fs::path& folder)
    : folder_(folder), prefix_(folder / "prefix") {
  if (!fs::exists(Template() / "system.reg")) {
    ADD_FAILURE() << "this test is started by scripts/wine/run";
    return;
  }
  fs::create_directories(prefix_ / "dosdevices");
  fs::create_directory_symlink("../drive_c", prefix_ / "dosdevices/c:");
  fs::create_directory_symlink("../../package", prefix_ / "dosdevices/d:");
  fs::create_directory_symlink("../..", prefix_ / "dosdevices/e:");
  fs::create_directory_symlink("/", prefix_ / "dosdevices/z:");
  LinkWindowsFolder(Template() / "drive_c/windows", drive_c() / "windows");
  LayFiles(machine / "drive_c", drive_c());
  for (const char* const name : kRegistryFiles) {
    RegistryText registry = ReadRegistry(Template() / name);
    LayOver(ReadRegistry(sample / name), ReadRegistry(machine / name), registry);
    std::ofstream(prefix_ / name, std::ios::binary) << registry.Write();
  }
  // Tells Wine that the prefix is up to date.
  fs::copy_file(Template() / ".update-timestamp", prefix_ / ".update-timestamp");
}

WinePrefix::~WinePrefix() {
  RunHostProgram(WithPrefix({kServer, "-k"}), folder_.string());
  WaitForEnd();
}

std::vector<std::string> WinePrefix::WithPrefix(std::vector<std::string> command) const {
  command.insert(command.begin(), {"/usr/bin/env", "WINEPREFIX=" + prefix_.string()});
  return command;
}

ProgramEnd WinePrefix::Run(const std::string& program, const std::vector<std::string>& arguments,
                           double seconds) const {
  // Services that a program brings up live on and would keep a pipe open: output goes to a file.
  // Two programs may run at a time.
  const std::string output = "output-" + std::to_string(runs_++);
  // The shell and the loader become the program, so that the kill is the program's.
  std::vector<std::string> command = WithPrefix(
      {"/usr/bin/timeout", "--foreground", "-s", "KILL", std::to_string(seconds), "/bin/sh", "-c",
       "output=$1; shift; exec \"$@\" >$output 2>&1", "sh", output, kLoader, program});
  command.insert(command.end(), arguments.begin(), arguments.end());
  ProgramEnd end = RunHostProgram(command, folder_.string());
  end.output += ReadHostFile(folder_ / output);
  return end;
}

void WinePrefix::WaitForEnd() const {
  RunHostProgram(WithPrefix({kServer, "-w"}), folder_.string());
}

PrefixState WinePrefix::State() const {
  PrefixState state;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(drive_c())) {
    const std::string name = fs::relative(entry.path(), prefix_).string();
    if (entry.is_directory()) {
      state.files[name + "/"] = "";
    } else if (entry.hard_link_count() > 1) {
      state.files[name] = "the system's own";
    } else {
      state.files[name] = ReadHostFile(entry.path());
    }
  }
  for (const char* const name : kRegistryFiles) {
    state.registry[name] = ReadRegistry(prefix_ / name);
    std::erase_if(state.registry[name].keys, [](const auto& key) {
      return std::any_of(std::begin(kDeviceKeys), std::end(kDeviceKeys),
                         [&](const char* device) { return key.first.rfind(device, 0) == 0; });
    });
  }
  return state;
}

}  // namespace zent::testing
