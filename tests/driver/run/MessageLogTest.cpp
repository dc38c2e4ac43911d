#include <gtest/gtest.h>

#include "base/Text.h"
#include "driver/run/MessageLog.h"

namespace zent {
namespace {

std::string Repeat(std::string_view text, std::size_t times) {
  std::string repeated;
  for (std::size_t i = 0; i < times; ++i) repeated += text;
  return repeated;
}

TEST(MessageLog, HoldsExactlyTheLast30000CharactersAfterManyMessages) {
  MessageLog log;
  std::string all;
  for (int i = 0; i < 5000; ++i) {
    const std::string line = "  message " + std::to_string(i) + "\r\n";
    all += line;
    log.Append(line);
  }
  EXPECT_EQ(log.text().size(), 30000U);
  EXPECT_EQ(log.text(), all.substr(all.size() - 30000));
}

TEST(MessageLog, CutsInTheMiddleOfALine) {
  MessageLog log;
  log.Append(Repeat("x", 29999) + "\r\n");
  const MessageLog::Change change = log.Append("yz");
  EXPECT_EQ(change.cut, 2U);
  EXPECT_EQ(log.text(), Repeat("x", 29996) + "\r\nyz");
}

TEST(MessageLog, CountsCharactersNotBytes) {
  MessageLog log;
  log.Append(Repeat("\xC3\xA4", 30000));
  EXPECT_EQ(log.text().size(), 60000U);
  const MessageLog::Change change = log.Append("\xE2\x82\xAC");
  EXPECT_EQ(change.cut, 1U);
  EXPECT_EQ(CountCharacters(log.text()), 30000U);
  EXPECT_EQ(log.text().substr(0, 2), "\xC3\xA4");
}

TEST(MessageLog, AMessageLongerThanTheBoxLeavesItsOwnEnd) {
  MessageLog log;
  log.Append("old");
  const std::string huge = Repeat("0123456789", 1000000);
  const MessageLog::Change change = log.Append(huge);
  EXPECT_EQ(change.cut, 3U);
  EXPECT_EQ(change.appended, std::string_view(huge).substr(huge.size() - 30000));
  EXPECT_EQ(log.text(), change.appended);
}

TEST(MessageLog, ReplacesWhatStandsBehindTheMark) {
  MessageLog log;
  std::size_t replaced = 0;
  log.Append("heading\r\n");
  log.Mark();
  log.ReplaceFromMark("100 \xC3\xA4", replaced);
  EXPECT_EQ(replaced, 0U);
  EXPECT_EQ(log.ReplaceFromMark("200", replaced).appended, "200");
  EXPECT_EQ(replaced, 5U);
  log.Append("an error\r\n");
  log.ReplaceFromMark("300", replaced);
  EXPECT_EQ(replaced, 13U);
  EXPECT_EQ(log.text(), "heading\r\n300");
}

TEST(MessageLog, TheMarkStaysWhereItIsWhenTheStartIsCutOff) {
  MessageLog log;
  std::size_t replaced = 0;
  log.Append("heading");
  log.Mark();
  log.Append(Repeat("x", 29996));
  EXPECT_EQ(log.ReplaceFromMark("y", replaced).cut, 0U);
  EXPECT_EQ(replaced, 29996U);
  EXPECT_EQ(log.text(), "dingy");
  log.Append(Repeat("z", 30000));
  log.ReplaceFromMark("all", replaced);
  EXPECT_EQ(log.text(), "all") << "the heading is gone, and the mark with it at the start";
}

TEST(MessageLog, TheCaretStandsBeforeTheNewestMessage) {
  MessageLog log;
  log.Append("abc");
  EXPECT_EQ(log.caret(), 0U);
  log.Append("de");
  EXPECT_EQ(log.caret(), 3U);
  log.Append(Repeat("x", 29998));
  EXPECT_EQ(log.caret(), 2U);
}

}  // namespace
}  // namespace zent
