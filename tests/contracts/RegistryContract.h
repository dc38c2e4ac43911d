#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/Registry.h"

/// What every adapter of the port Registry does. A test program of an adapter includes this file
/// once and instantiates the suite with its machine:
///   INSTANTIATE_TEST_SUITE_P(Prefix, RegistryContract, ::testing::Values(kPrefixMachine));
namespace zent::testing {

/// A registry whose keys Software\ZentContract, below both HKEY_CURRENT_USER and
/// HKEY_LOCAL_MACHINE, are missing at the start and free to be made.
class RegistryMachine {
 public:
  virtual ~RegistryMachine() = default;
  virtual Registry& registry() = 0;
  /// Ends the program that uses the registry and starts another: open keys and whatever was only in
  /// memory are gone.
  virtual void Restart() = 0;
};

struct RegistryAdapter {
  std::string name;
  std::function<std::unique_ptr<RegistryMachine>()> make;
  /// Characters of the longest key name. Windows takes 255; Wine 8 refuses that one.
  std::size_t longest_key_name = 255;
};

inline void PrintTo(const RegistryAdapter& adapter, std::ostream* out) { *out << adapter.name; }

class RegistryContract : public ::testing::TestWithParam<RegistryAdapter> {
 protected:
  Registry& registry() { return machine_->registry(); }
  void Restart() { machine_->Restart(); }

  KeyHandle Create(std::string_view path, KeyHandle root = KeyHandle::CurrentUser) {
    const Result<KeyHandle> key = registry().CreateKey(root, path);
    EXPECT_TRUE(key.ok()) << path;
    return key.value_or(KeyHandle::None);
  }
  /// The data of a value in a key that is opened for it; "(none)" when key or value is missing.
  std::string Read(std::string_view path, std::string_view name,
                   KeyHandle root = KeyHandle::CurrentUser) {
    const Result<KeyHandle> key = registry().OpenKey(root, path);
    if (!key.ok()) return "(none)";
    const Result<RegistryValue> value = registry().QueryValue(key.value(), name);
    EXPECT_TRUE(registry().CloseKey(key.value()).ok());
    return value.ok() ? value.value().data : "(none)";
  }
  void Write(std::string_view path, std::string_view name, std::string_view text,
             KeyHandle root = KeyHandle::CurrentUser) {
    const KeyHandle key = Create(path, root);
    EXPECT_TRUE(registry().SetText(key, name, text).ok()) << path << " " << name;
    EXPECT_TRUE(registry().CloseKey(key).ok()) << path;
  }

 private:
  std::unique_ptr<RegistryMachine> machine_ = GetParam().make();
};

inline std::string WithNul(std::string_view text) { return std::string(text) + '\0'; }

struct KeyStep {
  const char* what;
  bool create;
  KeyHandle root;
  std::string path;
  int error;
};

inline const KeyStep kKeySteps[] = {
    {"a key is made", true, KeyHandle::CurrentUser, R"(Software\ZentContract)", 0},
    {"... and found in any case", false, KeyHandle::CurrentUser, R"(SOFTWARE\ZENTCONTRACT)", 0},
    {"missing levels are made", true, KeyHandle::CurrentUser, R"(Software\ZentContract\New\Deep)",
     0},
    {"each of them is a key", false, KeyHandle::CurrentUser, R"(Software\ZentContract\New)", 0},
    {"a trailing backslash is tolerated", false, KeyHandle::CurrentUser,
     R"(Software\ZentContract\New\Deep\)", 0},
    {"a doubled backslash is tolerated", false, KeyHandle::CurrentUser,
     R"(Software\ZentContract\New\\Deep)", 0},
    {"small letters find it too", false, KeyHandle::CurrentUser,
     R"(software\zentcontract\new\deep)", 0},
    {"a leading backslash is refused when opening", false, KeyHandle::CurrentUser,
     R"(\Software\ZentContract)", kPathFileAccess},
    {"... and when creating", true, KeyHandle::CurrentUser, R"(\Software\ZentContract\Lead)",
     kPathFileAccess},
    {"a lone backslash is refused when opening", false, KeyHandle::CurrentUser, R"(\)",
     kPathFileAccess},
    {"... and when creating", true, KeyHandle::CurrentUser, R"(\)", kPathFileAccess},
    {"a key is made with a trailing backslash", true, KeyHandle::CurrentUser,
     R"(Software\ZentContract\Trail\)", 0},
    {"... which is not part of its name", false, KeyHandle::CurrentUser,
     R"(Software\ZentContract\Trail)", 0},
    {"a key is made with a doubled backslash", true, KeyHandle::CurrentUser,
     R"(Software\ZentContract\\Double)", 0},
    {"... which is not part of its name", false, KeyHandle::CurrentUser,
     R"(Software\ZentContract\Double)", 0},
    {"a key is made with two trailing backslashes", true, KeyHandle::CurrentUser,
     R"(Software\ZentContract\Trail2\\)", 0},
    {"... which are not part of its name", false, KeyHandle::CurrentUser,
     R"(Software\ZentContract\Trail2)", 0},
    {"an empty path opens the parent", false, KeyHandle::CurrentUser, "", 0},
    {"... and creates nothing", true, KeyHandle::CurrentUser, "", 0},
    {"a missing key with a missing parent", false, KeyHandle::CurrentUser, R"(Nope\Nope)",
     kFileNotFound},
    {"a missing key", false, KeyHandle::CurrentUser, R"(Software\ZentContract\Nope)",
     kFileNotFound},
    {"slashes divide nothing", true, KeyHandle::CurrentUser, R"(Software\ZentContract\a/b/c)", 0},
    {"... so there is no key of the first part", false, KeyHandle::CurrentUser,
     R"(Software\ZentContract\a)", kFileNotFound},
    {"a trailing blank counts", false, KeyHandle::CurrentUser, R"(Software\ZentContract )",
     kFileNotFound},
    {"a name with blanks around is made", true, KeyHandle::CurrentUser,
     R"(Software\ZentContract\ blank )", 0},
    {"... and not found without them", false, KeyHandle::CurrentUser,
     R"(Software\ZentContract\blank)", kFileNotFound},
    {"the machine's keys are others", false, KeyHandle::LocalMachine, R"(Software\ZentContract)",
     kFileNotFound},
    {"a key of the machine is made", true, KeyHandle::LocalMachine, R"(Software\ZentContract)", 0},
    {"a predefined root is opened", false, KeyHandle::ClassesRoot, "", 0},
    {"the root of the users is opened", false, KeyHandle::Users, "", 0},
    {"a handle that was never given", false, KeyHandle::None, "Software", kPathFileAccess},
};

TEST_P(RegistryContract, OpensAndCreatesKeys) {
  for (const KeyStep& step : kKeySteps) {
    SCOPED_TRACE(step.what);
    const Result<KeyHandle> key = step.create ? registry().CreateKey(step.root, step.path)
                                              : registry().OpenKey(step.root, step.path);
    EXPECT_EQ(key.number(), step.error);
    if (key.ok()) {
      EXPECT_TRUE(registry().CloseKey(key.value()).ok());
    }
  }
}

TEST_P(RegistryContract, BoundsTheLengthOfAKeyName) {
  const std::string longest(GetParam().longest_key_name, 'k');
  const KeyHandle top = Create(R"(Software\ZentContract)");
  EXPECT_TRUE(registry().CreateKey(top, longest).ok());
  EXPECT_EQ(registry().CreateKey(top, std::string(256, 'k')).number(), kPathFileAccess);
}

TEST_P(RegistryContract, OpensKeysBelowAnOpenKey) {
  const KeyHandle top = Create(R"(Software\ZentContract)");
  const Result<KeyHandle> below = registry().CreateKey(top, R"(One\Two)");
  ASSERT_TRUE(below.ok());
  EXPECT_TRUE(registry().SetText(below.value(), "v", "x").ok());
  EXPECT_TRUE(registry().OpenKey(top, "one").ok());
  EXPECT_EQ(registry().OpenKey(top, R"(\One)").number(), kPathFileAccess);
  EXPECT_EQ(Read(R"(Software\ZentContract\One\Two)", "v"), WithNul("x"));
}

TEST_P(RegistryContract, OpensTheSameKeyTwice) {
  const KeyHandle first = Create(R"(Software\ZentContract)");
  const KeyHandle second = Create(R"(Software\ZENTCONTRACT)");
  EXPECT_NE(first, second);
  EXPECT_TRUE(registry().CloseKey(first).ok());
  EXPECT_TRUE(registry().SetText(second, "v", "x").ok());
  EXPECT_EQ(Read(R"(Software\ZentContract)", "V"), WithNul("x"));
}

TEST_P(RegistryContract, ClosesPredefinedRootsWithoutEffect) {
  for (const KeyHandle root : {KeyHandle::ClassesRoot, KeyHandle::CurrentUser,
                               KeyHandle::LocalMachine, KeyHandle::Users}) {
    EXPECT_TRUE(registry().CloseKey(root).ok());
    EXPECT_TRUE(registry().OpenKey(root, "").ok());
  }
}

TEST_P(RegistryContract, RefusesAClosedKey) {
  const KeyHandle key = Create(R"(Software\ZentContract)");
  ASSERT_TRUE(registry().CloseKey(key).ok());
  EXPECT_EQ(registry().CloseKey(key).number(), kPathFileAccess);
  EXPECT_EQ(registry().SetText(key, "v", "x").number(), kPathFileAccess);
  EXPECT_EQ(registry().QueryValue(key, "v").number(), kPathFileAccess);
  EXPECT_EQ(registry().OpenKey(key, "v").number(), kPathFileAccess);
}

struct TextCase {
  const char* what;
  std::string name;
  std::string text;
};

inline const TextCase kTextCases[] = {
    {"a text", "Text", "Korvo"},
    {"the default value", "", "default"},
    {"a name that is an at sign", "@", "not the default"},
    {"an empty text", "empty", ""},
    {"quotes and backslashes", R"(q"\)", R"(say "hi" C:\dir\)"},
    {"blanks at both ends", "blanks", "  x  "},
    {"line breaks and tabs", "controls", "a\r\nb\tc\x1b\x01"},
    {"a digit behind a control character", "digits",
     "\x01"
     "9\x02"
     "7"},
    {"letters of the code page", "n\u00e4me", "\u00e4\u00f6\u00fc\u20ac"},
    {"a hexadecimal digit behind such a letter", "hex", "\u00ffa\u00e41"},
    {"what looks like a section", "[x]", "[Software] 1"},
    {"what looks like a type", "type", "dword:00000001"},
    {"a long text", "long", std::string(20000, 'x')},
};

TEST_P(RegistryContract, StoresTexts) {
  for (const TextCase& row : kTextCases) {
    SCOPED_TRACE(row.what);
    Write(R"(Software\ZentContract)", row.name, row.text);
  }
  Restart();
  const Result<KeyHandle> key =
      registry().OpenKey(KeyHandle::CurrentUser, R"(Software\ZentContract)");
  ASSERT_TRUE(key.ok());
  for (const TextCase& row : kTextCases) {
    SCOPED_TRACE(row.what);
    const Result<RegistryValue> value = registry().QueryValue(key.value(), row.name);
    ASSERT_TRUE(value.ok());
    EXPECT_EQ(value.value().type, kRegSz);
    EXPECT_EQ(value.value().data, WithNul(row.text));
  }
}

TEST_P(RegistryContract, FindsAndReplacesAValueInAnyCase) {
  Write(R"(Software\ZentContract)", "Korvo", "one");
  Write(R"(Software\ZentContract)", "KORVO", "two");
  EXPECT_EQ(Read(R"(Software\ZentContract)", "korvo"), WithNul("two"));
  Write(R"(Software\ZentContract)", "n\u00e4me", "three");
  EXPECT_EQ(Read(R"(Software\ZentContract)", "N\u00c4ME"), WithNul("three"));
}

TEST_P(RegistryContract, ReportsAMissingValue) {
  const KeyHandle key = Create(R"(Software\ZentContract)");
  EXPECT_EQ(registry().QueryValue(key, "missing").number(), kFileNotFound);
  EXPECT_EQ(registry().QueryValue(key, "").number(), kFileNotFound);
}

TEST_P(RegistryContract, KeepsAKeyWithoutValues) {
  ASSERT_TRUE(registry().CloseKey(Create(R"(Software\ZentContract\Empty)")).ok());
  Restart();
  EXPECT_TRUE(registry().OpenKey(KeyHandle::CurrentUser, R"(Software\ZentContract\Empty)").ok());
  EXPECT_TRUE(registry().OpenKey(KeyHandle::CurrentUser, R"(Software\ZentContract)").ok());
}

TEST_P(RegistryContract, StoresAValueBeforeItsKeyIsClosed) {
  const KeyHandle key = Create(R"(Software\ZentContract\Open)", KeyHandle::LocalMachine);
  ASSERT_TRUE(registry().SetText(key, "v", "x").ok());
  Restart();
  EXPECT_EQ(Read(R"(Software\ZentContract\Open)", "v", KeyHandle::LocalMachine), WithNul("x"));
}

TEST_P(RegistryContract, SeesTheMachinesClassesThroughTheClassesRoot) {
  Write(R"(Software\Classes\ZentContract)", "v", "machine", KeyHandle::LocalMachine);
  EXPECT_EQ(Read("ZentContract", "v", KeyHandle::ClassesRoot), WithNul("machine"));
}

}  // namespace zent::testing
