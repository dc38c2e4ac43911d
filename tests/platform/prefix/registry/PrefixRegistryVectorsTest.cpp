// What the functions of the Windows registry answered, measured with Wine 8. The names and data are
// those of the file tests/data/registry/user.reg.
//
// Left out: calls with a buffer that is too small (the port has no buffers), a null pointer as the
// value's name (the port has none), texts stored with a size other than their own and a write
// through a key opened for reading (the port knows neither), build number and service pack of the
// version. Key names of 255 characters failed there and are good here, as on Windows. A key made
// directly below HKEY_USERS was stored nowhere there and is refused here.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/prefix/registry/PrefixRegistry.h"
#include "platform/prefix/registry/RegistryMachines.h"

namespace zent {
namespace {

using namespace std::string_literals;
using testing::MachineFolder;
using testing::ReadData;
using testing::WriteText;

struct QueryCase {
  std::string name;
  int error;
  std::uint32_t type;
  std::string data;
};

const QueryCase kQueries[] = {
    {"", 0, 1, "default again\0"s},
    {"sz", 0, 1, "plain\0"s},
    {"sz empty", 0, 1, "\0"s},
    {"sz zero bytes", 0, 1, ""},
    {"sz no NUL", 0, 1, "abc\0"s},
    {"sz two NUL", 0, 1, "ab\0\0"s},
    {"sz inner NUL", 0, 1, "ab\0cd\0"s},
    {"sz quotes and backslash", 0, 1, "say \"hi\" C:\\dir\\\0"s},
    {"sz controls", 0, 1,
     "tab\tcr\rlf\nbell\aesc\x1b"
     "del\x7f"
     "1\x01\0"s},
    {"sz cp1252", 0, 1, "\u00e4\u00f6\u00fc\u20ac\u0081\u00ffa\0"s},
    {"expand", 0, 2, "%SystemRoot%\\x\0"s},
    {"expand none", 0, 2, "no variable\0"s},
    {"dword", 0, 4, "xV4\x12"},
    {"dword two bytes", 0, 4, "\x01\x02"},
    {"qword", 0, 11, "\b\a\x06\x05\x04\x03\x02\x01"},
    {"binary", 0, 3, "\0\x01\xff\x80"s},
    {"binary empty", 0, 3, ""},
    {"none", 0, 0, "\x01\x02\x03"},
    {"multi", 0, 7, "one\0two\0\0"s},
    {"multi empty", 0, 7, "\0"s},
    {"type 77", 0, 77, "ab"},
    {"SZ", 0, 1, "plain\0"s},
    {"sZ EMPTY", 0, 1, "\0"s},
    {"missing", kFileNotFound, 0, ""},
    {"CASE", 0, 1, "2\0"s},
    {"case", 0, 1, "2\0"s},
    {"@", 0, 1, "named at sign\0"s},
    {"n\u00c4me", 0, 1, "v\0"s},
};

TEST(RegistryVectors, QueryValue) {
  MachineFolder machine;
  const auto registry = machine.Open();
  for (const KeyHandle root : {KeyHandle::CurrentUser, KeyHandle::LocalMachine}) {
    const Result<KeyHandle> key = registry->OpenKey(root, R"(Software\Probe\Types)");
    ASSERT_TRUE(key.ok());
    for (const QueryCase& row : kQueries) {
      SCOPED_TRACE(row.name);
      const Result<RegistryValue> value = registry->QueryValue(key.value(), row.name);
      EXPECT_EQ(value.number(), row.error);
      if (!value.ok()) continue;
      EXPECT_EQ(value.value().type, row.type);
      EXPECT_EQ(value.value().data, row.data);
    }
  }
}

struct StepCase {
  bool create;
  KeyHandle root;
  std::string path;
  int error;
};

const StepCase kSteps[] = {
    {true, KeyHandle::CurrentUser, R"(Software\K)", 0},
    {false, KeyHandle::CurrentUser, R"(SOFTWARE\k)", 0},
    {true, KeyHandle::CurrentUser, R"(Software\K\New\Deep)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\New\Deep\)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\New\\Deep)", 0},
    {false, KeyHandle::CurrentUser, R"(\Software\K)", kPathFileAccess},
    {true, KeyHandle::CurrentUser, R"(\Software\K\Lead)", kPathFileAccess},
    {true, KeyHandle::CurrentUser, R"(Software\K\Trail\)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\Trail)", 0},
    {true, KeyHandle::CurrentUser, R"(Software\K\\Double)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\Double)", 0},
    {true, KeyHandle::CurrentUser, R"(Software\K\Trail2\\)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\Trail2)", 0},
    {false, KeyHandle::CurrentUser, "", 0},
    {true, KeyHandle::CurrentUser, "", 0},
    {false, KeyHandle::CurrentUser, R"(\)", kPathFileAccess},
    {true, KeyHandle::CurrentUser, R"(\)", kPathFileAccess},
    {false, KeyHandle::CurrentUser, R"(Nope\Nope)", kFileNotFound},
    {false, KeyHandle::CurrentUser, R"(Software\K\Nope)", kFileNotFound},
    {true, KeyHandle::CurrentUser, "Software/K/Slash", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K )", kFileNotFound},
    {true, KeyHandle::CurrentUser, R"(Software\K\ blank )", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\blank)", kFileNotFound},
    {true, KeyHandle::LocalMachine, "Top", 0},
    {true, KeyHandle::ClassesRoot, "Top", 0},
    {false, KeyHandle::LocalMachine, R"(Software\Classes\Top)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\Classes\Top)", kFileNotFound},
    {true, KeyHandle::CurrentUser, R"(Software\K\)" + std::string(256, 'k'), kPathFileAccess},
    {false, KeyHandle::CurrentUser, R"(software\k\new\deep)", 0},
};

TEST(RegistryVectors, CreateAndOpen) {
  MachineFolder machine;
  const auto registry = machine.Open();
  for (const StepCase& row : kSteps) {
    SCOPED_TRACE(row.path);
    const Result<KeyHandle> key = row.create ? registry->CreateKey(row.root, row.path)
                                             : registry->OpenKey(row.root, row.path);
    EXPECT_EQ(key.number(), row.error);
    if (key.ok()) {
      EXPECT_TRUE(registry->CloseKey(key.value()).ok());
    }
  }
  // The subkeys that were made, in the order in which they are listed.
  std::vector<std::string> keys;
  for (const std::string& line : testing::LinesOf(machine.Get("user.reg"))) {
    if (line.rfind(R"([Software\\K\\)", 0) == 0) keys.push_back(line.substr(0, line.find(']') + 1));
  }
  EXPECT_EQ(keys,
            (std::vector<std::string>{R"([Software\\K\\ blank ])", R"([Software\\K\\Double])",
                                      R"([Software\\K\\New\\Deep])", R"([Software\\K\\Trail])",
                                      R"([Software\\K\\Trail2])"}));
}

TEST(RegistryVectors, EnumerationOrder) {
  // Names that are put in backward stand in the file in the order in which they are listed.
  const std::vector<std::string> values = {"10", "2", "_", "a", "A1", "aa",
                                           "b",  "C", "x", "Z", "z1"};
  const std::vector<std::string> keys = {" lead and trail ",
                                         "#hash",
                                         ";semi",
                                         "_u",
                                         "A",
                                         "a2",
                                         "b",
                                         "deep",
                                         "k\u00e4se",
                                         "tab\tx",
                                         "with\"quote",
                                         "with/slash",
                                         "with[open",
                                         "with]bracket",
                                         "Z"};
  const std::vector<std::string> escaped_keys = {" lead and trail ",
                                                 "#hash",
                                                 ";semi",
                                                 "_u",
                                                 "A",
                                                 "a2",
                                                 "b",
                                                 "deep",
                                                 R"(k\xe4se)",
                                                 R"(tab\tx)",
                                                 "with\"quote",
                                                 "with/slash",
                                                 R"(with\[open)",
                                                 R"(with\]bracket)",
                                                 "Z"};
  MachineFolder machine(testing::kEmptySystemFile, testing::kEmptyUserFile);
  const auto registry = machine.Open();
  for (auto name = values.rbegin(); name != values.rend(); ++name) {
    ASSERT_TRUE(WriteText(*registry, KeyHandle::CurrentUser, "Order", *name, *name).ok());
  }
  for (auto name = keys.rbegin(); name != keys.rend(); ++name) {
    ASSERT_TRUE(WriteText(*registry, KeyHandle::CurrentUser, "Keys\\" + *name, "", "").ok());
  }
  const std::vector<std::string> lines = testing::LinesOf(machine.Get("user.reg"));
  std::vector<std::string> expected;
  expected.reserve(escaped_keys.size() + values.size());
  for (const std::string& name : escaped_keys) {
    expected.push_back(fmt::format(R"([Keys\\{}] 1795253793)", name));
  }
  for (const std::string& name : values) {
    expected.push_back(fmt::format(R"("{}"="{}")", name, name));
  }
  EXPECT_TRUE(testing::AreInOrder(expected, lines)) << machine.Get("user.reg");
}

TEST(RegistryVectors, SetString) {
  MachineFolder machine;
  const auto registry = machine.Open();
  ASSERT_TRUE(WriteText(*registry, KeyHandle::CurrentUser, R"(Software\K)", "v", "Text").ok());
  EXPECT_EQ(ReadData(*registry, KeyHandle::CurrentUser, R"(Software\K)", "v"), "Text\0"s);
}

TEST(RegistryVectors, MergedClasses) {
  // As Wine 8 has it: HKEY_CLASSES_ROOT shows the machine's classes. Windows shows the user's too,
  // before them.
  MachineFolder machine;
  const auto registry = machine.Open();
  constexpr KeyHandle kUser = KeyHandle::CurrentUser;
  constexpr KeyHandle kMachine = KeyHandle::LocalMachine;
  ASSERT_TRUE(WriteText(*registry, kUser, R"(Software\Classes\UserOnly)", "", "user").ok());
  ASSERT_TRUE(WriteText(*registry, kUser, R"(Software\Classes\Both)", "", "user").ok());
  ASSERT_TRUE(WriteText(*registry, kMachine, R"(Software\Classes\Both)", "", "machine").ok());
  EXPECT_EQ(registry->OpenKey(KeyHandle::ClassesRoot, "UserOnly").number(), kFileNotFound);
  EXPECT_EQ(ReadData(*registry, KeyHandle::ClassesRoot, "Both", ""), "machine\0"s);
  EXPECT_EQ(ReadData(*registry, KeyHandle::ClassesRoot, ".probe", ""), "ProbeFile\0"s);
}

TEST(RegistryVectors, SubkeysOfTheUsers) {
  MachineFolder machine;
  const auto registry = machine.Open();
  EXPECT_TRUE(registry->OpenKey(KeyHandle::Users, ".Default").ok());
  EXPECT_TRUE(registry->OpenKey(KeyHandle::Users, "S-1-5-21-0-0-0-1000").ok());
}

}  // namespace
}  // namespace zent
