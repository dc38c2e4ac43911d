#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/RegistryContract.h"
#include "fakes/MemoryRegistry.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;

constexpr KeyHandle kMachine = KeyHandle::LocalMachine;
constexpr KeyHandle kUser = KeyHandle::CurrentUser;

TEST(MemoryRegistry, OpensKeysInAnyCaseAndWithSpareBackslashes) {
  MemoryRegistry registry;
  registry.PutKey(kMachine, R"(SOFTWARE\Zent\Korvo)");
  for (const char* const path :
       {R"(software\ZENT)", R"(SOFTWARE\\Zent)", R"(SOFTWARE\Zent\Korvo\)"}) {
    SCOPED_TRACE(path);
    const Result<KeyHandle> key = registry.OpenKey(kMachine, path);
    ASSERT_TRUE(key.ok());
    EXPECT_TRUE(registry.CloseKey(key.value()).ok());
  }
  EXPECT_EQ(registry.OpenKey(kMachine, R"(SOFTWARE\None)").number(), kFileNotFound);
  EXPECT_EQ(registry.OpenKey(kUser, R"(SOFTWARE\Zent)").number(), kFileNotFound);
  EXPECT_EQ(registry.OpenKey(kMachine, R"(\SOFTWARE)").number(), kPathFileAccess);
  EXPECT_EQ(registry.CreateKey(kMachine, R"(\SOFTWARE)").number(), kPathFileAccess);
}

TEST(MemoryRegistry, OpensBelowAnOpenKeyAndTheKeyItself) {
  MemoryRegistry registry;
  registry.PutText(kMachine, R"(A\B)", "Name", "x");
  const KeyHandle a = registry.OpenKey(kMachine, "A").value();
  const KeyHandle b = registry.OpenKey(a, "B").value();
  const KeyHandle again = registry.OpenKey(b, "").value();
  EXPECT_EQ(registry.QueryValue(again, "NAME").value().data, std::string("x\0", 2));
  EXPECT_EQ(registry.OpenKey(kMachine, "").value(), kMachine);
  EXPECT_EQ(registry.OpenKeyCount(), 3U);
}

TEST(MemoryRegistry, CreatesEveryLevelAndStoresText) {
  MemoryRegistry registry;
  const Result<KeyHandle> key = registry.CreateKey(kUser, R"(Software\Zent\Korvo)");
  ASSERT_TRUE(key.ok());
  EXPECT_TRUE(registry.SetText(key.value(), "Name", "one").ok());
  EXPECT_TRUE(registry.SetText(key.value(), "NAME", "two").ok());
  EXPECT_TRUE(registry.SetText(key.value(), "", "default").ok());
  EXPECT_TRUE(registry.CloseKey(key.value()).ok());

  EXPECT_TRUE(registry.KeyExists(kUser, R"(SOFTWARE\zent)"));
  EXPECT_EQ(registry.Value(kUser, R"(Software\Zent\Korvo)", "name")->data, "two");
  EXPECT_EQ(registry.Value(kUser, R"(Software\Zent\Korvo)", "name")->type, kRegSz);
  EXPECT_EQ(registry.Value(kUser, R"(Software\Zent\Korvo)", "")->data, "default");
  EXPECT_FALSE(registry.Value(kUser, R"(Software\Zent)", "name"));
  EXPECT_EQ(registry.OpenKeyCount(), 0U);
}

TEST(MemoryRegistry, HoldsValuesOfAnyType) {
  MemoryRegistry registry;
  registry.PutValue(kMachine, "K", "Path", {kRegExpandSz, "%SystemRoot%"});
  registry.PutValue(kMachine, "K", "Number", {kRegDword, std::string("\1\0\0\0", 4)});
  const KeyHandle key = registry.OpenKey(kMachine, "K").value();
  EXPECT_EQ(registry.QueryValue(key, "path").value().type, kRegExpandSz);
  EXPECT_EQ(registry.QueryValue(key, "path").value().data, "%SystemRoot%");
  EXPECT_EQ(registry.QueryValue(key, "Number").value().data.size(), 4U);
  EXPECT_EQ(registry.QueryValue(key, "none").number(), kFileNotFound);
}

TEST(MemoryRegistry, AClosedKeyIsNoKeyAndARootStaysOpen) {
  MemoryRegistry registry;
  registry.PutText(kMachine, "K", "Name", "x");
  const KeyHandle key = registry.OpenKey(kMachine, "K").value();
  EXPECT_TRUE(registry.CloseKey(key).ok());
  EXPECT_EQ(registry.QueryValue(key, "Name").number(), kPathFileAccess);
  EXPECT_EQ(registry.SetText(key, "Name", "y").number(), kPathFileAccess);
  EXPECT_EQ(registry.OpenKey(key, "").number(), kPathFileAccess);
  EXPECT_FALSE(registry.CloseKey(key).ok());
  EXPECT_TRUE(registry.CloseKey(kMachine).ok());
  EXPECT_TRUE(registry.OpenKey(kMachine, "K").ok());
  EXPECT_EQ(registry.OpenKey(KeyHandle::None, "K").number(), kPathFileAccess);
}

TEST(MemoryRegistry, FailsAsToldAndRecords) {
  MemoryRegistry registry;
  registry.log().FailWhere("|Locked", StandardError(kPathFileAccess));
  registry.log().FailChange(3, StandardError(kDiskFull));
  const KeyHandle key = registry.CreateKey(kUser, "K").value();
  EXPECT_EQ(registry.SetText(key, "Locked", "1").number(), kPathFileAccess);
  EXPECT_EQ(registry.SetText(key, "Name", "1").number(), kDiskFull);
  EXPECT_TRUE(registry.SetText(key, "Name", "2").ok());
  EXPECT_FALSE(registry.Value(kUser, "K", "Locked"));
  EXPECT_THAT(registry.log().changes(),
              ElementsAre(R"(CreateKey HKCU\K)", R"(SetText HKCU\K|Locked)",
                          R"(SetText HKCU\K|Name)", R"(SetText HKCU\K|Name)"));
}

class MemoryRegistryMachine : public RegistryMachine {
 public:
  Registry& registry() override { return registry_; }
  /// What is in memory stays: the fake stands for a registry that outlives its programs.
  void Restart() override {}

 private:
  MemoryRegistry registry_;
};

const RegistryAdapter kMemory = {"memory",
                                 [] { return std::make_unique<MemoryRegistryMachine>(); }};

INSTANTIATE_TEST_SUITE_P(Memory, RegistryContract, ::testing::Values(kMemory));

}  // namespace
}  // namespace zent::testing
