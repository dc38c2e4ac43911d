#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>

#include "contracts/FileVectors.h"
#include "platform/prefix/files/TestMachine.h"

/// Search patterns with what the published rule of the file systems finds on long names, and what
/// was recorded where both agree; "." and ".." and names found by a short name are not part of it.
namespace zent {
namespace {

using nlohmann::json;
using testing::Found;
using testing::TestMachine;

json Vectors(const std::string& list) { return testing::FileVectors("wildcards.json", list); }

class WildcardVectors : public ::testing::Test {
 protected:
  WildcardVectors() {
    for (const json& row : Vectors("names")) {
      const std::string name = row[0];
      const auto attributes = row[1].get<std::uint32_t>();
      if ((attributes & kAttributeFolder) != 0) {
        machine_.MakeFolder("top/w/" + name);
      } else {
        machine_.Put("top/w/" + name);
        // A leading dot hides a name in the recording only.
        if (name.front() == '.') continue;
        EXPECT_TRUE(Files().SetAttributes("C:\\top\\w\\" + name, attributes).ok());
      }
    }
  }
  PrefixFileSystem& Files() { return machine_.Open(R"(C:\top\w)"); }
  TestMachine machine_;
};

struct OtherResult {
  std::vector<std::string> found;
  const char* reason;
};
const std::map<std::string, OtherResult> kOtherResults = {
    {R"(a.dll\*)", {{"76"}, "recorded 123; what is no folder has no path"}},
    {">1.txt", {{}, "recorded a1.txt: an inner sign of the system, of no documented meaning"}},
    {"a>>.txt", {{}, "recorded a22.txt: as above"}},
};

TEST_F(WildcardVectors, FindTheNames) {
  FileSystem& files = Files();
  for (const json& row : Vectors("patterns")) {
    const std::string pattern = row[0];
    SCOPED_TRACE(pattern);
    std::vector<std::string> expected = row[2];
    const auto error = row[1].get<std::uint32_t>();
    // "File not found" is how the call says that nothing matches.
    if (error > 2) {
      expected = {std::to_string(RuntimeErrorNumber(static_cast<SystemError>(error)))};
    }
    const auto other = kOtherResults.find(pattern);
    if (other != kOtherResults.end()) expected = other->second.found;
    EXPECT_EQ(Found(files, "C:\\top\\w\\" + pattern), expected);
  }
}

TEST_F(WildcardVectors, GiveTheAttributes) {
  std::map<std::string, std::uint32_t> expected;
  for (const json& row : Vectors("names")) {
    const std::string name = row[0];
    const auto bits = row[1].get<std::uint32_t>();
    expected[name] = name.front() == '.' ? bits & ~kAttributeHidden : bits;
  }
  std::map<std::string, std::uint32_t> found;
  const Result<std::vector<FileEntry>> entries = Files().Find("*");
  ASSERT_TRUE(entries.ok());
  for (const FileEntry& entry : entries.value()) found[entry.name] = entry.attributes;
  EXPECT_EQ(found, expected);
}

TEST_F(WildcardVectors, TakeEveryFormOfPath) {
  FileSystem& files = Files();
  for (const json& row : Vectors("path_forms")) {
    const std::string path = row[0];
    SCOPED_TRACE(path);
    const std::vector<std::string> found = Found(files, path);
    const auto error = row[1].get<std::uint32_t>();
    if (error > 2) {
      ASSERT_EQ(found.size(), 1U);
      EXPECT_EQ(found[0], std::to_string(RuntimeErrorNumber(static_cast<SystemError>(error))));
    } else if (error == 2) {
      EXPECT_TRUE(found.empty());
    } else {
      ASSERT_FALSE(found.empty());
      EXPECT_EQ(found[0], row[2].get<std::string>());
    }
  }
}

}  // namespace
}  // namespace zent
