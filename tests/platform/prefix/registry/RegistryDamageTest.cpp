// Damaged files: they are refused, or every line of theirs outlives a write.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "platform/prefix/registry/RegistryFile.h"
#include "platform/prefix/registry/RegistryMachines.h"

namespace zent {
namespace {

using testing::AreInOrder;
using testing::kNow;
using testing::LinesOf;

constexpr std::string_view kSmall =
    "WINE REGISTRY Version 2\n"
    ";; All keys relative to REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n"
    "\n"
    "#arch=win64\n"
    "\n"
    "[Software\\\\Korvo] 1700000000\n"
    "#time=1da1747c7059687\n"
    "#class=\"c\"\n"
    "@=\"default\"\n"
    "\"bytes\"=hex:01,\\\n"
    "  02,\\\n"
    "  03\n"
    "\"number\"=dword:0000002a\n"
    "\"text\"=\"C:\\\\K\\\"\\xe4\"\n"
    "\n"
    "[Volatile Environment] 1700000001\n"
    "#time=1da1747c79e2d0e\n"
    "\"v\"=str(2):\"%x%\"\n";

bool IsTimeLine(const std::string& line) {
  constexpr std::string_view kMark = "#time=";
  return line.rfind(kMark, 0) == 0 && line.size() > kMark.size() &&
         line.find_first_not_of("0123456789abcdefABCDEF", kMark.size()) == std::string::npos;
}

/// The lines of `text` without the key line and the times that setting a new value may change.
std::vector<std::string> LinesToKeep(const std::string& text, const RegistryEdit& edit) {
  std::vector<std::string> lines = LinesOf(text.substr(0, edit.from));
  std::vector<std::string> touched = LinesOf(text.substr(edit.from, edit.to - edit.from));
  if (!touched.empty()) touched.erase(touched.begin());
  touched.erase(std::remove_if(touched.begin(), touched.end(), IsTimeLine), touched.end());
  const std::vector<std::string> behind = LinesOf(text.substr(edit.to));
  lines.insert(lines.end(), touched.begin(), touched.end());
  lines.insert(lines.end(), behind.begin(), behind.end());
  return lines;
}

/// Sets a value in a file that may be damaged; the checks of both tests below.
void CheckWrite(const std::string& text, const KeyPath& path) {
  Result<RegistryFile> file = RegistryFile::Parse(text, "user.reg");
  if (!file.ok()) {
    ASSERT_EQ(file.number(), kInvalidFileFormat);
    return;
  }
  const RegistryEdit edit = file.value().EditText(path, "added", "x", kNow);
  const std::string after = file.value().TextAfter(edit);
  file.value().Apply(edit, after);
  Result<RegistryFile> again = RegistryFile::Parse(after, "user.reg");
  ASSERT_TRUE(again.ok()) << after;
  ASSERT_TRUE(AreInOrder(LinesToKeep(text, edit), LinesOf(after))) << after;

  const Result<RegistryFile> before = RegistryFile::Parse(text, "user.reg");
  for (const KeyPath& key : {KeyPath{"Software", "Korvo"}, KeyPath{"Volatile Environment"}}) {
    for (const char* name : {"", "bytes", "number", "text", "v"}) {
      const std::optional<KeyId> old_key = before.value().FindKey(key);
      if (!old_key) continue;
      const std::optional<RegistryValue> old = before.value().FindValue(*old_key, name);
      for (const RegistryFile* read : {&file.value(), &again.value()}) {
        const std::optional<KeyId> new_key = read->FindKey(key);
        ASSERT_TRUE(new_key);
        const std::optional<RegistryValue> now = read->FindValue(*new_key, name);
        ASSERT_EQ(now.has_value(), old.has_value()) << name << "\n" << after;
        if (!old) continue;
        ASSERT_EQ(now->type, old->type);
        ASSERT_EQ(now->data, old->data);
      }
    }
  }
  for (const RegistryFile* read : {&file.value(), &again.value()}) {
    const std::optional<KeyId> key = read->FindKey(path);
    ASSERT_TRUE(key);
    ASSERT_EQ(read->FindValue(*key, "added").value_or(RegistryValue{}).data, std::string("x\0", 2));
  }
}

TEST(RegistryDamage, HalfAFileIsRefusedOrKept) {
  int accepted = 0;
  for (std::size_t size = 0; size <= kSmall.size(); ++size) {
    SCOPED_TRACE(size);
    const std::string half(kSmall.substr(0, size));
    if (RegistryFile::Parse(half, "user.reg").ok()) ++accepted;
    CheckWrite(half, {"Software", "Korvo"});
    CheckWrite(half, {"Software", "New"});
    CheckWrite(half, {"Zz"});
    if (::testing::Test::HasFatalFailure()) return;
  }
  // At the end of a line, where nothing shows that more belongs to it, and behind the closing quote
  // or last digit of such a line.
  const auto lines = std::count(kSmall.begin(), kSmall.end(), '\n');
  EXPECT_EQ(accepted, lines - 2 + 4);
}

TEST(RegistryDamage, RandomDamageIsRefusedOrKept) {
  constexpr int kRounds = 20000;
  constexpr std::string_view kBytes = "[]\"\\=@#,:;\n\r \t0afxhexdword\0\xe4";
  std::mt19937 random(20260101);
  const auto below = [&](std::size_t bound) { return random() % bound; };
  for (int round = 0; round < kRounds; ++round) {
    std::string text(kSmall);
    for (std::size_t edits = 1 + below(6); edits > 0; --edits) {
      const std::size_t at = below(text.size());
      switch (below(4)) {
        case 0:
          text[at] = kBytes[below(kBytes.size())];
          break;
        case 1:
          text.insert(at, 1, kBytes[below(kBytes.size())]);
          break;
        case 2:
          text.erase(at, 1 + below(20));
          break;
        default:
          text.insert(at, text.substr(below(text.size()), below(60)));
          break;
      }
    }
    SCOPED_TRACE(text);
    CheckWrite(text, {"Software", "Korvo"});
    CheckWrite(text, {"Software", "New"});
    if (::testing::Test::HasFatalFailure()) return;
  }
}

TEST(RegistryDamage, ManyLevelsDoNotGrowTheIndex) {
  std::string text = "WINE REGISTRY Version 2\n";
  for (int line = 0; line < 20; ++line) {
    text += "[";
    for (int i = 0; i < 20000; ++i) text += "x\\\\";
    text += "y" + std::to_string(line) + "] 1\n";
  }
  Result<RegistryFile> file = RegistryFile::Parse(text, "user.reg");
  ASSERT_TRUE(file.ok());
  EXPECT_TRUE(file.value().FindKey(KeyPath(20000, "X")));
  EXPECT_FALSE(file.value().FindKey(KeyPath(20001, "X")));
}

}  // namespace
}  // namespace zent
