#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <nlohmann/json.hpp>

#include "contracts/FileVectors.h"
#include "platform/win32/files/TestFolder.h"

/// Answers of the Windows calls, recorded; the folder is set up as it was for the recording.
namespace zent {
namespace {

using nlohmann::json;
using testing::Found;
using testing::TopFolder;

json Vectors(const std::string& list) { return testing::FileVectors("paths.json", list); }

struct Other {
  int error;  // ours
  const char* reason;
};
using Others = std::map<std::string, Other>;

const Others kOtherAttributes = {
    {"/top/w/a.txt", {0, "recorded: a path of the host; a slash is the root of the current drive"}},
    {R"(Q:\x)", {kPathNotFound, "recorded 2; documented for a missing drive: 3"}},
    {R"(1:\x)", {kPathNotFound, "recorded 2; documented for a missing drive: 3"}},
    {R"(C:\top\w\a:b)", {kBadFileName, "recorded 2: a plain name; it names a stream"}},
    {R"(C:\top\w\a.txt:stream)", {kBadFileName, "recorded 2; as above"}},
    {R"(\\?\C:/top/w/a.txt)", {kPathNotFound, "recorded 66; no slash in a literal path"}},
    {R"(\\nosuch\share\f)", {kPathNotFound, "recorded 66; documented: 53 or 67"}},
    {R"(\\nosuch)", {kPathNotFound, "recorded 66; documented: 53 or 67"}},
    {R"(C:\top\w\NUL)", {kBadFileName, "recorded 32: a device, which is no file"}},
    {"NUL", {kBadFileName, "a device"}},
    {"nul.txt", {kBadFileName, "a device"}},
    {"CON", {kBadFileName, "a device"}},
    {R"(C:\top\w\COM1)", {kBadFileName, "a device"}},
    {"LPT1", {kBadFileName, "a device"}},
};

class PathVectors : public ::testing::Test {
 protected:
  PathVectors() {
    top_.MakeFolder("Dir/Sub");
    top_.Put("Dir/File.TXT", "file");
    top_.Put("a.txt", "a");
    SetFileAttributesW(top_.Put("read.txt", "read").c_str(), FILE_ATTRIBUTE_READONLY);
  }
  TopFolder top_;
  Win32FileSystem files_{R"(C:\top\w\Dir)"};
};

TEST_F(PathVectors, AttributesOfPaths) {
  for (const json& row : Vectors("paths")) {
    const auto path = row[0].get<std::string>();
    SCOPED_TRACE(path);
    const Result<std::uint32_t> attributes = files_.Attributes(path);
    const auto other = kOtherAttributes.find(path);
    if (other != kOtherAttributes.end()) {
      EXPECT_EQ(attributes.number(), other->second.error) << other->second.reason;
      continue;
    }
    EXPECT_EQ(attributes.number(), testing::RunTimeNumber(row[2]));
    if (attributes.ok()) {
      EXPECT_EQ(attributes.value(), row[1].get<std::uint32_t>());
    }
  }
}

TEST_F(PathVectors, FullPaths) {
  for (const json& row : Vectors("paths")) {
    const auto path = row[0].get<std::string>();
    SCOPED_TRACE(path);
    const Result<std::string> full = files_.FullPath(path);
    if (path == "/top/w/a.txt") {  // recorded: a path of the host, see above
      EXPECT_EQ(full.value_or(""), R"(C:\top\w\a.txt)");
    } else if (row[3].is_null()) {
      EXPECT_EQ(full.number(), testing::RunTimeNumber(row[2]));
    } else {
      EXPECT_EQ(full.value_or("failed"), row[3].get<std::string>());
    }
  }
}

const Others kOtherNewFiles = {
    {R"(C:\top\w\NUL)", {kBadFileName, "recorded: opens the device; no file comes of it"}},
    {R"(C:\top\w\aux.txt)", {kBadFileName, "recorded 80; as above"}},
    {R"(C:\top\w\a:b)", {kBadFileName, "recorded: a plain name; it names a stream"}},
    {R"(C:\top\w\new1.TXT)", {0, "recorded 80 of a call that only creates; a write replaces"}},
};

TEST_F(PathVectors, NewFiles) {
  for (const json& row : Vectors("new_files")) {
    const auto path = row[0].get<std::string>();
    SCOPED_TRACE(path);
    const Status written = files_.Write(path, "new");
    const auto other = kOtherNewFiles.find(path);
    if (other != kOtherNewFiles.end()) {
      EXPECT_EQ(written.number(), other->second.error) << other->second.reason;
      continue;
    }
    EXPECT_EQ(written.number(), testing::RunTimeNumber(row[1]));
    if (!row[2].is_null()) {
      EXPECT_EQ(top_.Get(row[2].get<std::string>()), "new");
    }
  }
  const std::vector<std::string> found = Found(files_, R"(C:\top\w\new1.txt)");
  EXPECT_EQ(found, std::vector<std::string>{"New1.txt"});  // replaced, its spelling kept
  EXPECT_TRUE(Found(files_, R"(C:\top\w\New6)").empty());
}

}  // namespace
}  // namespace zent
