#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "base/Text.h"
#include "driver/CommandTable.h"

namespace zent {
namespace {

TEST(CommandTable, IsInTheOrderOfComparison) {
  std::vector<std::string> keywords;
  for (const Command& command : CommandTable()) keywords.emplace_back(command.keyword);
  EXPECT_THAT(keywords,
              ::testing::ElementsAre("BeginVista", "EndVista", "SS2000ToSS2005", "msg", "wait",
                                     "cte", "cdp", "ep", "del", "copy", "cc", "copyl", "bkpf",
                                     "ccl", "cslk", "csld", "regw", "ureg", "reg", "cr", "ccr",
                                     "crie", "CopyRegIfNotSameVersion", "CopyRegIfNewerVersion",
                                     "CloseOutlookMessageIfRunning", "CheckMinVersion", "stdf",
                                     "importlookup", "mkdr", "ren", "cren", "rcw", "crcw", "xupd",
                                     "upddb", "updxfields", "wrtnetupdini", "wrttoini", "run"));
}

TEST(CommandTable, EveryRowDoesSomethingAndNoKeywordComesTwice) {
  std::set<std::string> seen;
  for (const Command& command : CommandTable()) {
    SCOPED_TRACE(command.keyword);
    EXPECT_TRUE(command.handler != nullptr || command.marker != BlockMarker::None);
    EXPECT_TRUE(seen.insert(ToLower(command.keyword)).second);
  }
}

TEST(FindCommand, PutsCaseAndBlanksAside) {
  ASSERT_NE(FindCommand("  COPY "), nullptr);
  EXPECT_EQ(FindCommand("  COPY ")->keyword, "copy");
  EXPECT_EQ(FindCommand("checkminversion"), FindCommand("CheckMinVersion"));
  EXPECT_EQ(FindCommand("copyx"), nullptr);
  EXPECT_EQ(FindCommand("\tcopy"), nullptr) << "a tab is no blank";
  EXPECT_EQ(FindCommand(""), nullptr);
}

TEST(TokensFor, StructureSynchronisationGetsFourTokensAtMost) {
  const Command& command = *FindCommand("stdf");
  EXPECT_EQ(TokensFor(command, {"stdf", "a", "b"}).Count(), 3U);
  EXPECT_EQ(TokensFor(command, {"stdf", "a", "b", "c"}).Count(), 4U);
  EXPECT_EQ(TokensFor(command, {"stdf", "a", "b", "c", "d"}).Count(), 4U);
}

TEST(TokensFor, OtherCommandsGetTheWholeLine) {
  EXPECT_EQ(TokensFor(*FindCommand("msg"), {"msg", "a", "b", "c", "d", "e"}).Count(), 6U);
}

}  // namespace
}  // namespace zent
