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
  ExitCode code;
};

constexpr CodeCase kCodeCases[] = {
    {"success", RunResult::Success, false, Outcome::Done, false, ExitCode::Success},
    {"warnings count only when asked for", RunResult::Success, false, Outcome::Failed, false,
     ExitCode::Success},
    {"a warning, asked for", RunResult::Success, false, Outcome::Warned, true,
     ExitCode::SuccessWithWarnings},
    {"a quiet failure, asked for", RunResult::Success, false, Outcome::Failed, true,
     ExitCode::SuccessWithWarnings},
    {"a skipped command is no warning", RunResult::Success, false, Outcome::Skipped, true,
     ExitCode::Success},
    {"restart needed", RunResult::Success, true, Outcome::Done, false, ExitCode::RestartNeeded},
    {"a restart goes before warnings", RunResult::Success, true, Outcome::Warned, true,
     ExitCode::RestartNeeded},
    {"failed", RunResult::Failed, false, Outcome::Failed, true, ExitCode::Failed},
    {"failed, whatever must be restarted", RunResult::Failed, true, Outcome::Failed, false,
     ExitCode::Failed},
    {"not installed", RunResult::NotInstalled, false, Outcome::Done, false, ExitCode::NotInstalled},
    {"refused", RunResult::Refused, false, Outcome::Failed, false, ExitCode::RefusedByStrict},
};

TEST(ExitCodeOf, TellsHowTheRunEnded) {
  for (const CodeCase& row : kCodeCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ExitCodeOf(row.result, row.restart, row.worst, row.detailed), row.code);
  }
}

}  // namespace
}  // namespace zent
