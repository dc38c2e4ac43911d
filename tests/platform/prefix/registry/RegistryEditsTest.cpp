#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/prefix/registry/RegistryFile.h"
#include "platform/prefix/registry/RegistryMachines.h"

namespace zent {
namespace {

using testing::AreInOrder;
using testing::kNow;
using testing::LinesOf;

/// The file after the value is set, checked to be what a fresh reading of it would be.
std::string SetText(const std::string& text, const KeyPath& path, const std::string& name,
                    const std::string& data) {
  Result<RegistryFile> file = RegistryFile::Parse(text, "user.reg");
  EXPECT_TRUE(file.ok());
  if (!file.ok()) return "(refused)";
  const RegistryEdit edit = file.value().EditText(path, name, data, kNow);
  std::string after = file.value().TextAfter(edit);
  if (!edit.empty()) file.value().Apply(edit, after);
  EXPECT_EQ(file.value().text(), after);

  Result<RegistryFile> again = RegistryFile::Parse(after, "user.reg");
  EXPECT_TRUE(again.ok());
  for (const RegistryFile* read : {&file.value(), &again.value()}) {
    const std::optional<KeyId> key = read->FindKey(path);
    EXPECT_TRUE(key);
    if (key) {
      EXPECT_EQ(read->FindValue(*key, name).value_or(RegistryValue{}).data, data + '\0');
    }
    EXPECT_TRUE(read->EditText(path, name, data, kNow + 1).empty());
  }
  // The index that was moved along leads to the same next edits as a new one.
  for (const KeyPath& next : {KeyPath{"a", "m"}, KeyPath{"Zz"}, path}) {
    EXPECT_EQ(file.value().TextAfter(file.value().EditText(next, "next", "y", kNow)),
              again.value().TextAfter(again.value().EditText(next, "next", "y", kNow)));
  }
  return after;
}

struct EditCase {
  const char* what;
  std::string before;
  KeyPath path;
  std::string name;
  std::string after;
};

const std::string kHead = "WINE REGISTRY Version 2\n;; user\n\n#arch=win64\n";
const std::string kTimes = " 1795253793\n#time=1dd799bcbb4dcc2\n";

const EditCase kEdits[] = {
    {"data are replaced and the times set",
     "\n[a] 12\n#time=34\n\"v\"=\"old\"\n",
     {"a"},
     "v",
     "\n[a]" + kTimes + "\"v\"=\"x\"\n"},
    {"the name takes the case given",
     "\n[a] 12\n#time=34\n\"v\"=\"old\"\n",
     {"A"},
     "V",
     "\n[a]" + kTimes + "\"V\"=\"x\"\n"},
    {"another type is replaced, with all its lines",
     "\n[a] 12\n#time=34\n\"u\"=\"1\"\n\"v\"=hex:01,\\\n  02,\\\n  03\n\"w\"=\"2\"\n",
     {"a"},
     "v",
     "\n[a]" + kTimes + "\"u\"=\"1\"\n\"v\"=\"x\"\n\"w\"=\"2\"\n"},
    {"a text of another type is replaced",
     "\n[a] 12\n#time=34\n\"v\"=str(2):\"x\"\n",
     {"a"},
     "v",
     "\n[a]" + kTimes + "\"v\"=\"x\"\n"},
    {"class and link lines stay",
     "\n[a] 12\n#time=34\n#class=\"c\"\n#other\n\"v\"=\"old\"\n",
     {"a"},
     "v",
     "\n[a]" + kTimes + "#class=\"c\"\n#other\n\"v\"=\"x\"\n"},
    {"a new value goes to its sorted place",
     "\n[a] 12\n#time=34\n\"A\"=\"1\"\n\"z\"=\"2\"\n",
     {"a"},
     "m",
     "\n[a]" + kTimes + "\"A\"=\"1\"\n\"m\"=\"x\"\n\"z\"=\"2\"\n"},
    {"... or to the end",
     "\n[a] 12\n#time=34\n\"A\"=\"1\"\n\n[b] 1\n",
     {"a"},
     "m",
     "\n[a]" + kTimes + "\"A\"=\"1\"\n\"m\"=\"x\"\n\n[b] 1\n"},
    {"the default value goes first",
     "\n[a] 12\n#time=34\n\" \"=\"1\"\n",
     {"a"},
     "",
     "\n[a]" + kTimes + "@=\"x\"\n\" \"=\"1\"\n"},
    {"a value after a long one",
     "\n[a] 12\n#time=34\n\"b\"=hex:01,\\\n  02\n\n[b] 1\n",
     {"a"},
     "m",
     "\n[a]" + kTimes + "\"b\"=hex:01,\\\n  02\n\"m\"=\"x\"\n\n[b] 1\n"},
    {"a remark stays above the value it stands above",
     "\n[a] 12\n#time=34\n\"b\"=\"1\"\n; of z\n\"z\"=\"2\"\n",
     {"a"},
     "m",
     "\n[a]" + kTimes + "\"b\"=\"1\"\n\"m\"=\"x\"\n; of z\n\"z\"=\"2\"\n"},
    {"nonsense stays",
     "\n[a] 12\n#time=34\nnonsense\n\"v=broken\n\"w\"=\"1\"\n\n[broken\n\"v\"=\"2\"\n",
     {"a"},
     "v",
     "\n[a]" + kTimes + "\"v\"=\"x\"\nnonsense\n\"v=broken\n\"w\"=\"1\"\n\n[broken\n\"v\"=\"2\"\n"},
    {"of a value that comes twice the last is replaced",
     "\n[a] 12\n#time=34\n\"v\"=\"1\"\n\n[b] 1\n\n[A] 56\n\"v\"=\"2\"\n",
     {"a"},
     "v",
     "\n[a] 12\n#time=34\n\"v\"=\"1\"\n\n[b] 1\n\n[A] 1795253793\n\"v\"=\"x\"\n"},
    {"of a key that comes twice the section with the value is changed",
     "\n[a] 12\n#time=34\n\"v\"=\"1\"\n\n[A] 56\n\"w\"=\"2\"\n",
     {"a"},
     "v",
     "\n[a]" + kTimes + "\"v\"=\"x\"\n\n[A] 56\n\"w\"=\"2\"\n"},
    {"a key without times gets none", "\n[a]\n\"v\"=\"1\"\n", {"a"}, "v", "\n[a]\n\"v\"=\"x\"\n"},
    {"a number alone is set",
     "\n[a] 12 ; remark\n\"v\"=\"1\"\n",
     {"a"},
     "v",
     "\n[a] 1795253793 ; remark\n\"v\"=\"x\"\n"},
    {"a key that has only subkeys gets a section before them",
     "\n[a\\\\b] 12\n",
     {"a"},
     "v",
     "\n[a]" + kTimes + "\"v\"=\"x\"\n\n[a\\\\b] 12\n"},
    {"a new key goes to its sorted place",
     "\n[a] 12\n\n[c] 12\n",
     {"B"},
     "v",
     "\n[a] 12\n\n[B]" + kTimes + "\"v\"=\"x\"\n\n[c] 12\n"},
    {"children stand before the next sibling",
     "\n[a] 12\n\n[a\\\\b] 12\n\n[a b] 12\n\n[c] 12\n",
     {"a", "c"},
     "v",
     "\n[a] 12\n\n[a\\\\b] 12\n\n[a\\\\c]" + kTimes + "\"v\"=\"x\"\n\n[a b] 12\n\n[c] 12\n"},
    {"a new key below the last one",
     "\n[a] 12\n\"w\"=\"1\"\n",
     {"a", "b"},
     "v",
     "\n[a] 12\n\"w\"=\"1\"\n\n[a\\\\b]" + kTimes + "\"v\"=\"x\"\n"},
    {"parents keep the spelling that they have",
     "\n[Soft\\\\K\\xe4\\\\x] 12\n",
     {"SOFT", "k\u00c4", "Y"},
     "v",
     "\n[Soft\\\\K\\xe4\\\\x] 12\n\n[Soft\\\\K\\xe4\\\\Y]" + kTimes + "\"v\"=\"x\"\n"},
    {"all missing levels are in the path",
     "\n[b] 12\n",
     {"a", "[x]", "c"},
     "v",
     "\n[a\\\\\\[x\\]\\\\c]" + kTimes + "\"v\"=\"x\"\n\n[b] 12\n"},
    {"the first key of a file", "", {"a"}, "v", "\n[a]" + kTimes + "\"v\"=\"x\"\n"},
    {"a value of the root", "\n[a] 12\n", {}, "v", "\n[]" + kTimes + "\"v\"=\"x\"\n\n[a] 12\n"},
    {"a remark stays above the key it stands above",
     "\n[a] 12\n\n; of c\n[c] 12\n",
     {"b"},
     "v",
     "\n[a] 12\n\n[b]" + kTimes + "\"v\"=\"x\"\n\n; of c\n[c] 12\n"},
    {"sections without empty lines between",
     "\n[a] 12\n[c] 12\n",
     {"b"},
     "v",
     "\n[a] 12\n\n[b]" + kTimes + "\"v\"=\"x\"\n\n[c] 12\n"},
    {"an unsorted file",
     "\n[z] 12\n\n[a] 12\n\n[m] 12\n",
     {"b"},
     "v",
     "\n[b]" + kTimes + "\"v\"=\"x\"\n\n[z] 12\n\n[a] 12\n\n[m] 12\n"},
    {"a last line without a break gets one",
     "\n[a] 12\n\"b\"=\"1\"",
     {"a"},
     "m",
     "\n[a] 1795253793\n\"b\"=\"1\"\n\"m\"=\"x\"\n"},
    {"... before a new key too",
     "\n[a] 12\n\"b\"=\"1\"",
     {"b"},
     "v",
     "\n[a] 12\n\"b\"=\"1\"\n\n[b]" + kTimes + "\"v\"=\"x\"\n"},
    {"... and when it is replaced",
     "\n[a] 12\n\"v\"=\"1\"",
     {"a"},
     "v",
     "\n[a] 1795253793\n\"v\"=\"x\"\n"},
};

TEST(RegistryEdits, ReplaceOnlyTheLinesConcerned) {
  for (const EditCase& row : kEdits) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(SetText(kHead + row.before, row.path, row.name, "x"), kHead + row.after);
  }
}

std::string WithReturns(const std::string& text) {
  std::string with;
  for (const char c : text) with += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return with;
}

TEST(RegistryEdits, KeepTheLineBreaksOfTheFile) {
  for (const EditCase& row : kEdits) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(SetText(WithReturns(kHead + row.before), row.path, row.name, "x"),
              WithReturns(kHead + row.after));
  }
}

TEST(RegistryEdits, ChangeNothingForTheSameText) {
  const std::string text = kHead +
                           "\n[a] 12\n#time=34\n\"plain\"=\"x\"\n\"odd\"=\"\\x0041\\q\"\n"
                           "\"bytes\"=hex(1):78,00,00,00\n";
  const Result<RegistryFile> file = RegistryFile::Parse(text, "user.reg");
  ASSERT_TRUE(file.ok());
  EXPECT_TRUE(file.value().EditText({"A"}, "PLAIN", "x", kNow).empty());
  EXPECT_TRUE(file.value().EditText({"a"}, "odd", "Aq", kNow).empty());
  EXPECT_TRUE(file.value().EditText({"a"}, "bytes", "x", kNow).empty());
  EXPECT_FALSE(file.value().EditText({"a"}, "plain", "X", kNow).empty());
  EXPECT_TRUE(file.value().EditNewKey({"a"}, kNow).empty());
  EXPECT_TRUE(file.value().EditNewKey({}, kNow).empty());
}

TEST(RegistryEdits, MakeAKeyWithoutValues) {
  Result<RegistryFile> file = RegistryFile::Parse(kHead + "\n[a] 12\n\n[c] 12\n", "user.reg");
  ASSERT_TRUE(file.ok());
  const RegistryEdit edit = file.value().EditNewKey({"b", "d"}, kNow);
  file.value().Apply(edit, file.value().TextAfter(edit));
  EXPECT_EQ(file.value().text(), kHead + "\n[a] 12\n\n[b\\\\d]" + kTimes + "\n[c] 12\n");
  EXPECT_TRUE(file.value().FindKey({"B"}));
  EXPECT_TRUE(file.value().EditNewKey({"b"}, kNow).empty()) << "it exists through its subkey";
}

TEST(RegistryEdits, PutNamesInTheOrderOfTheFile) {
  const std::vector<std::string> names = {"10", "2", "_", "a", "A1", "aa",
                                          "b",  "C", "x", "Z", "z1"};
  Result<RegistryFile> file = RegistryFile::Parse(kHead, "user.reg");
  ASSERT_TRUE(file.ok());
  const auto set = [&](const KeyPath& path, const std::string& name) {
    const RegistryEdit edit = file.value().EditText(path, name, "", kNow);
    file.value().Apply(edit, file.value().TextAfter(edit));
  };
  // Every second name forward, then the others backward.
  for (std::size_t i = 0; i < names.size(); i += 2) set({"v"}, names[i]);
  for (std::size_t i = names.size() - 2; i < names.size(); i -= 2) set({"v"}, names[i]);
  for (std::size_t i = 0; i < names.size(); i += 2) set({"k", names[i]}, "");
  for (std::size_t i = names.size() - 2; i < names.size(); i -= 2) set({"k", names[i]}, "");

  std::vector<std::string> values;
  std::vector<std::string> keys;
  for (const std::string& name : names) {
    values.push_back("\"" + name + "\"=\"\"");
    keys.push_back("[k\\\\" + name + "] 1795253793");
  }
  const std::vector<std::string> lines = LinesOf(file.value().text());
  EXPECT_TRUE(AreInOrder(values, lines));
  EXPECT_TRUE(AreInOrder(keys, lines));
}

TEST(RegistryEdits, LeaveEveryOtherByteOfTheSample) {
  for (const char* name : {"system.reg", "user.reg", "userdef.reg"}) {
    SCOPED_TRACE(name);
    const std::string text = testing::SampleFile(name);
    const std::string after = SetText(text, {"Software", "Korvo", "Settings"}, "v", "x");
    const std::string added = "[Software\\\\Korvo\\\\Settings]" + kTimes + "\"v\"=\"x\"\n\n";
    const std::size_t at = after.find(added);
    if (at != std::string::npos) {
      EXPECT_EQ(std::string(after).erase(at, added.size()), text);
    } else {
      EXPECT_EQ(after, text + "\n" + added.substr(0, added.size() - 1)) << "at the end";
    }
  }
}

}  // namespace
}  // namespace zent
