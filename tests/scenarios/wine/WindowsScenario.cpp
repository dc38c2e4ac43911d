#include "scenarios/wine/WindowsScenario.h"

#include <gtest/gtest.h>

#include "scenarios/ScenarioFiles.h"
#include "scenarios/compare/Comparable.h"
#include "scenarios/wine/WinePrefix.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;

struct ExitRow {
  int windows;
  int native;
};

constexpr ExitRow kExits[] = {{0, 0},     {10, 10},   {3010, 80}, {1603, 1}, {1639, 64},
                              {1619, 66}, {1642, 69}, {1618, 75}, {1625, 77}};

std::vector<std::string> Arguments(const Scenario& scenario, const fs::path& workplace) {
  std::vector<std::string> arguments = {R"(D:\)",    "--console", "--unattended", "--log",
                                        R"(E:\log)", "--events",  R"(E:\events)"};
  if (fs::exists(scenario.folder / "answers")) {
    fs::copy_file(scenario.folder / "answers", workplace / "answers");
    arguments.insert(arguments.end(), {"--answers", R"(E:\answers)"});
  }
  for (const std::string& option : LinesOf(scenario.folder / "options"))
    arguments.push_back(option);
  return arguments;
}

bool IsRegistry(const std::string& name) { return fs::path(name).extension() == ".reg"; }

RegistryText RegistryOf(const fs::path& file) { return RegistryText::Read(ReadHostFile(file)); }

}  // namespace

int NativeExitCodeOf(int low_bits) {
  for (const ExitRow& row : kExits) {
    if (row.windows % 256 == low_bits) return row.native;
  }
  return 1000 + low_bits;
}

ScenarioEnd RunUnderWine(const Scenario& scenario, const fs::path& workplace) {
  const fs::path machine = workplace / "machine";
  BuildMachine(scenario, ZENT_SAMPLE_MACHINE, machine);
  fs::copy(scenario.folder / "package", workplace / "package", fs::copy_options::recursive);
  const WinePrefix prefix(ZENT_SAMPLE_MACHINE, machine, workplace);
  const PrefixState before = prefix.State();

  const ProgramEnd ended = prefix.Run(ZENT_PROGRAM, Arguments(scenario, workplace));
  prefix.WaitForEnd();

  PrefixChanges changes = ChangesBetween(before, prefix.State());
  ScenarioEnd end;
  end.output = ended.output;
  end.log =
      fs::exists(workplace / "log") ? WithoutCarriageReturns(ReadHostFile(workplace / "log")) : "";
  end.records = RecordsOf(workplace / "events", NativeExitCodeOf(ended.exit_code));
  end.changes = CompareTrees(changes.before, changes.after);
  for (auto& [name, contents] : changes.after) contents = Comparable(name, contents);
  end.machine = std::move(changes.after);
  return end;
}

std::string ExpectedFile(const Scenario& scenario, const fs::path& machine,
                         const std::string& name) {
  const fs::path file = scenario.folder / "expected" / name;
  if (IsRegistry(name)) return RegistryChanges(RegistryOf(machine / name), RegistryOf(file));
  return Comparable(name, fs::exists(file) ? ReadHostFile(file) : "");
}

}  // namespace zent::testing
