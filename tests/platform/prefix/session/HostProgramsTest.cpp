#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "platform/prefix/session/HostPrograms.h"
#include "platform/prefix/session/HostScripts.h"

namespace zent {
namespace {

using std::filesystem::perms;
using testing::PutScript;
using testing::TempFolder;

struct KindCase {
  const char* what;
  std::string contents;
  perms permissions;
  ProgramKind kind;
};

const KindCase kKindCases[] = {
    {"a script", "#!/bin/sh\n", perms::owner_all, ProgramKind::Host},
    {"a script without execute permission", "#!/bin/sh\n", perms::owner_read, ProgramKind::None},
    {"a program of the host", "\177ELF and more", perms::owner_all, ProgramKind::Host},
    {"one without execute permission", "\177ELF and more", perms::owner_read, ProgramKind::None},
    {"a cut header", "\177EL", perms::owner_all, ProgramKind::None},
    {"a Windows program", "MZ\x90", perms::owner_all, ProgramKind::Windows},
    {"a Windows program needs no execute permission", "MZ\x90", perms::owner_read,
     ProgramKind::Windows},
    {"text", "echo hello\n", perms::owner_all, ProgramKind::None},
    {"an empty file", "", perms::owner_all, ProgramKind::None},
    {"small letters", "mz", perms::owner_all, ProgramKind::None},
};

TEST(ProgramKindOf, LooksAtTheFirstBytesAndThePermission) {
  const TempFolder folder;
  for (const KindCase& row : kKindCases) {
    SCOPED_TRACE(row.what);
    const auto file = folder.Put("program", row.contents);
    std::filesystem::permissions(file, row.permissions);
    EXPECT_EQ(ProgramKindOf(file), row.kind);
    std::filesystem::remove(file);
  }
}

TEST(ProgramKindOf, IsNoneForWhatIsNoFile) {
  const TempFolder folder;
  const auto pipe = folder.path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0700), 0);

  EXPECT_EQ(ProgramKindOf(folder.path()), ProgramKind::None);
  EXPECT_EQ(ProgramKindOf(folder.path() / "missing"), ProgramKind::None);
  EXPECT_EQ(ProgramKindOf(pipe), ProgramKind::None);
}

TEST(FindHostProgram, TakesTheFirstExecutableFile) {
  const TempFolder folder;
  std::filesystem::create_directories(folder.path() / "folder/tool");
  folder.Put("text/tool", "#!/bin/sh\n");
  const auto tool = PutScript(folder, "good/tool", "");
  PutScript(folder, "later/tool", "");
  const std::string root = folder.path().string();

  EXPECT_EQ(FindHostProgram("tool", root + "/missing:" + root + "/folder:" + root +
                                        "/text:" + root + "/good:" + root + "/later"),
            tool);
  EXPECT_EQ(FindHostProgram("tool", root + "/text"), std::nullopt);
  EXPECT_EQ(FindHostProgram("tool", ""), std::nullopt);
}

TEST(FindHostProgram, NeverLooksIntoTheCurrentFolder) {
  const TempFolder folder;
  PutScript(folder, "tool", "");
  PutScript(folder, "bin/tool", "");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());

  for (const char* path_list : {"", ":", ".", "./", "bin", ":/usr/none:", "::."}) {
    SCOPED_TRACE(path_list);
    EXPECT_EQ(FindHostProgram("tool", path_list), std::nullopt);
  }
  std::filesystem::current_path(before);
}

}  // namespace
}  // namespace zent
