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
    {ExitCode::RestartNeeded, 80},
    {ExitCode::SuccessWithWarnings, 10},
    {ExitCode::Failed, 1},
    {ExitCode::WrongCommandLine, 64},
    {ExitCode::NoPackage, 66},
    {ExitCode::NotInstalled, 69},
    {ExitCode::MachineInUse, 75},
    {ExitCode::RefusedByStrict, 77},
};

TEST(NativeExitCode, IsTheSystemsOwnNumber) {
  for (const NativeCase& row : kNumbers) EXPECT_EQ(NativeExitCode(row.code), row.number);
}

}  // namespace
}  // namespace zent
