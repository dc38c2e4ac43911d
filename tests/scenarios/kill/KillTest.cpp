#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "scenarios/kill/FreshMachine.h"
#include "scenarios/kill/TracedRun.h"

namespace zent::testing {
namespace {

/// A list of which every line changes at most one file, and which does no more when it is run over
/// a machine that it has changed in part or wholly.
struct KillCase {
  const char* what;
  std::vector<std::string> lines;
};

void PrintTo(const KillCase& row, std::ostream* stream) { *stream << row.what; }

const KillCase kCases[] = {
    {"SettingsFiles",
     {R"(wrttoini,$(apppath)\NetUpd.ini,update,VERSION,3.6.0)",
      R"(wrttoini,$(apppath)\New.ini,Section,Key,value)",
      R"(wrttoini,$(apppath)\New.ini,Section,Other,value)",
      R"(wrttoini,$(zentappdatapath)\Korvo.ini,Window,Left,200)"}},
    {"RegistryAndShortcut",
     {R"(regw,HKCU|Software\Zent\Korvo\3.6|Theme,light)",
      R"(regw,HKCU|Software\Zent\Korvo\3.6|Theme,dark)",
      R"(regw,HKLM|Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders|Common Desktop,C:\D)",
      R"(regw,HKLM|SOFTWARE\Zent\Korvo|Build,360)",  //
      R"(regw,Korvo|Settings|LastPatch,360)", R"(cslk,Korvo Help,$(helppath)\Contacts.htm)"}},
    {"CopiesAndDeletions",
     {R"(copy,Big.bin,$(apppath)\Korvo.exe)",  //
      R"(copy,Big.bin,$(apppath)\New.bin)",
      R"(copyl,$(helppath)\Contacts.htm,$(helppath)\Reminders.htm)",  // which is read-only
      R"(mkdr,$(apppath)\Kept)", R"(ccl,$(helppath)\Contacts.htm,$(apppath)\Kept\Contacts.htm)",
      R"(cren,$(apppath)\NetUpd.ini,$(apppath)\Old.ini)",  //
      R"(del,$(helppath)\Companies.htm)"}},
    {"XmlFiles", {"xupd,Menus9.xml", "updxfields,Fields9.xml", "xupd,Form9.xml"}},
};

struct PackageFile {
  const char* name;
  const char* contents;
};

const PackageFile kXmlFiles[] = {
    {"Menus.xml", "<Menus><Version>9</Version><Menu ID=\"New\"/></Menus>"},
    {"Menus9.xml",
     R"(<XMLUpdates><XMLUpdate FileName=".\Menus.xml"><Insert><Node>/Menus/Menu</Node>)"
     "<IfNotFoundAppendTo>/Menus</IfNotFoundAppendTo></Insert></XMLUpdate></XMLUpdates>"},
    {"Form.xml", "<Form><Version>9</Version></Form>"},
    {"Form9.xml",
     R"(<XMLUpdates><XMLUpdate FileName=".\Form.xml" OFileName="$(datapath)\Customize\Forms\)"
     R"(Contact.xml"><Delete><Node>/Form/Tabs</Node></Delete></XMLUpdate></XMLUpdates>)"},
    {"Fields9.xml",
     R"(<UpdateXFields FileName="Contacts.xml" TableName="Contacts"><Version>9</Version>)"
     "<Add><XTab>New</XTab><XField><ID>F</ID></XField></Add></UpdateXFields>"},
};

/// A machine on which the first `count` lines are to run.
struct Given {
  Given(const KillCase& row, std::size_t count)
      : machine({row.lines.begin(), row.lines.begin() + static_cast<std::ptrdiff_t>(count)}) {
    machine.Put("package/Big.bin", std::string(300'000, 'b'));
    for (const PackageFile& file : kXmlFiles) {
      machine.Put("package/" + std::string(file.name), file.contents);
    }
    std::filesystem::permissions(
        machine.folder() / "machine/drive_c/Program Files/Zent/ZentHelp/Reminders.htm",
        std::filesystem::perms::owner_read);
  }
  explicit Given(const KillCase& row) : Given(row, row.lines.size()) {}

  FreshMachine machine;
};

class KilledRun : public ::testing::TestWithParam<KillCase> {
 protected:
  /// The machine after each number of lines, from none to all, each by a run of its own.
  std::vector<MachineTree> RunEveryBeginning() {
    std::vector<MachineTree> trees;
    for (std::size_t count = 0; count <= GetParam().lines.size(); ++count) {
      const Given given(GetParam(), count);
      const ProgramEnd end = given.machine.Run();
      EXPECT_EQ(end.exit_code, 0) << end.output;
      trees.push_back(given.machine.Tree());
    }
    return trees;
  }

  static TracedEnd RunWatched(const Given& given, std::size_t kill_at = 0) {
    return RunTraced({given.machine.Command(), given.machine.folder()}, kill_at);
  }
};

/// The number of lines after which the machine has these files, from `least` on; -1 for none.
int LinesDone(const std::vector<MachineTree>& trees, const MachineTree& found, int least) {
  for (int i = least; i < static_cast<int>(trees.size()); ++i) {
    if (FilesOf(trees.at(static_cast<std::size_t>(i))) == FilesOf(found)) return i;
  }
  return -1;
}

TEST_P(KilledRun, HasDoneItsListUpToALineAndIsMadeGoodByTheNext) {
  const std::vector<MachineTree> trees = RunEveryBeginning();
  const TracedEnd whole = RunWatched(Given(GetParam()));
  ASSERT_EQ(whole.error, "") << "this test needs ptrace";
  ASSERT_EQ(whole.exit_code, 0);
  // A file that is written safely takes three calls at least: make, fill, put in place.
  ASSERT_GT(whole.calls.size(), GetParam().lines.size() * 2);
  RecordProperty("instants", static_cast<int>(whole.calls.size()));

  int lines_done = 0;
  for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
    SCOPED_TRACE("killed before call " + std::to_string(at) + ", " + whole.calls[at - 1]);
    const Given given(GetParam());
    const TracedEnd killed = RunWatched(given, at);
    ASSERT_TRUE(killed.killed);

    const MachineTree found = given.machine.Tree();
    lines_done = LinesDone(trees, found, lines_done);
    ASSERT_GE(lines_done, 0) << CompareTrees(trees.front(), found);
    EXPECT_TRUE(FoldersAreIn(found, trees.back())) << CompareTrees(trees.front(), found);
    EXPECT_LE(SiblingsIn(found).size(), 1U);

    const ProgramEnd next = given.machine.Run();
    EXPECT_EQ(next.exit_code, 0) << next.output;
    EXPECT_EQ(CompareTrees(trees.back(), given.machine.Tree()), "");
  }
}

INSTANTIATE_TEST_SUITE_P(Lists, KilledRun, ::testing::ValuesIn(kCases),
                         [](const auto& row) { return std::string(row.param.what); });

}  // namespace
}  // namespace zent::testing
