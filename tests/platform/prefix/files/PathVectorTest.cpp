#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "contracts/FileVectors.h"
#include "platform/prefix/files/TestMachine.h"
#include "platform/prefix/files/WindowsPath.h"
#include "support/posix/ChildProcess.h"

/// Answers of the Windows calls, recorded; the machine is set up as it was for the recording.
namespace zent {
namespace {

using nlohmann::json;
using testing::TestMachine;

json Vectors(const std::string& list) { return testing::FileVectors("paths.json", list); }

struct LeftOut {
  const char* path;
  int error;  // ours
  const char* reason;
};

constexpr LeftOut kOtherAttributes[] = {
    {"/top/w/a.txt", 0, "recorded: a path of the host; a slash is the root of the current drive"},
    {R"(Q:\x)", kPathNotFound, "recorded 2; documented for a missing drive: 3"},
    {R"(1:\x)", kPathNotFound, "recorded 2; documented for a missing drive: 3"},
    {R"(C:\top\w\a:b)", kBadFileName, "recorded 2: a plain name; it names a stream, none is kept"},
    {R"(C:\top\w\a.txt:stream)", kBadFileName, "recorded 2; as above"},
    {R"(\\?\C:/top/w/a.txt)", kPathNotFound, "recorded 66, in doubt; no slash in a literal path"},
    {R"(\\nosuch\share\f)", kPathNotFound, "recorded 66; documented: 53 or 67"},
    {R"(\\nosuch)", kPathNotFound, "recorded 66; documented: 53 or 67"},
    {R"(C:\top\w\NUL)", kBadFileName, "recorded 32: a device; no device is part of the machine"},
    {"NUL", kBadFileName, "a device"},
    {"nul.txt", kBadFileName, "a device"},
    {"CON", kBadFileName, "a device"},
    {R"(C:\top\w\COM1)", kBadFileName, "a device"},
    {"LPT1", kBadFileName, "a device"},
};

const LeftOut* FindLeftOut(std::span<const LeftOut> rows, const std::string& path) {
  for (const LeftOut& row : rows) {
    if (path == row.path) return &row;
  }
  return nullptr;
}

class PathVectors : public ::testing::Test {
 protected:
  PathVectors() {
    machine_.MakeFolder("top/w/Dir/Sub");
    machine_.MakeFolder("windows");
    machine_.Put("top/w/Dir/File.TXT", "file");
    machine_.Put("top/w/a.txt", "a");
    std::filesystem::permissions(machine_.Put("top/w/read.txt", "read"),
                                 std::filesystem::perms(0444));
  }
  PrefixFileSystem& Files() { return machine_.Open(R"(C:\top\w\Dir)"); }
  TestMachine machine_;
};

TEST_F(PathVectors, AttributesOfPaths) {
  FileSystem& files = Files();
  for (const json& row : Vectors("paths")) {
    const auto path = row[0].get<std::string>();
    SCOPED_TRACE(path);
    const Result<std::uint32_t> attributes = files.Attributes(path);
    if (const LeftOut* const other = FindLeftOut(kOtherAttributes, path)) {
      EXPECT_EQ(attributes.number(), other->error) << other->reason;
      continue;
    }
    EXPECT_EQ(attributes.number(), testing::RunTimeNumber(row[2]));
    if (attributes.ok()) {
      EXPECT_EQ(attributes.value(), row[1].get<std::uint32_t>());
    }
  }
}

TEST_F(PathVectors, FullPaths) {
  FileSystem& files = Files();
  for (const json& row : Vectors("paths")) {
    const auto path = row[0].get<std::string>();
    SCOPED_TRACE(path);
    const Result<std::string> full = files.FullPath(path);
    if (path == "/top/w/a.txt") {  // recorded: a path of the host, see above
      EXPECT_EQ(full.value_or(""), R"(C:\top\w\a.txt)");
    } else if (row[3].is_null()) {
      EXPECT_EQ(full.number(), testing::RunTimeNumber(row[2]));
    } else {
      EXPECT_EQ(full.value_or("failed"), row[3].get<std::string>());
    }
  }
}

constexpr LeftOut kOtherNewFiles[] = {
    {R"(C:\top\w\NUL)", kBadFileName, "recorded: opens the device; it never reaches the disk"},
    {R"(C:\top\w\aux.txt)", kBadFileName, "recorded 80; as above"},
    {R"(C:\top\w\a:b)", kBadFileName, "recorded: a plain name; it names a stream, none is kept"},
    {R"(C:\top\w\new1.TXT)", 0, "recorded 80 of a call that only creates; a write replaces"},
};

TEST_F(PathVectors, NewFiles) {
  FileSystem& files = Files();
  for (const json& row : Vectors("new_files")) {
    const auto path = row[0].get<std::string>();
    SCOPED_TRACE(path);
    const Status written = files.Write(path, "new");
    if (const LeftOut* const other = FindLeftOut(kOtherNewFiles, path)) {
      EXPECT_EQ(written.number(), other->error) << other->reason;
      continue;
    }
    EXPECT_EQ(written.number(), testing::RunTimeNumber(row[1]));
    if (!row[2].is_null()) {
      EXPECT_EQ(machine_.Get("top/w/" + row[2].get<std::string>()), "new");
    }
  }
  const std::vector<std::string> names = machine_.NamesIn("top/w");
  const std::set<std::string> set(names.begin(), names.end());
  EXPECT_TRUE(set.contains("New1.txt"));  // replaced, its spelling kept
  for (const char* name : {"new1.TXT", "NUL", "aux.txt", "a:b", "New6"}) {
    EXPECT_FALSE(set.contains(name)) << name;
  }
}

class OutsideNames : public ::testing::Test {
 protected:
  OutsideNames() {
    machine_.Put("aBC.txt", "two");
    machine_.Put("Abc.txt", "one");
    machine_.Put("uml\xC3\xA4ut.txt", "uml");
    machine_.Put("\xC3\x9F.txt", "ss");
    machine_.Put("latin\xE4.txt", "lat");
    for (const char* name : {"trail.", "co:lon", "back\\slash", "quest?ion"}) {
      machine_.Put(name, "x");
    }
    machine_.Put("greek\xCE\xB1.txt", "g");
    machine_.Put("real/x.txt", "x");
    machine_.Put("locked.txt", "lk");
    machine_.Put("noperm/x.txt", "x");
    machine_.Put("noread.txt", "x");
    machine_.Link("dangling", "nothing");
    machine_.Link("linkdir", "real");
    machine_.Link("linkfile.txt", "Abc.txt");
    std::filesystem::permissions(machine_.C("noperm"), std::filesystem::perms::none);
    std::filesystem::permissions(machine_.C("noread.txt"), std::filesystem::perms::none);
    testing::GiveToOrdinaryUser(machine_.path());
  }

  /// "NAME ATTRIBUTES READ" of a name, with error numbers where there are no attributes or bytes.
  static std::string Seen(FileSystem& files, const std::string& name) {
    const Result<std::uint32_t> attributes = files.Attributes("C:\\" + name);
    const Result<std::string> read = ReadWholeFile(files, "C:\\" + name);
    return name + " " +
           (attributes.ok() ? std::to_string(attributes.value())
                            : "error " + std::to_string(attributes.number())) +
           " " + (read.ok() ? read.value() : "error " + std::to_string(read.number())) + "\n";
  }

  static std::string Recorded(const json& row) {
    return row[0].get<std::string>() + " " +
           (row[1].is_null() ? "error " + std::to_string(testing::RunTimeNumber(row[2]))
                             : std::to_string(row[1].get<int>())) +
           " " +
           (row[3].is_null() ? "error " + std::to_string(testing::RunTimeNumber(row[4]))
                             : row[3].get<std::string>()) +
           "\n";
  }

  TestMachine machine_;
};

TEST_F(OutsideNames, AreFoundAsRecorded) {
  FileSystem& files = machine_.Open();
  // Which of two other spellings comes first is up to the disk.
  const std::string first_spelling = [&] {
    for (const auto& entry : std::filesystem::directory_iterator(machine_.C(""))) {
      std::string name = entry.path().filename().string();
      if (name == "Abc.txt" || name == "aBC.txt") return name;
    }
    return std::string();
  }();
  std::string expected;
  for (const json& row : Vectors("names_from_outside")) {
    json of_this_disk = row;
    if (row[0] == "abc.txt" || row[0] == "ABC.TXT") of_this_disk[3] = machine_.Get(first_spelling);
    expected += Recorded(of_this_disk);
  }
  const std::string seen = testing::RunAsOrdinaryUser([&] {
    std::string text;
    for (const json& row : Vectors("names_from_outside")) {
      text += Seen(files, row[0].get<std::string>());
    }
    return text;
  });
  EXPECT_EQ(seen, expected);
}

TEST_F(OutsideNames, AreListedAsFarAsAPathCanNameThem) {
  // Recorded with a stand-in for each sign that is missing from the code page, or as they are.
  const std::map<std::string, const char*> left_out = {
      {"back\\slash", "not listed: its path would lead into a folder"},
      {"co:lon", "not listed: its path names a stream"},
      {"greeka.txt", "listed with its own letter, as names here are not cut to a code page"},
      {"latin?.txt", "not listed: its bytes are no text"},
      {"quest?ion", "not listed: no path holds it"},
      {"trail.", "not listed: its path loses the dot"},
  };
  std::map<std::string, std::pair<std::uint32_t, std::uint64_t>> expected;
  for (const json& row : Vectors("listing_from_outside")) {
    if (left_out.contains(row[0])) continue;
    constexpr std::uint32_t kOurBits = 0x37;  // without the bit that tells a link
    expected[row[0]] = {row[1].get<std::uint32_t>() & kOurBits, row[2].get<std::uint64_t>()};
  }
  expected["greek\xCE\xB1.txt"] = {kAttributeArchive, 1};

  std::map<std::string, std::pair<std::uint32_t, std::uint64_t>> found;
  const Result<std::vector<FileEntry>> entries = machine_.Open().Find(R"(C:\*)");
  ASSERT_TRUE(entries.ok());
  for (const FileEntry& entry : entries.value()) found[entry.name] = {entry.attributes, entry.size};
  EXPECT_EQ(found, expected);
}

TEST(ErrorVectors, TextsOfTheErrorNumbers) {
  for (const json& row : Vectors("error_texts")) {
    EXPECT_EQ(StandardError(row[0].get<int>()).description, row[1].get<std::string>());
  }
}

TEST(ErrorVectors, NumbersOfTheSystemErrors) {
  for (const json& row : Vectors("error_numbers")) {
    SCOPED_TRACE(row[1].get<std::string>());
    EXPECT_EQ(RuntimeErrorNumber(static_cast<SystemError>(row[0].get<std::uint32_t>())),
              row[2].get<int>());
  }
}

}  // namespace
}  // namespace zent
