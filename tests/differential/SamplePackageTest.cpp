#include <gtest/gtest.h>

#include <fstream>

#include "differential/Differences.h"
#include "differential/Explanations.h"
#include "scenarios/HostProgram.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;

/// The sample machine in a prefix of its own, with the sample package on drive D:.
class Machine {
 public:
  explicit Machine(const fs::path& folder) : folder_(folder) {
    Make("machine");
    Make("package");
    prefix_ = std::make_unique<WinePrefix>(folder / "machine", folder / "machine", folder);
  }
  const WinePrefix& prefix() const { return *prefix_; }
  const fs::path& folder() const { return folder_; }

  RunEnd End() const {
    prefix_->WaitForEnd();
    RunEnd end;
    end.log = WithoutMoments(ReadHostFile(folder_ / "log"));
    end.events = WithoutMoments(ReadHostFile(folder_ / "events"));
    end.machine = prefix_->State();
    MachineTree files;
    for (auto& [name, contents] : end.machine.files)
      files[WithoutMoments(name)] =
          name.ends_with(".mdb") ? WithoutMoments(Dump(contents)) : std::move(contents);
    end.machine.files = std::move(files);
    end.attributes = ReadAttributes(folder_ / "prefix");
    return end;
  }

 private:
  void Make(const std::string& what) const {
    const std::string maker = ZENT_SAMPLES "/make-" + what;
    const std::string jetdb = "JETDB=" ZENT_JETDB;
    const std::string component = "COMPONENT=" ZENT_WINDOWS_COMPONENT;
    const ProgramEnd made =
        RunHostProgram({"/usr/bin/env", jetdb, component, maker, (folder_ / what).string()}, "/");
    EXPECT_EQ(made.exit_code, 0) << made.output;
  }

  /// What a database holds: two with the same need not have the same bytes.
  std::string Dump(const std::string& bytes) const {
    const fs::path copy = folder_ / "copy.mdb";
    std::ofstream(copy, std::ios::binary) << bytes;
    const ProgramEnd dumped = RunHostProgram({ZENT_JETDB, "dump", copy.string()}, "/");
    EXPECT_EQ(dumped.exit_code, 0) << dumped.output;
    return dumped.output;
  }

  fs::path folder_;
  std::unique_ptr<WinePrefix> prefix_;
};

fs::path FolderIn(const TempFolder& place, const char* name) {
  fs::create_directories(place.path() / name);
  return place.path() / name;
}

RunEnd RunNatively(const Machine& machine) {
  const fs::path& folder = machine.folder();
  const ProgramEnd ended =
      RunHostProgram({ZENT_NATIVE_PROGRAM, (folder / "package").string(), "--machine",
                      (folder / "prefix").string(), "--console", "--unattended", "--log",
                      (folder / "log").string(), "--events", (folder / "events").string()},
                     folder.string());
  EXPECT_EQ(ended.exit_code, 0) << ended.output;
  return machine.End();
}

RunEnd RunOnWindows(const Machine& machine) {
  const ProgramEnd ended = machine.prefix().Run(
      ZENT_WINDOWS_PROGRAM,
      {R"(D:\)", "--console", "--unattended", "--log", R"(E:\log)", "--events", R"(E:\events)"});
  EXPECT_EQ(ended.exit_code, 0) << ended.output;
  return machine.End();
}

/// What is changed by a window that opens and a program that ends, without the updater.
std::set<std::string> RunNothing(const Machine& machine) {
  const PrefixState before = machine.prefix().State();
  machine.prefix().Run(R"(C:\windows\system32\cmd.exe)", {"/c", "start", "/wait", "regsvr32"});
  machine.prefix().WaitForEnd();
  return NoiseOf(before, machine.prefix().State());
}

TEST(SamplePackage, DoesTheSameOnBothSystems) {
  ASSERT_TRUE(fs::exists(ZENT_WINDOWS_PROGRAM)) << ZENT_WINDOWS_PROGRAM " is missing: make windows";
  const TempFolder place;
  const Machine native(FolderIn(place, "native"));
  const Machine windows(FolderIn(place, "windows"));
  const Machine control(FolderIn(place, "control"));
  const PrefixState before = native.prefix().State();
  const std::set<std::string> noise = RunNothing(control);

  const RunEnd native_end = RunNatively(native);
  const RunEnd windows_end = RunOnWindows(windows);

  // Equal runs that did nothing would prove nothing.
  EXPECT_GT(NoiseOf(before, native_end.machine).size(), 20U);
  const Judgement judged = Judge(DifferencesOf(native_end, windows_end, noise),
                                 ReadExplanations(ReadHostFile(ZENT_EXPLANATIONS)));
  std::ofstream(ZENT_REPORT) << judged.report;
  std::cout << judged.report;
  EXPECT_TRUE(judged.unexplained.empty());
  EXPECT_TRUE(judged.unused.empty());
}

}  // namespace
}  // namespace zent::testing
