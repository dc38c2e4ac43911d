#include <gtest/gtest.h>

#include "scenarios/compare/RegistryText.h"

namespace zent::testing {
namespace {

constexpr const char* kHead =
    "WINE REGISTRY Version 2\n;; All keys relative to X\n\n#arch=win64\n\n";

RegistryText Keys(const std::string& text) { return RegistryText::Read(kHead + text); }

struct ChangeCase {
  const char* what;
  const char* before;
  const char* after;
  const char* changes;
};

constexpr ChangeCase kChanges[] = {
    {"equal", "[A] 1\n\"x\"=\"1\"\n", "[A] 1\n\"x\"=\"1\"\n", ""},
    {"times do not count", "[A] 1\n#time=1\n\"x\"=\"1\"\n", "[A] 2\n#time=2\n\"x\"=\"1\"\n", ""},
    {"names in any case", "[A\\\\B] 1\n\"X\"=\"1\"\n", "[a\\\\b] 1\n\"x\"=\"1\"\n", ""},
    {"order does not count", "[A] 1\n\"x\"=\"1\"\n[B] 1\n@=\"2\"\n",
     "[B] 1\n@=\"2\"\n[A] 1\n\"x\"=\"1\"\n", ""},
    {"new value", "[A] 1\n", "[A] 1\n\"x\"=\"1\"\n", "+ a|\"x\"=\"1\"\n"},
    {"new key with a value", "", "[A\\\\B] 1\n@=\"1\"\n", "+ a\\\\b|@=\"1\"\n"},
    {"new key without values", "", "[A] 1\n", "+ a\n"},
    {"a parent without values is no change of its own", "", "[A] 1\n[A\\\\B] 1\n@=\"1\"\n",
     "+ a\\\\b|@=\"1\"\n"},
    {"missing value", "[A] 1\n\"x\"=\"1\"\n\"y\"=\"2\"\n", "[A] 1\n\"y\"=\"2\"\n",
     "- a|\"x\"=\"1\"\n"},
    {"other data", "[A] 1\n\"x\"=\"1\"\n", "[A] 1\n\"x\"=\"2\"\n", "~ a|\"x\"=\"2\"\n"},
    {"other case of data", "[A] 1\n\"x\"=\"a\"\n", "[A] 1\n\"x\"=\"A\"\n", "~ a|\"x\"=\"A\"\n"},
    {"other type", "[A] 1\n\"x\"=\"1\"\n", "[A] 1\n\"x\"=str(2):\"1\"\n",
     "~ a|\"x\"=str(2):\"1\"\n"},
    {"a quote and an equals sign in a name", "", "[A] 1\n\"a\\\"=b\"=dword:00000001\n",
     "+ a|\"a\\\"=b\"=dword:00000001\n"},
    {"data over several lines", "", "[A] 1\n\"x\"=hex:01,02,\\\n  03,\\\n  04\n",
     "+ a|\"x\"=hex:01,02,03,04\n"},
    {"the current control set by its number", "[System\\\\CurrentControlSet\\\\C] 1\n@=\"1\"\n",
     "[System\\\\ControlSet001\\\\C] 1\n@=\"1\"\n", ""},
};

TEST(RegistryChanges, NamesWhatDiffers) {
  for (const ChangeCase& row : kChanges) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(RegistryChanges(Keys(row.before), Keys(row.after)), row.changes);
  }
}

struct LayCase {
  const char* what;
  const char* sample;
  const char* machine;
  const char* prefix;
  const char* result;
};

constexpr LayCase kLaid[] = {
    {"keys are added", "", "[A] 1\n@=\"1\"\n", "[B] 1\n@=\"2\"\n",
     "[A] 1\n@=\"1\"\n[B] 1\n@=\"2\"\n"},
    {"values are added and replaced", "", "[A] 1\n\"x\"=\"1\"\n\"y\"=\"1\"\n",
     "[A] 1\n\"y\"=\"2\"\n\"z\"=\"2\"\n", "[A] 1\n\"x\"=\"1\"\n\"y\"=\"1\"\n\"z\"=\"2\"\n"},
    {"what the machine lacks of the sample goes", "[A] 1\n\"x\"=\"1\"\n", "[A] 1\n",
     "[A] 1\n\"x\"=\"2\"\n\"y\"=\"2\"\n", "[A] 1\n\"y\"=\"2\"\n"},
    {"with its key", "[A] 1\n\"x\"=\"1\"\n", "", "[A] 1\n\"x\"=\"2\"\n", "[A] 1\n"},
    {"what is made at every start stays", "", "[Volatile Environment] 1\n\"APPDATA\"=\"x\"\n", "",
     ""},
};

TEST(LayOver, PutsAMachineOnAPrefix) {
  for (const LayCase& row : kLaid) {
    SCOPED_TRACE(row.what);
    RegistryText prefix = Keys(row.prefix);
    LayOver(Keys(row.sample), Keys(row.machine), prefix);
    EXPECT_EQ(RegistryChanges(Keys(row.result), prefix), "");
  }
}

TEST(RegistryText, IsWrittenAsItWasRead) {
  const std::string text =
      std::string(kHead) + "[A\\\\B] 12\n#time=1d\n#class=\"c\"\n\"x\"=hex:01\n@=\"1\"\n\n";
  EXPECT_EQ(RegistryText::Read(text).Write(), text);
}

}  // namespace
}  // namespace zent::testing
