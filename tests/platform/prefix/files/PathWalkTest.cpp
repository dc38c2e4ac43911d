#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/prefix/files/PathWalk.h"
#include "platform/prefix/files/TestMachine.h"
#include "support/posix/ChildProcess.h"

namespace zent {
namespace {

using testing::TestMachine;

/// Where a path of drive C leads: the error number, "missing NAME" or the entry's name.
std::string Outcome(TestMachine& machine, std::string_view path) {
  const Drives& drives = machine.OpenDrives();
  const Result<Place> place = WalkTo(drives, ParseWindowsPath(path, R"(C:\)").value());
  if (!place.ok()) return std::to_string(place.number());
  return (place.value().exists() ? "" : "missing ") + place.value().entry.name;
}

TEST(WalkTo, FindsNamesInAnyCase) {
  TestMachine machine;
  machine.Put("Korvo/Data/Korvo.mdb");
  EXPECT_EQ(Outcome(machine, R"(C:\Korvo\Data\Korvo.mdb)"), "Korvo.mdb");
  EXPECT_EQ(Outcome(machine, R"(c:\KORVO\data\KORVO.MDB)"), "Korvo.mdb");
  EXPECT_EQ(Outcome(machine, R"(C:\Korvo\Data\)"), "Data");
  EXPECT_EQ(Outcome(machine, R"(C:\)"), ".");
}

TEST(WalkTo, TheExactSpellingComesFirst) {
  TestMachine machine;
  machine.Put("abc.txt", "small");
  machine.Put("ABC.TXT", "big");
  EXPECT_EQ(Outcome(machine, R"(C:\abc.txt)"), "abc.txt");
  EXPECT_EQ(Outcome(machine, R"(C:\ABC.TXT)"), "ABC.TXT");
}

TEST(WalkTo, AmongOtherSpellingsTheFirstOfTheFolderCounts) {
  TestMachine machine;
  machine.Put("abc.txt");
  machine.Put("ABC.TXT");
  const std::string first =
      std::filesystem::directory_iterator(machine.C(""))->path().filename().string();
  EXPECT_EQ(Outcome(machine, R"(C:\Abc.Txt)"), first);
}

TEST(WalkTo, FoldersOfTwoSpellingsAreTwo) {
  TestMachine machine;
  machine.Put("dir/one");
  machine.Put("DIR/two");
  EXPECT_EQ(Outcome(machine, R"(C:\dir\one)"), "one");
  EXPECT_EQ(Outcome(machine, R"(C:\DIR\one)"), "missing one");
}

TEST(WalkTo, AMissingLastPartKeepsTheGivenSpelling) {
  TestMachine machine;
  machine.MakeFolder("Dir");
  EXPECT_EQ(Outcome(machine, R"(C:\dir\New.TXT)"), "missing New.TXT");
  EXPECT_EQ(Outcome(machine, R"(C:\nope\New.TXT)"), "76");
}

TEST(WalkTo, BelowAFileThereIsNoPath) {
  TestMachine machine;
  machine.Put("a.txt");
  EXPECT_EQ(Outcome(machine, R"(C:\a.txt\b)"), "76");
}

TEST(WalkTo, ADriveThatIsNotThere) {
  TestMachine machine;
  EXPECT_EQ(Outcome(machine, R"(Q:\a)"), "76");
  EXPECT_EQ(Outcome(machine, R"(Q:\)"), "76");
}

TEST(WalkTo, ANameLongerThanTheDiskTakes) {
  TestMachine machine;
  const std::string name(300, 'x');
  EXPECT_EQ(Outcome(machine, R"(\\?\C:\)" + name), "75");
  EXPECT_EQ(Outcome(machine, R"(\\?\C:\)" + name + R"(\a)"), "75");
}

TEST(WalkTo, NamesThatNoWindowsPathHoldsAreNotMet) {
  TestMachine machine;
  machine.Put("trail.");
  machine.Put("latin\xE4.txt");
  EXPECT_EQ(Outcome(machine, R"(C:\trail.)"), "missing trail");
  EXPECT_EQ(Outcome(machine, "C:\\latin\xC3\xA4.txt"), "missing latin\xC3\xA4.txt");
}

TEST(WalkTo, PipesAreFoundButNotEntered) {
  TestMachine machine;
  ::mkfifo(machine.C("pipe").c_str(), 0666);
  EXPECT_EQ(Outcome(machine, R"(C:\pipe)"), "pipe");
  EXPECT_EQ(Outcome(machine, R"(C:\pipe\a)"), "76");
}

TEST(WalkTo, AFolderWithoutRightsIsRefused) {
  TestMachine machine;
  machine.Put("noperm/x.txt");
  ::chmod(machine.C("noperm").c_str(), 0);
  testing::GiveToOrdinaryUser(machine.path());
  EXPECT_EQ(testing::RunAsOrdinaryUser([&] { return Outcome(machine, R"(C:\noperm\x.txt)"); }),
            "75");
}

TEST(WalkTo, HoldsTheFolderThatItFound) {
  // Given a place that was found,
  TestMachine machine;
  machine.Put("dir/a.txt", "inside");
  const testing::TempFolder outside;
  outside.Put("a.txt", "outside");
  const Drives& drives = machine.OpenDrives();
  const Result<Place> place = WalkTo(drives, ParseWindowsPath(R"(C:\dir\a.txt)", R"(C:\)").value());
  ASSERT_TRUE(place.ok());

  // when its folder is exchanged for a link to another one,
  std::filesystem::rename(machine.C("dir"), machine.C("moved"));
  machine.Link("dir", outside.path());

  // then what is done at the place is done in the folder that was found.
  const FolderEntry& entry = place.value().entry;
  EXPECT_EQ(::unlinkat(entry.folder.get(), entry.name.c_str(), 0), 0);
  EXPECT_EQ(outside.Get("a.txt"), "outside");
  EXPECT_TRUE(machine.NamesIn("moved").empty());
}

}  // namespace
}  // namespace zent
