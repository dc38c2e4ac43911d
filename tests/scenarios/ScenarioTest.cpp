#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "scenarios/Scenario.h"
#include "scenarios/ScenarioFiles.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;

class ScenarioTest : public ::testing::TestWithParam<std::string> {};

std::string TextOf(const fs::path& file) { return fs::exists(file) ? ReadHostFile(file) : ""; }

void WriteText(const fs::path& file, const std::string& text) {
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << text;
}

/// Writes the expected files anew from what happened, for a reading by eye before they are kept.
void Rewrite(const fs::path& folder, const ScenarioEnd& end) {
  WriteText(folder / "expected.log", end.log);
  WriteText(folder / "expected.records", end.records);
  WriteText(folder / "expected.changes", end.changes);
  fs::remove_all(folder / "expected");
  for (const std::string& name : NamesOf(end.changes)) {
    WriteText(folder / "expected" / name, end.machine.at(name));
  }
}

TEST_P(ScenarioTest, EndsAsExpected) {
  const Scenario scenario{.folder = fs::path(ZENT_SCENARIOS) / GetParam()};
  const TempFolder workplace;

  const ScenarioEnd end = RunScenario(scenario, workplace.path());

  if (std::getenv("ZENT_REWRITE_SCENARIOS") != nullptr) Rewrite(scenario.folder, end);
  EXPECT_EQ(end.log, TextOf(scenario.folder / "expected.log")) << end.output;
  EXPECT_EQ(end.records, TextOf(scenario.folder / "expected.records"));
  EXPECT_EQ(end.changes, TextOf(scenario.folder / "expected.changes"));
  for (const std::string& name : NamesOf(end.changes)) {
    SCOPED_TRACE(name);
    EXPECT_EQ(end.machine.at(name), TextOf(scenario.folder / "expected" / name));
  }
}

std::string NameOf(const ::testing::TestParamInfo<std::string>& info) { return info.param; }

INSTANTIATE_TEST_SUITE_P(Cases, ScenarioTest, ::testing::ValuesIn(ListScenarios(ZENT_SCENARIOS)),
                         NameOf);

}  // namespace
}  // namespace zent::testing
