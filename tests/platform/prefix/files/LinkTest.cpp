#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/prefix/files/TestMachine.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::Found;
using ::testing::HasSubstr;
using testing::TempFolder;
using testing::TestMachine;

std::string Read(FileSystem& files, std::string_view path) {
  const Result<std::string> contents = ReadWholeFile(files, path);
  return contents.ok() ? contents.value() : std::to_string(contents.number());
}

TEST(Links, InsideTheDriveAreFollowed) {
  TestMachine machine;
  machine.Put("real/x.txt", "x");
  machine.Put("Abc.txt", "one");
  machine.Link("linkdir", "real");
  machine.Link("linkfile.txt", "Abc.txt");
  machine.Link("deep/up", "../real/./");
  machine.Link("absolute", machine.C("real"));
  machine.Link("chain", "deep/up");
  FileSystem& files = machine.Open();

  EXPECT_EQ(Read(files, R"(C:\linkdir\x.txt)"), "x");
  EXPECT_EQ(Read(files, R"(C:\LINKFILE.TXT)"), "one");
  EXPECT_EQ(Read(files, R"(C:\deep\up\X.TXT)"), "x");
  EXPECT_EQ(Read(files, R"(C:\absolute\x.txt)"), "x");
  EXPECT_EQ(Read(files, R"(C:\chain\x.txt)"), "x");
}

struct HostileLink {
  const char* what;
  const char* target;  // $OUT is a folder outside, $C the folder of drive C
};

constexpr HostileLink kHostileLinks[] = {
    {"an absolute target outside", "$OUT"},
    {"the root of the host", "/"},
    {"climbing out", "../../../../../../../../../../../.."},
    {"climbing just out", ".."},
    {"climbing out and in again", "../drive_c"},
    {"inside as a text, outside in truth", "$C/../../.."},
    {"a folder whose name begins like the drive's", "$C2"},
    {"through a link to outside", "escape2"},
    {"a process's own root", "/proc/self/root"},
};

TEST(Links, ThatLeadOutsideAreNoPath) {
  for (const HostileLink& row : kHostileLinks) {
    SCOPED_TRACE(row.what);
    TestMachine machine;
    const TempFolder outside;
    outside.Put("x.txt", "secret");
    std::string target = row.target;
    if (target.starts_with("$OUT")) target.replace(0, 4, outside.path().string());
    if (target.starts_with("$C")) target.replace(0, 2, machine.C("").parent_path().string());
    machine.Link("escape2", outside.path());
    machine.Link("escape", target);
    machine.Put("a.txt", "a");
    FileSystem& files = machine.Open();

    EXPECT_EQ(files.Attributes(R"(C:\escape)").number(), kPathNotFound);
    EXPECT_EQ(files.Attributes(R"(C:\escape\x.txt)").number(), kPathNotFound);
    EXPECT_EQ(Read(files, R"(C:\escape\x.txt)"), "76");
    EXPECT_EQ(files.Write(R"(C:\escape\x.txt)", "hacked").number(), kPathNotFound);
    EXPECT_EQ(files.Write(R"(C:\escape\new.txt)", "hacked").number(), kPathNotFound);
    EXPECT_EQ(files.Copy(R"(C:\a.txt)", R"(C:\escape\x.txt)").number(), kPathNotFound);
    EXPECT_EQ(files.Delete(R"(C:\escape\x.txt)").number(), kPathNotFound);
    EXPECT_EQ(files.Move(R"(C:\a.txt)", R"(C:\escape\y.txt)").number(), kPathNotFound);
    EXPECT_EQ(files.Move(R"(C:\escape\x.txt)", R"(C:\y.txt)").number(), kPathNotFound);
    EXPECT_EQ(files.CreateFolder(R"(C:\escape\new)").number(), kPathNotFound);
    EXPECT_EQ(files.SetAttributes(R"(C:\escape\x.txt)", kAttributeReadOnly).number(),
              kPathNotFound);
    EXPECT_EQ(files.Find(R"(C:\escape\*)").number(), kPathNotFound);
    EXPECT_THAT(Found(files, R"(C:\*)"), ElementsAre("a.txt"));
    EXPECT_EQ(outside.Get("x.txt"), "secret");
  }
}

TEST(Links, ToAFileOutsideAreNotReadAndNotReplaced) {
  TestMachine machine;
  const TempFolder outside;
  machine.Link("x.txt", outside.Put("x.txt", "secret"));
  FileSystem& files = machine.Open();
  EXPECT_EQ(Read(files, R"(C:\x.txt)"), "76");
  EXPECT_EQ(files.Write(R"(C:\x.txt)", "hacked").number(), kPathNotFound);
  EXPECT_EQ(files.Delete(R"(C:\x.txt)").number(), kPathNotFound);
  EXPECT_EQ(outside.Get("x.txt"), "secret");
  EXPECT_THAT(files.Attributes(R"(C:\x.txt)").error().description, HasSubstr("x.txt: a link"));
}

TEST(Links, InACircleAreNoPath) {
  TestMachine machine;
  machine.Link("self", "self");
  machine.Link("one", "two");
  machine.Link("two", "one");
  machine.Link("here", ".");
  FileSystem& files = machine.Open();
  EXPECT_EQ(files.Attributes(R"(C:\self)").number(), kPathNotFound);
  EXPECT_EQ(files.Attributes(R"(C:\one\a)").number(), kPathNotFound);
  EXPECT_EQ(files.Attributes(R"(C:\here\here\here)").value_or(0), kAttributeFolder);
  std::string many = "C:";
  for (int i = 0; i < 41; ++i) many += R"(\here)";
  EXPECT_EQ(files.Attributes(many).number(), kPathNotFound);
}

TEST(Links, ToNothingAreMissingFiles) {
  TestMachine machine;
  machine.Link("dangling", "nothing");
  machine.Link("deeper", "nothing/there");
  FileSystem& files = machine.Open();
  EXPECT_EQ(files.Attributes(R"(C:\dangling)").number(), kFileNotFound);
  EXPECT_EQ(files.Attributes(R"(C:\deeper)").number(), kPathNotFound);
  EXPECT_EQ(files.Delete(R"(C:\dangling)").number(), kFileNotFound);
  EXPECT_TRUE(Found(files, R"(C:\*)").empty());

  EXPECT_TRUE(files.Write(R"(C:\dangling)", "now there").ok());
  EXPECT_EQ(machine.Get("nothing"), "now there");
  EXPECT_TRUE(std::filesystem::is_symlink(machine.C("dangling")));
}

TEST(Links, AreWrittenThroughButDeletedAndRenamedThemselves) {
  TestMachine machine;
  machine.Put("real.txt", "old");
  machine.Link("link.txt", "real.txt");
  FileSystem& files = machine.Open();

  EXPECT_TRUE(files.Write(R"(C:\link.txt)", "new").ok());
  EXPECT_TRUE(files.Move(R"(C:\link.txt)", R"(C:\other.txt)").ok());
  EXPECT_THAT(machine.NamesIn(""), ElementsAre("other.txt", "real.txt"));
  EXPECT_TRUE(files.Delete(R"(C:\other.txt)").ok());

  EXPECT_THAT(machine.NamesIn(""), ElementsAre("real.txt"));
  EXPECT_EQ(machine.Get("real.txt"), "new");
}

TEST(Links, AreListedByTheirNameAsWhatTheyLeadTo) {
  TestMachine machine;
  machine.Put("real/x.txt", "12345");
  machine.Link("dir", "real");
  machine.Link("file.txt", "real/x.txt");
  const std::vector<FileEntry> found = machine.Open().Find(R"(C:\*)").value();
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0].name, "dir");
  EXPECT_EQ(found[0].attributes, kAttributeFolder);
  EXPECT_EQ(found[1].name, "file.txt");
  EXPECT_EQ(found[1].attributes, kAttributeArchive);
  EXPECT_EQ(found[1].size, 5U);
}

TEST(Links, OfADriveAtTheHostsRootLeadAnywhere) {
  TestMachine machine;
  const TempFolder outside;
  outside.Put("x.txt", "x");
  machine.Link("escape", outside.path());
  std::filesystem::create_symlink("/", machine.path() / "dosdevices/z:");
  const std::string on_z = machine.OpenDrives().ToWindowsPath(machine.C("")).value();
  ASSERT_EQ(on_z, R"(C:\)");
  std::string path = "Z:" + machine.C("escape").string() + "/x.txt";
  EXPECT_EQ(Read(machine.Open(), path), "x");
  EXPECT_EQ(Read(machine.Open(), R"(C:\escape\x.txt)"), "76");
}

class ProfileLinks : public ::testing::Test {
 protected:
  ProfileLinks() {
    home_.Put("Desktop/a.txt", "a");
    home_.Put("secret.txt", "secret");
    std::filesystem::create_symlink(home_.path() / "secret.txt", home_.path() / "Desktop/up.txt");
    std::filesystem::create_symlink("../secret.txt", home_.path() / "Desktop/up2.txt");
    std::filesystem::create_symlink("a.txt", home_.path() / "Desktop/same.txt");
    machine_.Link("users/anna/Desktop", home_.path() / "Desktop");
    machine_.Link("users/anna/My Documents", home_.path());
    machine_.Link("users/anna/Other", home_.path());
    machine_.Link("users/anna/Music/Desktop", home_.path());
    machine_.Link("Desktop", home_.path());
  }
  TestMachine machine_;
  TempFolder home_;
};

TEST_F(ProfileLinks, AreNoDoorsUnlessAskedFor) {
  FileSystem& files = machine_.Open();
  const Result<std::uint32_t> refused = files.Attributes(R"(C:\users\anna\Desktop\a.txt)");
  EXPECT_EQ(refused.number(), kPathNotFound);
  EXPECT_THAT(refused.error().description, HasSubstr("leads outside the machine"));
  EXPECT_THAT(Found(files, R"(C:\users\anna\*)"), ElementsAre("Music"));
}

TEST_F(ProfileLinks, AreDoorsWhenAskedFor) {
  FileSystem& files = machine_.Open("C:\\", true);
  EXPECT_EQ(Read(files, R"(C:\Users\ANNA\desktop\A.TXT)"), "a");
  EXPECT_EQ(Read(files, R"(C:\users\anna\My Documents\Desktop\a.txt)"), "a");
  EXPECT_TRUE(files.Write(R"(C:\users\anna\Desktop\new.txt)", "new").ok());
  EXPECT_EQ(home_.Get("Desktop/new.txt"), "new");
  EXPECT_EQ(files.Attributes(R"(C:\users\anna\Desktop)").value_or(0), kAttributeFolder);
  EXPECT_EQ(files.CreateFolder(R"(C:\users\anna\Desktop)").number(), kPathFileAccess);
  EXPECT_THAT(Found(files, R"(C:\users\anna\*)"), ElementsAre("Desktop", "Music", "My Documents"));
}

TEST_F(ProfileLinks, BehindADoorNothingLeadsOutOfIt) {
  FileSystem& files = machine_.Open("C:\\", true);
  EXPECT_EQ(Read(files, R"(C:\users\anna\Desktop\same.txt)"), "a");
  EXPECT_EQ(Read(files, R"(C:\users\anna\Desktop\up.txt)"), "76");
  EXPECT_EQ(Read(files, R"(C:\users\anna\Desktop\up2.txt)"), "76");
  EXPECT_EQ(files.Write(R"(C:\users\anna\Desktop\up2.txt)", "hacked").number(), kPathNotFound);
  EXPECT_EQ(home_.Get("secret.txt"), "secret");
}

TEST_F(ProfileLinks, OtherNamesAndPlacesAreNoDoors) {
  FileSystem& files = machine_.Open("C:\\", true);
  EXPECT_EQ(files.Attributes(R"(C:\users\anna\Other)").number(), kPathNotFound);
  EXPECT_EQ(files.Attributes(R"(C:\users\anna\Music\Desktop)").number(), kPathNotFound);
  EXPECT_EQ(files.Attributes(R"(C:\Desktop)").number(), kPathNotFound);
}

}  // namespace
}  // namespace zent
