#include <gtest/gtest.h>

#include "app/ExitCode.h"

namespace zent {
namespace {

struct NativeCase {
  ExitCode code;
  int number;
};

constexpr NativeCase kNumbers[] = {
    {ExitCode::Success, 0},
    {ExitCode::RestartNeeded, 3010},
    {ExitCode::SuccessWithWarnings, 10},
    {ExitCode::Failed, 1603},
    {ExitCode::WrongCommandLine, 1639},
    {ExitCode::NoPackage, 1619},
    {ExitCode::NotInstalled, 1642},
    {ExitCode::MachineInUse, 1618},
    {ExitCode::RefusedByStrict, 1625},
};

TEST(NativeExitCode, IsTheSystemsOwnNumber) {
  for (const NativeCase& row : kNumbers) EXPECT_EQ(NativeExitCode(row.code), row.number);
}

}  // namespace
}  // namespace zent
