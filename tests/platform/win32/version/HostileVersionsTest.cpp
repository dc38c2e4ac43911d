// Resources cut short and resources with random bytes in them. The system searches them; whatever
// they say, the program goes on and answers with texts of bounded length.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "base/Utf.h"
#include "contracts/PeBuilder.h"
#include "contracts/VersionCases.h"
#include "platform/win32/version/Win32VersionResources.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

constexpr std::size_t kLongestValue = 0xFFFF;

VersionNode PlainRoot() {
  return Root({StringFileInfo({Table("040904B0", {Text("CompanyName", "Zentware"),
                                                  Text("FileVersion", "3.06.0012")}),
                               Table("040704E4", {Text("FileVersion", "7.0")})}),
               VarFileInfo("\x09\x04\xB0\x04\x07\x04\xE4\x04")});
}

class HostileVersions : public ::testing::Test {
 protected:
  /// Asks for all that a record holds of a library with this resource.
  void AskForAll(const std::string& version) {
    // A name of its own each time: the system keeps a library that it could not unload.
    const std::string name = std::to_string(++files_) + ".dll";
    const auto info = resources_.Open(folder_.Put(name, BuildLibrary(version)).string());
    if (!info.ok()) return;
    EXPECT_LE(info.value()->QueryBytes("\\").value_or("").size(), kLongestValue);
    EXPECT_LE(info.value()->QueryBytes(R"(\VarFileInfo\Translation)").value_or("").size(),
              kLongestValue);
    for (const char* table : {"040904B0", "040704E4"}) {
      for (const char* key : kRecordKeys) {
        const std::string path = std::string(R"(\StringFileInfo\)") + table + '\\' + key;
        const std::string text = info.value()->QueryText(path).value_or("");
        EXPECT_TRUE(IsUtf8(text));
        EXPECT_EQ(text.find('\0'), std::string::npos);
        EXPECT_LE(text.size(), 3 * kLongestValue);
      }
    }
  }

 private:
  TempFolder folder_;
  Win32VersionResources resources_;
  int files_ = 0;
};

TEST_F(HostileVersions, EndAnywhere) {
  for (const VersionForm form : {VersionForm::Unicode, VersionForm::Ansi}) {
    const std::string whole = BuildVersion(PlainRoot(), form);
    for (std::size_t size = 1; size < whole.size(); size += 3) {
      SCOPED_TRACE(size);
      AskForAll(whole.substr(0, size));
    }
  }
}

TEST_F(HostileVersions, HoldRandomBytes) {
  std::mt19937 random(7);  // NOLINT(cert-msc51-cpp): the same bytes each time
  const std::string whole = BuildVersion(PlainRoot());
  for (int round = 0; round < 300; ++round) {
    SCOPED_TRACE(round);
    std::string version = whole;
    for (unsigned changes = random() % 8 + 1; changes > 0; --changes) {
      version[random() % version.size()] = static_cast<char>(random());
    }
    AskForAll(version);
  }
}

TEST_F(HostileVersions, ClaimTheGreatestLengths) {
  for (const std::uint16_t length :
       {std::uint16_t{0x8000}, std::uint16_t{0xFFFC}, std::uint16_t{0xFFFF}}) {
    SCOPED_TRACE(length);
    for (int level = 0; level < 4; ++level) {
      VersionNode root = PlainRoot();
      VersionNode* node = &root;
      for (int depth = 0; depth < level; ++depth) node = &node->children.back();
      node->length = length;
      AskForAll(BuildVersion(root));
      node->value_length = length;
      AskForAll(BuildVersion(root));
      if (node->children.empty()) break;
    }
  }
}

}  // namespace
}  // namespace zent::testing
