#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/SetupList.h"
#include "fakes/run/RunBuilder.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::RunBuilder;

/// A run over a list; `list` is the whole of ZentUpdate.ini.
struct ListRun : RunBuilder {
  explicit ListRun(std::string_view list, RunOptions options = {}) : RunBuilder(options) {
    machine.files.PutFile(R"(D:\Package\ZentUpdate.ini)", list);
    run.state.IsVista = false;
  }
  std::vector<std::string> Messages() {
    RunSetupList(run);
    return observer.messages;
  }
};

struct ListCase {
  const char* what;
  const char* list;
  std::vector<std::string> messages;
};

const ListCase kListCases[] = {
    {"keywords are taken in any case", "[setup]\r\nMSG,a\r\nMsg,b\r\n", {"a", "b"}},
    {"the header is taken in any case", "[SetUp]\r\nmsg,a\r\n", {"a"}},
    {"a header with blanks around it is none", " [setup]\r\nmsg,a\r\n[setup] \r\nmsg,b\r\n", {}},
    {"lines before the header are skipped", "[General]\r\nmsg,no\r\n[setup]\r\nmsg,a\r\n", {"a"}},
    {"without a header no command runs", "[General]\r\nmsg,a\r\n", {}},
    {"a line that begins with a bracket ends the list",
     "[setup]\r\nmsg,a\r\n[x\r\nmsg,b\r\n",
     {"a"}},
    {"a bracket behind blanks ends it too", "[setup]\r\nmsg,a\r\n  [x]\r\nmsg,b\r\n", {"a"}},
    {"a number and an equals sign before the keyword", "[setup]\r\n10=msg,a\r\n", {"a"}},
    {"only the first equals sign counts", "[setup]\r\n1=msg,a=b\r\n", {"a=b"}},
    {"a quoted argument keeps its comma and loses its quotes",
     "[setup]\r\nmsg,\"a, b\"\r\n",
     {"a, b"}},
    {"a quote behind a blank is kept", "[setup]\r\nmsg, \"a\"\r\n", {" \"a"}},
    {"blanks around a line do not count", "[setup]\r\n   msg,a   \r\n", {"a"}},
    {"blank lines and lines of asterisks are ignored",
     "[setup]\r\n\r\n*****\r\n   \r\nmsg,a\r\n",
     {"a"}},
    {"an unknown keyword is ignored", "[setup]\r\nnosuch,a\r\nmsg,b\r\n", {"b"}},
    {"lines end at LF", "[setup]\nmsg,a\nmsg,b", {"a", "b"}},
    {"lines end at CR", "[setup]\rmsg,a\rmsg,b\r", {"a", "b"}},
    {"the list may lack its last line end", "[setup]\r\nmsg,a", {"a"}},
    {"text is ANSI",
     "[setup]\r\nmsg,K\xFC"
     "che\r\n",
     {"K\xC3\xBC"
      "che"}},
    {"text behind the mark is UTF-8, the mark is dropped",
     "\xEF\xBB\xBF[setup]\r\nmsg,K\xC3\xBC"
     "che\r\n",
     {"K\xC3\xBC"
      "che"}},
    {"an empty file", "", {}},
    {"a file of NUL bytes and other binary text", "\x01\x02[setup\r\n\xFF\xFE", {}},
};

TEST(RunSetupList, ReadsTheList) {
  for (const ListCase& row : kListCases) {
    SCOPED_TRACE(row.what);
    ListRun given(row.list);
    EXPECT_EQ(given.Messages(), row.messages);
    EXPECT_FALSE(given.run.state.ErrorOccurred);
  }
}

TEST(RunSetupList, ReadsTheListInTheCodePageOfTheMachine) {
  ListRun given(
      "[setup]\r\nmsg,K\x81"
      "che\r\n");
  given.machine.system.letters['\x81'] = "\xC3\xBC";
  EXPECT_THAT(given.Messages(), ElementsAre("K\xC3\xBC"
                                            "che"));
}

struct BlockCase {
  const char* what;
  const char* lines;
  std::vector<std::string> on_vista;
  std::vector<std::string> elsewhere;
};

const BlockCase kBlockCases[] = {
    {"a block runs on Vista alone",
     "msg,a\nBeginVista\nmsg,b\nEndVista\nmsg,c\n",
     {"a", "b", "c"},
     {"a", "c"}},
    {"an open block skips the rest", "msg,a\nbeginvista\nmsg,b\n", {"a", "b"}, {"a"}},
    {"blocks do not nest", "BeginVista\nBeginVista\nmsg,a\nEndVista\nmsg,b\n", {"a", "b"}, {"b"}},
    {"an end without a begin does nothing", "EndVista\nmsg,a\n", {"a"}, {"a"}},
    {"a failing command in a skipped block does not fail",
     "BeginVista\nmsg\nEndVista\nmsg,b\n",
     {},
     {"b"}},
};

TEST(RunSetupList, SkipsABlockOnAnotherSystem) {
  for (const BlockCase& row : kBlockCases) {
    SCOPED_TRACE(row.what);
    const std::string list = std::string("[setup]\n") + row.lines;
    ListRun vista(list);
    vista.run.state.IsVista = true;
    EXPECT_EQ(vista.Messages(), row.on_vista);
    ListRun other(list);
    EXPECT_EQ(other.Messages(), row.elsewhere);
  }
}

TEST(RunSetupList, EndsAtTheFirstCommandThatFails) {
  ListRun given("[setup]\nmsg,a\nmsg\nmsg,b\n");
  EXPECT_THAT(given.Messages(), ElementsAre("a"));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_THAT(given.window.boxes, ElementsAre(HasSubstr("Number: 9")));
}

TEST(RunSetupList, RecordsEveryCommandWithItsLine) {
  ListRun given("[General]\n[setup]\n*\nmsg,a\nBeginVista\nMSG,b\nEndVista\nnosuch,c\n");
  given.Messages();
  std::vector<std::string> records;
  for (const CommandRecord& record : given.observer.records) {
    records.push_back(std::to_string(record.line) + " " + record.keyword + " " +
                      std::to_string(static_cast<int>(record.outcome)) + " " + record.reason);
  }
  EXPECT_THAT(records,
              ElementsAre("4 msg 0 ", "5 BeginVista 0 ", "6 msg 1 in a block for another system",
                          "7 EndVista 0 ", "8 nosuch 2 unknown keyword nosuch"));
}

TEST(RunSetupList, MasksAPasswordInItsRecords) {
  ListRun given("[setup]\nmsg,\"DSN=a;PWD=secret;\"\nmsg,\"PWD=one;DSN=a;pwd={t;wo};UID=sa\"\n");
  given.Messages();
  EXPECT_EQ(given.observer.records[0].tokens[1], "DSN=a;***********");
  EXPECT_EQ(given.observer.records[1].tokens[1], "********DSN=a;***********UID=sa");
}

TEST(RunSetupList, CarriesABadMacroOutAndRecordsIt) {
  ListRun given("[setup]\nwrttoini,$(nosuch)\\a.ini,S,K,v\nmsg,after\n");
  EXPECT_THAT(given.Messages(), ElementsAre("after"));
  EXPECT_EQ(given.observer.records[0].outcome, Outcome::Warned);
  EXPECT_EQ(given.observer.records[0].reason, "unknown path macro $(nosuch)");
  EXPECT_EQ(given.machine.files.Contents(R"(D:\Package\a.ini)"), "[S]\r\nK=v\r\n");
}

TEST(RunSetupList, StrictRefusesABadMacroBeforeAnythingIsTouched) {
  ListRun given("[setup]\nwrttoini,$(nosuch)\\a.ini,S,K,v\nmsg,after\n", {.strict = true});
  EXPECT_THAT(given.Messages(), IsEmpty());
  EXPECT_TRUE(given.run.Refused());
  EXPECT_FALSE(given.machine.files.Exists(R"(D:\Package\a.ini)"));
}

TEST(RunSetupList, StrictRefusesAnUnknownKeywordButNoComment) {
  ListRun given("[setup]\n* comment\n; another\n\nmsg,a\nnosuch\nmsg,b\n", {.strict = true});
  EXPECT_THAT(given.Messages(), ElementsAre("a"));
  EXPECT_TRUE(given.run.Refused());
}

TEST(RunSetupList, AMissingListIsReported) {
  RunBuilder given;
  RunSetupList(given.run);
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_THAT(given.window.boxes,
              ElementsAre("Error reading setup list D:\\Package\\ZentUpdate.ini\r\n"
                          "Description: File not found\r\nNumber: 53"));
}

TEST(RunSetupList, Utf16IsAClearError) {
  for (const std::string_view list :
       {std::string_view("\xFF\xFE[\0s\0", 6), std::string_view("\xFE\xFF\0[\0s", 6),
        std::string_view("[\0s\0e\0", 6)}) {
    ListRun given(list);
    EXPECT_THAT(given.Messages(), IsEmpty());
    EXPECT_THAT(given.window.boxes,
                ElementsAre(HasSubstr("UTF-16 text; save it as ANSI or UTF-8")));
  }
}

TEST(RunSetupList, TakesALineOfTenMegabytes) {
  std::string text;
  text.resize(10'000'000, 'x');
  ListRun given("[setup]\nmsg,\"" + text + "\"\nmsg,after\n");
  EXPECT_THAT(given.Messages(), ElementsAre(text, "after"));
  EXPECT_EQ(given.window.log.size(), 30000U);
}

TEST(RunSetupList, ALineThatCannotBeSplitIsReportedAndTheListGoesOn) {
  const std::string line = "msg," + std::string(kMaxTokens, ',');
  ListRun given("[setup]\n" + line + "\nmsg,after\n");
  EXPECT_THAT(given.Messages(), ElementsAre("after"));
  EXPECT_THAT(given.window.boxes,
              ElementsAre("(GetTokens) Error: Out of string space\r\nLine: " + line));
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_EQ(given.observer.records[0].outcome, Outcome::Warned);
}

TEST(RunSetupList, ShowsItsProgress) {
  ListRun given("[setup]\nmsg,a\n\nmsg,b\n[end]\n");
  given.Messages();
  using Progress = testing::RecordingWindow::Progress;
  EXPECT_THAT(given.window.progress, ElementsAre(Progress{1, 3}, Progress{2, 3}, Progress{3, 3}));
}

TEST(RunSetupList, EndsWhenTheUserClosesTheWindow) {
  ListRun given("[setup]\nwait,1\nmsg,never\n");
  given.window.on_events = [&](std::chrono::milliseconds) { given.window.close_requested = true; };
  EXPECT_THAT(given.Messages(), ElementsAre("The update was closed before its end."));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

TEST(RunSetupList, WritingIntoItsOwnFileDoesNotDisturbTheList) {
  ListRun given("[setup]\nwrttoini,D:\\Package\\ZentUpdate.ini,General,Ran,yes\nmsg,after\n");
  EXPECT_THAT(given.Messages(), ElementsAre("after"));
}

}  // namespace
}  // namespace zent
