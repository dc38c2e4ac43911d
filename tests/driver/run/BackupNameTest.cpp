#include <gtest/gtest.h>

#include "driver/run/BackupName.h"
#include "fakes/run/RunBuilder.h"

namespace zent {
namespace {

using testing::RunBuilder;

// The clock starts at 2006-05-04 03:02:01.

TEST(FreeTimeStampedName, WaitsWithAWindowThatLivesAndAlsoWhenItIsToClose) {
  RunBuilder given;
  given.machine.files.PutFile(R"(C:\Korvo\plain 2006-05-04 03-02-01.txt)", "first backup");
  given.window.close_requested = true;
  EXPECT_EQ(FreeTimeStampedName(given.run, R"(C:\Korvo\plain.txt)"),
            R"(C:\Korvo\plain 2006-05-04 03-02-02.txt)");
  EXPECT_EQ(given.machine.clock.Slept(), std::chrono::seconds(1));
  EXPECT_FALSE(given.window.waits.empty());
}

TEST(FreeTimeStampedName, ANameWithoutAnExtensionEndsWithTheSeconds) {
  RunBuilder given;
  EXPECT_EQ(FreeTimeStampedName(given.run, R"(C:\Korvo\folder\readme)"),
            R"(C:\Korvo\folder\readme 2006-05-04 03-02-01)");
}

}  // namespace
}  // namespace zent
