#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "ProbeFile.h"
#include "base/Utf.h"
#include "contracts/PeBuilder.h"
#include "contracts/VersionCases.h"
#include "platform/prefix/version/PeResources.h"
#include "platform/prefix/version/VersionBlock.h"

// Files cut at every byte and files with random bytes in them: whatever they say, the reader ends,
// stays within its bounds and answers with texts.

namespace zent::testing {
namespace {

constexpr std::size_t kLongestValue = 0xFFFF;
constexpr std::uint64_t kMostBytesAsked = 4'000'000;
constexpr std::size_t kMostReads = 12;

const std::string kPlainVersion =
    BuildVersion(Root({StringFileInfo({Table("040904B0", {Text("CompanyName", "Zentware"),
                                                          Text("FileVersion", "3.06.0012")}),
                                       Table("040704E4", {Text("FileVersion", "7.0")})}),
                       VarFileInfo("\x09\x04\xB0\x04\x07\x04\xE4\x04")}));

const std::string kOldVersion = BuildVersion(
    Root({StringFileInfo(
              {Table("040904B0", {Text("FileVersion", "1.6"), Text("ProductName", "ä")})}),
          VarFileInfo("\x09\x04\xB0\x04")}),
    VersionForm::Ansi);

/// Asks for all that a record holds; each answer is a text of bounded length.
void AskForAll(const VersionInfo& info) {
  EXPECT_LE(info.QueryBytes("\\").value_or("").size(), kLongestValue);
  const std::string translation = info.QueryBytes(R"(\VarFileInfo\Translation)").value_or("");
  EXPECT_LE(translation.size(), kLongestValue);
  for (const std::string& table :
       {std::string("040904B0"),
        translation.size() < 4 ? std::string("040704E4") : TableOfTranslation(translation)}) {
    for (const char* key : kRecordKeys) {
      const std::string text =
          info.QueryText(R"(\StringFileInfo\)" + table + '\\' + key).value_or("");
      EXPECT_TRUE(IsUtf8(text));
      EXPECT_EQ(text.find('\0'), std::string::npos);
      EXPECT_LE(text.size(), 3 * kLongestValue);
    }
  }
}

/// Reads `file` as a program file, within the bounds.
void ReadHostile(const std::string& file) {
  ProbeFile probe(file);
  Result<std::string> resource = ReadVersionResource(probe);
  EXPECT_LE(probe.reads(), kMostReads);
  EXPECT_LE(probe.asked(), kMostBytesAsked);
  if (resource.ok()) AskForAll(VersionBlock(std::move(resource.value())));
}

TEST(HostileVersion, EndsAtEveryByte) {
  for (const std::string& whole : {kPlainVersion, kOldVersion}) {
    const VersionBlock sound(whole);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      SCOPED_TRACE(size);
      // A copy of its own size, so that a read behind its end is one behind its memory.
      const VersionBlock cut{std::string(whole.data(), size)};
      AskForAll(cut);
      for (const char* key : kRecordKeys) {
        const std::string path = std::string(R"(\StringFileInfo\040904B0\)") + key;
        const std::optional<std::string> text = cut.QueryText(path);
        if (!text) continue;
        EXPECT_TRUE(sound.QueryText(path).value_or("none").starts_with(*text)) << key;
      }
    }
  }
}

TEST(HostileVersion, FileEndsAtEveryByte) {
  const std::string whole =
      BuildPe({.is_64_bit = false, .named_entries = 2, .resources = {{.data = kPlainVersion}}});
  for (std::size_t size = 0; size < whole.size(); ++size) {
    SCOPED_TRACE(size);
    ReadHostile(std::string(whole.data(), size));
  }
}

/// Changes up to eight numbers or bytes of `file` to the ones that readers trip over.
class Mutator {
 public:
  explicit Mutator(std::uint32_t seed) : random_(seed) {}

  std::string Mutated(std::string file, std::size_t from) {
    for (std::uint32_t changes = Below(8) + 1; changes > 0; --changes) {
      const std::string patch = Patch();
      const std::size_t last = file.size() - patch.size();
      file.replace(from + Below(static_cast<std::uint32_t>(last - from + 1)), patch.size(), patch);
    }
    if (Below(8) == 0) file.resize(Below(static_cast<std::uint32_t>(file.size())));
    file.shrink_to_fit();
    return file;
  }

 private:
  std::string Patch() {
    constexpr std::array<std::uint32_t, 12> kNumbers = {
        0, 1, 2, 4, 6, 8, 0x7FFF, 0xFFFE, 0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    const std::uint32_t number = Below(2) == 0 ? kNumbers.at(Below(kNumbers.size())) : Below(2000);
    switch (Below(3)) {
      case 0:
        return {static_cast<char>(Below(256))};
      case 1:
        return U16(static_cast<std::uint16_t>(number));
      default:
        return U32(number);
    }
  }

  std::uint32_t Below(std::size_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

  std::mt19937 random_;
};

TEST(HostileVersion, HoldsRandomBytes) {
  Mutator mutator(20050102);
  for (const std::string& whole : {kPlainVersion, kOldVersion}) {
    for (int round = 0; round < 10'000; ++round) {
      AskForAll(VersionBlock(mutator.Mutated(whole, 0)));
    }
  }
}

TEST(HostileVersion, FileHoldsRandomBytes) {
  const std::string files[] = {BuildLibrary(kPlainVersion), BuildLibrary(kOldVersion),
                               BuildPe({.is_64_bit = false,
                                        .named_entries = 1,
                                        .resources = {{.type = 3, .data = "icon"},
                                                      {.language = 0x0407, .data = kPlainVersion},
                                                      {.language = 0x0409, .data = kOldVersion}}})};
  Mutator mutator(20050103);
  for (const std::string& file : files) {
    for (int round = 0; round < 5'000; ++round) {
      ReadHostile(mutator.Mutated(file, round % 2 == 0 ? 0 : kResourcesAt));
    }
  }
}

}  // namespace
}  // namespace zent::testing
