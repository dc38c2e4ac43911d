#include <gtest/gtest.h>

#include "driver/run/PathMacros.h"
#include "fakes/run/RunBuilder.h"

namespace zent {
namespace {

using testing::RunBuilder;

struct ExpandCase {
  const char* what;
  const char* name;
  const char* destination;
  const char* expanded;
};

constexpr ExpandCase kExpandCases[] = {
    {"a macro alone keeps the name", "Korvo.exe", "$(apppath)", R"(C:\Korvo\Korvo.exe)"},
    {"a folder keeps the name, one backslash at each joint", "Korvo.exe", R"($(AppPath)\Bin\)",
     R"(C:\Korvo\Bin\Korvo.exe)"},
    {"a folder may end with a slash", "a.txt", "$(apppath)\\Bin/", R"(C:\Korvo\Bin/a.txt)"},
    {"a full path drops the name", "a.txt", R"($(datapath)\Korvo.mdb)", R"(D:\Data\Korvo.mdb)"},
    {"no macro changes nothing", R"(C:\x.txt)", R"(C:\y.txt)", R"(C:\x.txt)"},
    {"a macro later in the text changes nothing", "a.txt", R"(C:\$(apppath))", "a.txt"},
    {"a second macro stays text", "a.txt", R"($(apppath)\$(datapath)\b)",
     R"(C:\Korvo\$(datapath)\b)"},
    {"an unknown macro gives the rest alone", "a.txt", R"($(nosuch)\b.txt)", "b.txt"},
    {"an unknown macro folder gives the rest and the name", "a.txt", R"($(nosuch)\Bin\)",
     R"(Bin\a.txt)"},
    {"an unknown macro alone gives the name", "a.txt", "$(nosuch)", "a.txt"},
    {"macros are matched in any case", "a.txt", R"($(CommonFiles)\x)",
     R"(C:\Program Files\Common Files\x)"},
    {"the character behind the macro is dropped, whatever it is", "a.txt", "$(apppath)Xb.txt",
     R"(C:\Korvo\b.txt)"},
    {"a lone character behind the macro leaves the folder", "a.txt", "$(apppath)x", R"(C:\Korvo\)"},
    {"a backslash alone behind the macro is a folder", "a.txt", R"($(apppath)\)",
     R"(C:\Korvo\a.txt)"},
    {"an unclosed macro is none", "a.txt", "$(apppath", "a.txt"},
    {"an empty destination changes nothing", "a.txt", "", "a.txt"},
};

TEST(ExpandDestFile, PutsTheFolderInPlaceOfTheMacro) {
  const RunBuilder given;
  for (const ExpandCase& row : kExpandCases) {
    SCOPED_TRACE(row.what);
    std::string dest_file = row.name;
    ExpandDestFile(given.run, dest_file, row.destination);
    EXPECT_EQ(dest_file, row.expanded);
  }
}

struct FolderCase {
  const char* macro;
  const char* folder;
};

constexpr FolderCase kFolderCases[] = {
    {"$(apppath)", R"(C:\Korvo\)"},
    {"$(zentappdatapath)", R"(C:\users\Public\Zent\)"},
    {"$(helppath)", R"(C:\Korvo\ZentHelp\)"},
    {"$(datapath)", R"(D:\Data\)"},
    {"$(winpath)", R"(C:\windows\)"},
    {"$(winsyspath)", R"(C:\windows\system32\)"},
    {"$(temppath)", R"(C:\windows\temp\)"},
    {"$(programfiles)", R"(C:\Program Files\)"},
    {"$(commonfiles)", R"(C:\Program Files\Common Files\)"},
    {"$(winappdatapath)", R"(C:\users\anna\AppData\)"},
    {"$(mydocuments)", R"(C:\users\anna\Documents\)"},
    {"$(desktop)", R"(C:\users\anna\Desktop\)"},
};

TEST(ExpandDestFile, KnowsEveryMacro) {
  RunBuilder given;
  given.machine.InstallKorvo();
  for (const FolderCase& row : kFolderCases) {
    SCOPED_TRACE(row.macro);
    EXPECT_EQ(ExpandPath(given.run, row.macro), row.folder);
    EXPECT_EQ(MacroProblem(row.macro), std::nullopt);
  }
}

TEST(ExpandPath, PutsNoNameBehindAFolder) {
  const RunBuilder given;
  EXPECT_EQ(ExpandPath(given.run, R"($(apppath)\Bin\)"), R"(C:\Korvo\Bin\)");
  EXPECT_EQ(ExpandPath(given.run, "$(apppath)"), R"(C:\Korvo\)");
}

TEST(ExpandPath, TakesARelativePathFromThePackageFolder) {
  const RunBuilder given;
  EXPECT_EQ(ExpandPath(given.run, R"(Files\a.txt)"), R"(D:\Package\Files\a.txt)");
  EXPECT_EQ(ExpandPath(given.run, R"($(nosuch)\a.txt)"), R"(D:\Package\a.txt)");
  EXPECT_EQ(ExpandPath(given.run, R"(C:\a.txt)"), R"(C:\a.txt)");
  EXPECT_EQ(ExpandPath(given.run, R"(\\server\share\a.txt)"), R"(\\server\share\a.txt)");
  EXPECT_EQ(ExpandPath(given.run, ""), "");
}

TEST(ExpandDestination, UsesAPlainDestinationAsItStands) {
  const RunBuilder given;
  EXPECT_EQ(ExpandDestination(given.run, "a.txt", R"(C:\x\b.txt)"), R"(C:\x\b.txt)");
  EXPECT_EQ(ExpandDestination(given.run, "a.txt", "$(datapath)"), R"(D:\Data\a.txt)");
}

TEST(MacroProblem, NamesWhatIsWrong) {
  EXPECT_EQ(MacroProblem(R"($(nosuch)\a)"), "unknown path macro $(nosuch)");
  EXPECT_EQ(MacroProblem("$(apppath"), "unclosed path macro in $(apppath");
  EXPECT_EQ(MacroProblem("$(apppath)a.txt"),
            "text swallowed behind the path macro in $(apppath)a.txt");
  EXPECT_EQ(MacroProblem(R"(C:\$(nosuch))"), std::nullopt);
  EXPECT_EQ(MacroProblem(""), std::nullopt);
}

}  // namespace
}  // namespace zent
