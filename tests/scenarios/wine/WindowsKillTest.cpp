#include <gtest/gtest.h>

#include <chrono>
#include <random>

#include "scenarios/wine/UpdatedMachine.h"

namespace zent::testing {
namespace {

/// Every line changes one file, each another one, and does no more when it is run again.
const std::vector<std::string> kLines = {
    R"(wrttoini,$(apppath)\New.ini,Section,Key,value)",
    R"(copy,Big.bin,$(apppath)\Korvo.exe)",
    R"(copy,Big.bin,$(apppath)\New.bin)",
    R"(wrttoini,$(zentappdatapath)\Korvo.ini,Window,Left,200)",
    R"(regw,HKCU|Software\Zent\Korvo\3.6|Theme,light)",
    R"(copyl,$(helppath)\Contacts.htm,$(helppath)\Reminders.htm)",
    R"(del,$(helppath)\Companies.htm)",
};
constexpr int kKills = 4;

/// A copy that takes a while is met half-way more often.
std::string BigContents() {
  std::string contents;
  for (int i = 0; i < 600'000; ++i) contents += "0123456789";
  return contents;
}

struct Given {
  Given() : machine(kLines), before(machine.prefix().State()) {
    machine.folder().Put("package/Big.bin", BigContents());
  }

  /// The machine's files, without what a killed run may leave of a file that it was making.
  MachineTree Files() const {
    machine.prefix().WaitForEnd();
    MachineTree files = ChangesBetween(before, machine.prefix().State()).after;
    for (auto it = files.begin(); it != files.end();) {
      const bool is_left = it->first.find("/.zent-") != std::string::npos;
      it = is_left || it->first.back() == '/' ? files.erase(it) : std::next(it);
    }
    return files;
  }

  UpdatedMachine machine;
  PrefixState before;
};

/// The files of `found` that are neither as in `before` nor as in `after`.
std::string HalfWay(const MachineTree& before, const MachineTree& after, const MachineTree& found) {
  const auto is_as_in = [](const MachineTree& tree, const MachineTree& other,
                           const std::string& name) {
    const auto one = tree.find(name);
    const auto two = other.find(name);
    if (one == tree.end() || two == other.end()) return one == tree.end() && two == other.end();
    return one->second == two->second;
  };
  MachineTree names = before;
  names.insert(after.begin(), after.end());
  names.insert(found.begin(), found.end());
  std::string half_way;
  for (const auto& [name, contents] : names) {
    if (!is_as_in(found, before, name) && !is_as_in(found, after, name)) half_way += name + "\n";
  }
  return half_way;
}

TEST(HalfWay, IsWhatIsNeitherOldNorNew) {
  const MachineTree before = {{"a", "1"}, {"b", "1"}};
  const MachineTree after = {{"a", "2"}, {"c", "2"}};
  EXPECT_EQ(HalfWay(before, after, before), "");
  EXPECT_EQ(HalfWay(before, after, after), "");
  EXPECT_EQ(HalfWay(before, after, {{"a", "2"}, {"b", "1"}}), "");
  EXPECT_EQ(HalfWay(before, after, {{"a", "12"}, {"c", ""}, {"d", "1"}}), "a\nc\nd\n");
}

TEST(WindowsKill, LeavesEveryFileOldOrNewAndTheNextRunMakesItGood) {
  const Given whole;
  const MachineTree before = whole.Files();
  const auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(whole.machine.Run().exit_code, 0);
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const MachineTree after = whole.Files();
  ASSERT_NE(before, after);

  std::mt19937 random(360);
  std::uniform_real_distribution<double> instant(seconds * 0.3, seconds * 0.95);
  for (int i = 0; i < kKills; ++i) {
    const Given given;
    const double at = instant(random);
    SCOPED_TRACE("killed after " + std::to_string(at) + " of " + std::to_string(seconds));
    given.machine.Run({}, at);

    EXPECT_EQ(HalfWay(before, after, given.Files()), "");
    EXPECT_EQ(given.machine.Run().exit_code, 0);
    EXPECT_EQ(CompareTrees(after, given.Files()), "");
  }
}

}  // namespace
}  // namespace zent::testing
