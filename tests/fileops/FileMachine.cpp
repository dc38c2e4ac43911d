#include "fileops/FileMachine.h"

#include <gtest/gtest.h>

namespace zent::testing {

void ExpectCases(Status (*handler)(UpdateRun&, const TokenList&),
                 const std::vector<FileCommandCase>& rows) {
  for (const FileCommandCase& row : rows) {
    SCOPED_TRACE(row.what);
    FileMachine given;
    const CommandRecord record = given.Call(handler, TokenList(row.tokens));
    EXPECT_EQ(given.messages(), row.messages);
    EXPECT_EQ(given.window.boxes, row.boxes);
    EXPECT_EQ(given.run.state.ErrorOccurred, !row.boxes.empty());
    EXPECT_EQ(record.outcome, row.outcome) << record.reason;
    EXPECT_EQ(record.reason.empty(), row.outcome == Outcome::Done) << record.reason;
    if (*row.path != '\0') {
      EXPECT_EQ(given.machine.files.Contents(row.path).value_or("-"), row.contents);
    }
  }
}

}  // namespace zent::testing
