#include <gtest/gtest.h>

#include <csignal>

#include "platform/prefix/session/HostScripts.h"
#include "platform/prefix/session/Wine.h"

namespace zent {
namespace {

using testing::TempFolder;

/// Wine whose loader is this script, and how often it was asked whether the server has taken over.
struct Given {
  explicit Given(const char* loader, int takes_over_after) : after(takes_over_after) {
    const auto file = host.Put("bin/wine", loader);
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  }

  TempFolder host;
  int after;
  int asked = 0;
  Wine wine{(host.path() / "bin").string(), host.path(), {}, kWineLoaderOfDebian, [this] {
              return ++asked > after;
            }};
};

// What is stored before the server is up is lost: the server has read the files by then, and writes
// them over when it ends.
TEST(WineStart, ReturnsWhenTheServerHasTakenOver) {
  Given given("#!/bin/sh\nexec sleep 60\n", 3);
  const Result<std::uint32_t> started = given.wine.Start({"a.exe"}, given.host.path());
  ASSERT_TRUE(started.ok());
  EXPECT_EQ(given.asked, 4);
  ::kill(static_cast<pid_t>(started.value()), SIGKILL);
}

TEST(WineStart, AsksNobodyWhenNothingIsStarted) {
  const TempFolder host;
  int asked = 0;
  const Wine wine(
      host.path().string(), host.path(), [] { return Status(StandardError(kPermissionDenied)); },
      "/bin/true", [&asked] { return ++asked > 0; });
  EXPECT_EQ(wine.Start({"a.exe"}, host.path()).error().number, kPermissionDenied);
  EXPECT_EQ(asked, 0);
}

}  // namespace
}  // namespace zent
