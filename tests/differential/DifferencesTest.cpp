#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <functional>

#include "differential/Differences.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

constexpr const char* kRegistry =
    "WINE REGISTRY Version 2\n\n[Software\\\\Zent] 1\n\"Build\"=\"360\"\n\"Theme\"=\"light\"\n";

RunEnd SampleEnd() {
  RunEnd end;
  end.log = "one\ntwo\nthree\n";
  end.events =
      "{\"event\":\"message\",\"text\":\"one\"}\n{\"event\":\"end\",\"result\":\"success\"}\n";
  end.machine.files = {{"drive_c/a.txt", "a"}, {"drive_c/b.ini", "[S]\nK=v\n"}, {"drive_c/f/", ""}};
  end.machine.registry["user.reg"] = RegistryText::Read(kRegistry);
  end.attributes = {{"drive_c/a.txt", ""}, {"drive_c/b.ini", "r"}};
  return end;
}

struct Difference {
  const char* what;
  std::function<void(RunEnd&)> change;  ///< to the Windows run
  std::vector<std::string> found;
};

const Difference kDifferences[] = {
    {"none", [](RunEnd&) {}, {}},
    {"a line of the log is missing",
     [](RunEnd& end) { end.log = "one\nthree\n"; },
     {"log: only native: two"}},
    {"a line of the log is another",
     [](RunEnd& end) { end.log = "one\n2\nthree\n"; },
     {"log: only native: two", "log: only windows: 2"}},
    {"a line more", [](RunEnd& end) { end.log += "four\n"; }, {"log: only windows: four"}},
    {"line ends do not count", [](RunEnd& end) { end.log = "one\r\ntwo\r\nthree\r\n"; }, {}},
    {"an event is another",
     [](RunEnd& end) { end.events.replace(end.events.find("success"), 7, "failed"); },
     {R"(event 2: native: {"event":"end","result":"success"} | windows: {"event":"end","result":"failed"})"}},
    {"an event is missing",
     [](RunEnd& end) { end.events.erase(end.events.find('\n') + 1); },
     {R"(event 2: native: {"event":"end","result":"success"} | windows: none)"}},
    {"a changed file",
     [](RunEnd& end) { end.machine.files["drive_c/a.txt"] = "b"; },
     {"file: other contents: drive_c/a.txt"}},
    {"a missing file",
     [](RunEnd& end) { end.machine.files.erase("drive_c/a.txt"); },
     {"file: only native: drive_c/a.txt"}},
    {"a missing folder",
     [](RunEnd& end) { end.machine.files.erase("drive_c/f/"); },
     {"file: only native: drive_c/f/"}},
    {"a new file",
     [](RunEnd& end) { end.machine.files["drive_c/n"] = ""; },
     {"file: only windows: drive_c/n"}},
    {"a file in another case",
     [](RunEnd& end) {
       end.machine.files.erase("drive_c/a.txt");
       end.machine.files["drive_c/A.txt"] = "a";
     },
     {"file: only native: drive_c/a.txt", "file: only windows: drive_c/A.txt"}},
    {"settings laid out in another way",
     [](RunEnd& end) { end.machine.files["drive_c/b.ini"] = "[S]\r\n\r\nK = v\r\n"; },
     {}},
    {"another setting",
     [](RunEnd& end) { end.machine.files["drive_c/b.ini"] = "[S]\nK=w\n"; },
     {"file: other contents: drive_c/b.ini"}},
    {"an attribute less",
     [](RunEnd& end) { end.attributes["drive_c/b.ini"] = ""; },
     {"attributes: drive_c/b.ini: native r, windows none"}},
    {"attributes more",
     [](RunEnd& end) { end.attributes["drive_c/a.txt"] = "hs"; },
     {"attributes: drive_c/a.txt: native none, windows hs"}},
    {"a missing value",
     [](RunEnd& end) {
       end.machine.registry["user.reg"].keys.begin()->second.values.erase("\"theme\"");
     },
     {R"(user.reg: only native: software\\zent|"theme"="light")"}},
    {"another value",
     [](RunEnd& end) {
       end.machine.registry["user.reg"].keys.begin()->second.values["\"theme\""] = "\"dark\"";
     },
     {R"(user.reg: other data: software\\zent|"theme"="dark")"}},
    {"a new value",
     [](RunEnd& end) { end.machine.registry["user.reg"].keys["new"].values["@"] = "\"x\""; },
     {R"(user.reg: only windows: new|@="x")"}},
};

TEST(DifferencesOf, FindsEveryKind) {
  for (const Difference& row : kDifferences) {
    SCOPED_TRACE(row.what);
    RunEnd windows = SampleEnd();
    row.change(windows);
    EXPECT_THAT(DifferencesOf(SampleEnd(), windows, {}), ElementsAreArray(row.found));
  }
}

TEST(DifferencesOf, LeavesOutWhatWineItselfChanges) {
  RunEnd control = SampleEnd();
  control.machine.files["drive_c/wine.log"] = "started";
  control.machine.registry["user.reg"].keys["wine"].values["\"font\""] = "\"a\"";
  const std::set<std::string> noise = NoiseOf(SampleEnd().machine, control.machine);
  EXPECT_THAT(noise, ElementsAre("drive_c/wine.log", "user.reg: wine|\"font\""));

  RunEnd windows = SampleEnd();
  windows.machine.files["drive_c/wine.log"] = "started again";
  windows.machine.registry["user.reg"].keys["wine"].values["\"font\""] = "\"b\"";
  EXPECT_THAT(DifferencesOf(SampleEnd(), windows, noise), IsEmpty());

  windows.machine.registry["user.reg"].keys["wine"].values["\"size\""] = "\"b\"";
  EXPECT_THAT(DifferencesOf(SampleEnd(), windows, noise),
              ElementsAre(R"(user.reg: only windows: wine|"size"="b")"));
}

TEST(WithoutMoments, KeepsEverythingElse) {
  const std::pair<const char*, const char*> rows[] = {
      {"NetUpd 2026-11-21 19-23-24.ini", "NetUpd SECOND.ini"},
      {"2026-11-21", "2026-11-21"},
      {"Running a.exe (RetVal=16483)", "Running a.exe (RetVal=N)"},
      {"Running a.exe (RetVal=0)", "Running a.exe (RetVal=0)"},  // a number that means something
      {"3.6.0", "3.6.0"},
  };
  for (const auto& [text, without] : rows) EXPECT_EQ(WithoutMoments(text), without);
}

TEST(ReadAttributes, TellsReadOnlyHiddenAndSystem) {
  const TempFolder folder;
  folder.Put("drive_c/plain", "");
  std::filesystem::permissions(folder.Put("drive_c/f/read only", ""),
                               std::filesystem::perms::owner_read);
  ASSERT_EQ(::setxattr(folder.Put("drive_c/hidden", "").c_str(), "user.DOSATTRIB", "0x6", 3, 0), 0);

  const std::map<std::string, std::string> expected = {{"drive_c/plain", ""},
                                                       {"drive_c/f/", ""},
                                                       {"drive_c/f/read only", "r"},
                                                       {"drive_c/hidden", "hs"}};
  EXPECT_EQ(ReadAttributes(folder.path()), expected);
}

}  // namespace
}  // namespace zent::testing
