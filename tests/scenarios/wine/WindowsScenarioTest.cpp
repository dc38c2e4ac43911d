#include <gtest/gtest.h>

#include "scenarios/ScenarioFiles.h"
#include "scenarios/compare/Exceptions.h"
#include "scenarios/wine/WindowsScenario.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;

std::string TextOf(const fs::path& file) { return fs::exists(file) ? ReadHostFile(file) : ""; }

class WindowsScenario : public ::testing::TestWithParam<std::string> {
 protected:
  /// An expected text as it is for Windows.
  std::string Expected(const std::string& name, std::string text) const {
    const auto [changed, wrong] =
        ApplyExceptions(TextOf(scenario_.folder / "expected.windows"), name, std::move(text));
    EXPECT_EQ(wrong, "");
    return changed;
  }
  std::string ExpectedText(const std::string& name) const {
    return Expected(name, TextOf(scenario_.folder / ("expected." + name)));
  }

  const Scenario scenario_{.folder = fs::path(ZENT_SCENARIOS) / GetParam()};
};

TEST_P(WindowsScenario, EndsAsTheNativeRun) {
  ASSERT_TRUE(fs::exists(ZENT_PROGRAM)) << ZENT_PROGRAM << " is missing: make windows";
  const TempFolder workplace;

  const ScenarioEnd end = RunUnderWine(scenario_, workplace.path());

  EXPECT_EQ(end.log, ExpectedText("log")) << end.output;
  EXPECT_EQ(end.records, ExpectedText("records"));
  EXPECT_EQ(end.changes, ExpectedText("changes"));
  for (const std::string& name : NamesOf(end.changes)) {
    SCOPED_TRACE(name);
    EXPECT_EQ(end.machine.at(name),
              Expected(name, ExpectedFile(scenario_, workplace.path() / "machine", name)));
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, WindowsScenario, ::testing::ValuesIn(ListScenarios(ZENT_SCENARIOS)),
                         [](const auto& row) { return row.param; });

TEST(NativeExitCode, IsToldFromWhatTheHostSees) {
  EXPECT_EQ(NativeExitCodeOf(0), 0);
  EXPECT_EQ(NativeExitCodeOf(3010 % 256), 80);
  EXPECT_EQ(NativeExitCodeOf(1603 % 256), 1);
  EXPECT_EQ(NativeExitCodeOf(1), 1001);
  EXPECT_EQ(NativeExitCodeOf(124), 1124);  // ended after a minute
}

}  // namespace
}  // namespace zent::testing
