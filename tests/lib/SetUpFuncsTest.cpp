#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "fakes/run/RunBuilder.h"
#include "lib/RegFuncs.h"
#include "lib/SetUpFuncs.h"

namespace zent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::MemoryMachine;
using ::testing::Not;

void NameFolder(MemoryMachine& machine, KeyHandle root, const char* value, const char* path) {
  machine.registry.PutText(root, kShellFoldersKey, value, path);
}

void NameUserFolders(MemoryMachine& machine, const char* desktop, const char* start_menu,
                     const char* programs) {
  NameFolder(machine, KeyHandle::CurrentUser, "Desktop", desktop);
  NameFolder(machine, KeyHandle::CurrentUser, "Start Menu", start_menu);
  NameFolder(machine, KeyHandle::CurrentUser, "Programs", programs);
}

struct FolderCase {
  const char* what;
  const char* folder;
  const char* link_file;
};

constexpr FolderCase kOldLayout[] = {
    {"a group of the program menu", "Zent", R"(C:\Docs\anna\Start Menu\Programs\Zent\Korvo.lnk)"},
    {"the program menu", "", R"(C:\Docs\anna\Start Menu\Programs\Korvo.lnk)"},
    {"the Start menu", "..", R"(C:\Docs\anna\Start Menu\Korvo.lnk)"},
    {"the desktop", R"(..\..\Desktop)", R"(C:\Docs\anna\Desktop\Korvo.lnk)"},
};

constexpr FolderCase kNewLayout[] = {
    {"a group of the program menu", "Zent",
     R"(C:\users\anna\Roaming\Menu\Programs\Zent\Korvo.lnk)"},
    {"a group in a group", R"(Zent\Tools)",
     R"(C:\users\anna\Roaming\Menu\Programs\Zent\Tools\Korvo.lnk)"},
    {"the Start menu", "..", R"(C:\users\anna\Roaming\Menu\Korvo.lnk)"},
    {"a folder of the Start menu", R"(..\Zent)", R"(C:\users\anna\Roaming\Menu\Zent\Korvo.lnk)"},
    {"the desktop, which is not two levels up", R"(..\..\Desktop)",
     R"(C:\users\anna\Desktop\Korvo.lnk)"},
    {"a folder on the desktop, in any case", R"(..\..\DESKTOP\Zent)",
     R"(C:\users\anna\Desktop\Zent\Korvo.lnk)"},
    {"a name that only begins like the way up", "..Zent",
     R"(C:\users\anna\Roaming\Menu\Programs\..Zent\Korvo.lnk)"},
};

void ExpectLinkFiles(MemoryMachine& machine, std::span<const FolderCase> rows) {
  for (const FolderCase& row : rows) {
    SCOPED_TRACE(row.what);
    machine.links.created.clear();
    std::string parent;
    EXPECT_TRUE(
        CreateShellLink(machine.platform, R"(C:\Korvo\Korvo.exe)", row.folder, "", "Korvo", parent)
            .ok());
    ASSERT_EQ(machine.links.created.size(), 1U);
    EXPECT_EQ(machine.links.created[0].file, row.link_file);
    EXPECT_TRUE(machine.files.Exists(row.link_file));
  }
}

TEST(CreateShellLink, FindsTheFoldersOfTheOldLayout) {
  MemoryMachine machine;
  NameUserFolders(machine, R"(C:\Docs\anna\Desktop)", R"(C:\Docs\anna\Start Menu)",
                  R"(C:\Docs\anna\Start Menu\Programs)");
  ExpectLinkFiles(machine, kOldLayout);
}

TEST(CreateShellLink, FindsTheFoldersOfTheNewLayout) {
  MemoryMachine machine;
  NameUserFolders(machine, R"(C:\users\anna\Desktop\)", R"(C:\users\anna\Roaming\Menu)",
                  R"(C:\users\anna\Roaming\Menu\Programs)");
  ExpectLinkFiles(machine, kNewLayout);
}

struct MissingCase {
  const char* what;
  const char* there;     ///< exists before
  const char* programs;  ///< the program menu
  std::vector<std::string> made;
};

const MissingCase kMissingCases[] = {
    {"on a drive",
     R"(C:\)",
     R"(C:\m\p)",
     {R"(CreateFolder C:\m)", R"(CreateFolder C:\m\p)", R"(CreateFolder C:\m\p\Zent)"}},
    {"on a share",
     R"(\\srv\users\)",
     R"(\\srv\users\anna\p)",
     {R"(CreateFolder \\srv\users\anna)", R"(CreateFolder \\srv\users\anna\p)",
      R"(CreateFolder \\srv\users\anna\p\Zent)"}},
    {"on a share that is the menu itself",
     R"(\\srv\menu\)",
     R"(\\srv\menu)",
     {R"(CreateFolder \\srv\menu\Zent)"}},
};

TEST(CreateShellLink, MakesEveryMissingFolder) {
  for (const MissingCase& row : kMissingCases) {
    SCOPED_TRACE(row.what);
    MemoryMachine machine;
    machine.files.PutFolder(row.there);
    NameUserFolders(machine, R"(C:\d)", R"(C:\s)", row.programs);
    std::string parent;
    EXPECT_TRUE(CreateShellLink(machine.platform, R"(C:\a.exe)", "Zent", "", "A", parent).ok());

    std::vector<std::string> made = machine.files.log().changes();
    std::erase_if(made, [](const std::string& call) { return !call.starts_with("CreateFolder "); });
    EXPECT_EQ(made, row.made);
    EXPECT_TRUE(machine.files.Exists(std::string(row.programs) + R"(\Zent\A.lnk)"));
    EXPECT_FALSE(machine.files.Exists(R"(C:\d)"));
    // A server is no folder: to ask for it fails, and so does making it.
    EXPECT_THAT(machine.files.log().calls(), Not(Contains(R"(Attributes \\srv)")));
  }
}

TEST(CreateShellLink, AFolderThatCannotBeMadeIsTheError) {
  MemoryMachine machine;
  NameUserFolders(machine, R"(C:\d)", R"(C:\m)", R"(C:\m\p)");
  machine.files.log().FailWhere(R"(C:\m\p\Zent)", StandardError(kPathFileAccess));
  std::string parent;
  EXPECT_EQ(CreateShellLink(machine.platform, R"(C:\a.exe)", "Zent", "", "A", parent).number(),
            kPathFileAccess);
  EXPECT_THAT(machine.links.created, IsEmpty());
}

struct ParentCase {
  const char* what;
  const char* parent;
  const char* afterwards;
  int number;
};

constexpr ParentCase kParentCases[] = {
    {"a blank parent becomes the program menu", "", "$(Programs)", 0},
    {"blanks are blank", "  ", "$(Programs)", 0},
    {"it may be named", "$(Programs)", "$(Programs)", 0},
    {"in any case", "$(PROGRAMS)", "$(PROGRAMS)", 0},
    {"no other parent is known", "$(Start Menu)", "$(Start Menu)", kInvalidProcedureCall},
};

TEST(CreateShellLink, TakesTheProgramMenuForABlankParent) {
  for (const ParentCase& row : kParentCases) {
    SCOPED_TRACE(row.what);
    MemoryMachine machine;
    NameUserFolders(machine, R"(C:\d)", R"(C:\m)", R"(C:\m\p)");
    std::string parent = row.parent;
    EXPECT_EQ(CreateShellLink(machine.platform, R"(C:\a.exe)", "Z", "", "A", parent).number(),
              row.number);
    EXPECT_EQ(parent, row.afterwards);
  }
}

struct FamilyCase {
  const char* what;
  std::uint32_t family;
  const char* link_file;  ///< empty: none
};

constexpr FamilyCase kFamilyCases[] = {
    {"private on 9x: no one else's menu", kPlatform9x, ""},
    {"not private on NT: that of all users", kPlatformNt, R"(C:\all\Zent\A.lnk)"},
    {"not private on anything else", 3, R"(C:\all\Zent\A.lnk)"},
};

TEST(CreateShellLink, IsPrivateOnTheOldFamilyOnly) {
  for (const FamilyCase& row : kFamilyCases) {
    SCOPED_TRACE(row.what);
    MemoryMachine machine;
    machine.system.version = {row.family, 4, 0};
    NameFolder(machine, KeyHandle::LocalMachine, "Common Programs", R"(C:\all)");
    std::string parent;
    const Status made = CreateShellLink(machine.platform, R"(C:\a.exe)", "Zent", "", "A", parent);
    EXPECT_EQ(made.number(), *row.link_file == '\0' ? kPathNotFound : 0);
    EXPECT_EQ(machine.links.created.empty(), *row.link_file == '\0');
    for (const auto& created : machine.links.created) EXPECT_EQ(created.file, row.link_file);
  }
}

TEST(CreateShellLink, TheUsersOwnMenuGoesFirst) {
  MemoryMachine machine;
  NameUserFolders(machine, R"(C:\d)", R"(C:\m)", R"(C:\m\p)");
  NameFolder(machine, KeyHandle::LocalMachine, "Common Programs", R"(C:\all)");
  std::string parent;
  EXPECT_TRUE(CreateShellLink(machine.platform, R"(C:\a.exe)", "Zent", "", "A", parent).ok());
  EXPECT_EQ(machine.links.created[0].file, R"(C:\m\p\Zent\A.lnk)");
}

struct TargetCase {
  const char* what;
  const char* target;
  const char* linked;
  const char* working_folder;
};

constexpr TargetCase kTargetCases[] = {
    {"a program", R"(C:\Program Files\Korvo\Korvo.exe)", R"(C:\Program Files\Korvo\Korvo.exe)",
     R"(C:\Program Files\Korvo)"},
    {"one at the root of its drive", R"(C:\Korvo.exe)", R"(C:\Korvo.exe)", R"(C:\)"},
    {"the path is made plain", R"(C:/Korvo/Bin/../Korvo.exe)", R"(C:\Korvo\Korvo.exe)",
     R"(C:\Korvo)"},
};

TEST(CreateShellLink, LeadsToTheTargetAndStartsItWhereItLies) {
  for (const TargetCase& row : kTargetCases) {
    SCOPED_TRACE(row.what);
    MemoryMachine machine;
    NameUserFolders(machine, R"(C:\d)", R"(C:\m)", R"(C:\m\p)");
    std::string parent;
    EXPECT_TRUE(CreateShellLink(machine.platform, row.target, "Z", "/x \"a b\"", "A", parent).ok());
    ASSERT_EQ(machine.links.created.size(), 1U);
    const ShellLink& link = machine.links.created[0].link;
    EXPECT_EQ(link.target, row.linked);
    EXPECT_EQ(link.working_folder, row.working_folder);
    EXPECT_EQ(link.arguments, "/x \"a b\"");
  }
}

}  // namespace
}  // namespace zent
