#include <gtest/gtest.h>

#include "app/ExitCode.h"

namespace zent {
namespace {

struct CodeCase {
  const char* what;
  RunResult result;
  bool restart;
  Outcome worst;
  bool detailed;
  int code;
};

constexpr CodeCase kCodeCases[] = {
    {"success", RunResult::Success, false, Outcome::Done, false, 0},
    {"warnings count only when asked for", RunResult::Success, false, Outcome::Failed, false, 0},
    {"a warning, asked for", RunResult::Success, false, Outcome::Warned, true, 10},
    {"a quiet failure, asked for", RunResult::Success, false, Outcome::Failed, true, 10},
    {"a skipped command is no warning", RunResult::Success, false, Outcome::Skipped, true, 0},
    {"restart needed", RunResult::Success, true, Outcome::Done, false, 80},
    {"a restart goes before warnings", RunResult::Success, true, Outcome::Warned, true, 80},
    {"failed", RunResult::Failed, false, Outcome::Failed, true, 1},
    {"failed, whatever must be restarted", RunResult::Failed, true, Outcome::Failed, false, 1},
    {"not installed", RunResult::NotInstalled, false, Outcome::Done, false, 69},
    {"refused", RunResult::Refused, false, Outcome::Failed, false, 77},
};

TEST(ExitCodeOf, TellsHowTheRunEnded) {
  for (const CodeCase& row : kCodeCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(NativeExitCode(ExitCodeOf(row.result, row.restart, row.worst, row.detailed)),
              row.code);
  }
}

TEST(NativeExitCode, HasANumberForWhatNeverBecameARun) {
  EXPECT_EQ(NativeExitCode(ExitCode::WrongCommandLine), 64);
  EXPECT_EQ(NativeExitCode(ExitCode::NoPackage), 66);
  EXPECT_EQ(NativeExitCode(ExitCode::MachineInUse), 75);
}

}  // namespace
}  // namespace zent
