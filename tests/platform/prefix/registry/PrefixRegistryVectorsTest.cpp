// The recorded answers of the Windows registry. The names and data are those of the file
// tests/data/registry/user.reg. Left out besides what contracts/RegistryVectors.h names: build
// number and service pack of the version.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "contracts/RegistryVectors.h"
#include "platform/prefix/registry/PrefixRegistry.h"
#include "platform/prefix/registry/RegistryMachines.h"

namespace zent {
namespace {

using namespace std::string_literals;
using testing::MachineFolder;
using testing::ReadData;
using testing::WriteText;

TEST(RegistryVectors, QueryValue) {
  MachineFolder machine;
  const auto registry = machine.Open();
  for (const KeyHandle root : {KeyHandle::CurrentUser, KeyHandle::LocalMachine}) {
    const Result<KeyHandle> key = registry->OpenKey(root, R"(Software\Probe\Types)");
    ASSERT_TRUE(key.ok());
    for (const testing::RegistryQuery& row : testing::RegistryQueries()) {
      SCOPED_TRACE(row.name);
      const Result<RegistryValue> value = registry->QueryValue(key.value(), row.name);
      EXPECT_EQ(value.number(), row.error);
      if (!value.ok()) continue;
      EXPECT_EQ(value.value().type, row.type);
      EXPECT_EQ(value.value().data, row.data);
    }
  }
}

TEST(RegistryVectors, CreateAndOpen) {
  MachineFolder machine;
  const auto registry = machine.Open();
  for (const testing::RegistryStep& row : testing::RegistrySteps()) {
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
