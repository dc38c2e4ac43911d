#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/UpdateWindowContract.h"
#include "fakes/ui/RecordingWindow.h"
#include "ui/script/ScriptWindow.h"

namespace zent {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using testing::RecordingEvents;
using testing::RecordingWindow;

/// The window without answers.
struct UnattendedScript {
  UpdateWindow& window() { return script; }
  std::string shown() const { return screen.log; }
  RecordingWindow screen;
  ScriptWindow script{screen, {}, 0};
};

}  // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(ScriptWindow, UpdateWindowContract, UnattendedScript);
}  // namespace testing

namespace {

ScriptedAnswers Answers(std::string_view contents) {
  auto answers = ParseAnswers(contents);
  EXPECT_TRUE(answers.ok());
  return answers.value_or({});
}

MessageQuestion RetryBox(const std::string& text) {
  return {.title = "Korvo", .text = text, .buttons = BoxButtons::RetryCancel};
}
MessageQuestion YesNoBox(const std::string& text) {
  return {.title = "Korvo", .text = text, .buttons = BoxButtons::YesNo};
}
MessageQuestion OkBox(const std::string& text) { return {.title = "Korvo", .text = text}; }
InputQuestion Input(const std::string& prompt) { return {.title = "Korvo", .prompt = prompt}; }

std::string NameOf(Answer answer) {
  switch (answer) {
    case Answer::Ok:
      return "ok";
    case Answer::Retry:
      return "retry";
    case Answer::Cancel:
      return "cancel";
    case Answer::Yes:
      return "yes";
    case Answer::No:
      return "no";
  }
  return "?";
}

/// Asks by a short form: "r:TEXT" a Retry box, "y:TEXT" a Yes/No box, "o:TEXT" an Ok box, "i:TEXT"
/// an input.
std::string AskShort(ScriptWindow& window, const std::string& form) {
  const std::string text = form.substr(2);
  switch (form.front()) {
    case 'r':
      return NameOf(window.Ask(RetryBox(text)));
    case 'y':
      return NameOf(window.Ask(YesNoBox(text)));
    case 'o':
      return NameOf(window.Ask(OkBox(text)));
    default:
      return window.AskText(Input(text)).value_or("(cancelled)");
  }
}

struct AnswersCase {
  const char* what;
  const char* answers;
  int retries;
  std::vector<std::string> questions;
  std::vector<std::string> answered;
  std::size_t complaints;
};

const AnswersCase kAnswersCases[] = {
    {"answers are taken in their order",
     "retry\nyes\ntext:abc\ncancel\n",
     0,
     {"r:a", "y:b", "i:c", "r:d"},
     {"retry", "yes", "abc", "cancel"},
     0},
    {"a box with only OK takes none", "yes\n", 0, {"o:a", "o:b", "y:c"}, {"ok", "ok", "yes"}, 0},
    {"after the last come the safe ones",
     "no\n",
     0,
     {"y:a", "y:b", "r:c", "i:d", "o:e"},
     {"no", "no", "cancel", "(cancelled)", "ok"},
     0},
    {"cancel cancels an input", "cancel\ntext:x\n", 0, {"i:a", "i:b"}, {"(cancelled)", "x"}, 0},
    {"a text may be empty", "text:\n", 0, {"i:a"}, {""}, 0},
    {"an answer that does not fit is used up",
     "yes\nretry\n",
     0,
     {"r:a", "r:b"},
     {"cancel", "retry"},
     1},
    {"a text fits no box", "text:x\nyes\n", 0, {"y:a", "y:b"}, {"no", "yes"}, 1},
    {"continue fits no question",
     "continue\ncontinue\n",
     0,
     {"y:a", "i:b"},
     {"no", "(cancelled)"},
     2},
    {"a button fits no input",
     "yes\nretry\n",
     0,
     {"i:a", "i:b"},
     {"(cancelled)", "(cancelled)"},
     2},
    {"a wrong answer is not retried", "yes\n", 3, {"r:a"}, {"cancel"}, 1},
    {"without answers Retry comes first",
     "",
     2,
     {"r:a", "r:a", "r:a"},
     {"retry", "retry", "cancel"},
     0},
    {"and Cancel stays", "", 1, {"r:a", "r:a", "r:a"}, {"retry", "cancel", "cancel"}, 0},
    {"each box has its own retries", "", 1, {"r:a", "r:b", "r:b"}, {"retry", "retry", "cancel"}, 0},
    {"only those in a row count", "", 1, {"r:a", "r:b", "r:a"}, {"retry", "retry", "retry"}, 0},
    {"another box ends the row", "", 1, {"r:a", "o:b", "r:a"}, {"retry", "ok", "retry"}, 0},
    {"an input ends the row", "", 1, {"r:a", "i:b", "r:a"}, {"retry", "(cancelled)", "retry"}, 0},
    {"retries come after the answers",
     "retry\nretry\n",
     1,
     {"r:a", "r:a", "r:a", "r:a"},
     {"retry", "retry", "retry", "cancel"},
     0},
    {"Yes/No boxes are not retried", "", 5, {"y:a", "y:a"}, {"no", "no"}, 0},
    {"less than no retries are none", "", -1, {"r:a"}, {"cancel"}, 0},
};

TEST(ScriptWindow, AnswersAsWrittenThenSafely) {
  for (const AnswersCase& row : kAnswersCases) {
    SCOPED_TRACE(row.what);
    RecordingWindow screen;
    ScriptWindow window(screen, Answers(row.answers), row.retries);
    std::vector<std::string> answered;
    for (const std::string& question : row.questions) {
      answered.push_back(AskShort(window, question));
    }
    EXPECT_THAT(answered, ElementsAreArray(row.answered));
    EXPECT_EQ(window.complaints().size(), row.complaints);
    EXPECT_THAT(screen.questions, IsEmpty()) << "the screen is never asked";
    EXPECT_THAT(screen.inputs, IsEmpty());
  }
}

TEST(ScriptWindow, SaysWhichAnswersDidNotFit) {
  RecordingWindow screen;
  ScriptWindow window(screen, Answers("# first\nyes\ntext:secret\n"), 0);
  window.Ask(RetryBox("a.dll is in use.\r\nPlease close Korvo."));
  window.Ask(YesNoBox("Reboot?"));
  EXPECT_THAT(
      window.complaints(),
      ElementsAre("Answer in line 2, \"yes\", does not fit the question \"a.dll is in use.\"",
                  "Answer in line 3, \"text:...\", does not fit the question \"Reboot?\""));
}

struct ContinueCase {
  const char* what;
  const char* answers;
  std::string next;  ///< what a Retry box gets afterwards
};

const ContinueCase kContinueCases[] = {
    {"without an answer", "", "cancel"},
    {"a continue is used up", "continue\nretry\n", "retry"},
    {"another answer is left", "retry\n", "retry"},
};

TEST(ScriptWindow, ContinuesAtOnce) {
  for (const ContinueCase& row : kContinueCases) {
    SCOPED_TRACE(row.what);
    RecordingWindow screen;
    ScriptWindow window(screen, Answers(row.answers), 0);
    RecordingEvents events([&] {
      window.EnableButton(WindowButton::Install360, true);
      window.EnableButton(WindowButton::Continue, true);
      EXPECT_TRUE(screen.IsEnabled(WindowButton::Continue)) << "the screen shows the buttons";
      window.ProcessEvents(milliseconds(1000));
      window.ProcessEvents(milliseconds(1000));
      window.EnableButton(WindowButton::Continue, false);
      EXPECT_EQ(AskShort(window, "r:a"), row.next);
    });
    window.Run(events);
    EXPECT_THAT(events.raised, ElementsAre("Form_Load", "cmdContinue_Click"));
    EXPECT_EQ(screen.waits.size(), 1U) << "the first one did not wait";
    EXPECT_THAT(window.complaints(), IsEmpty());
  }
}

TEST(ScriptWindow, ContinuesEachTimeTheButtonIsEnabled) {
  RecordingWindow screen;
  ScriptWindow window(screen, {}, 0);
  RecordingEvents events([&] {
    for (int i = 0; i < 2; ++i) {
      window.EnableButton(WindowButton::Continue, true);
      window.EnableButton(WindowButton::Continue, true);
      window.ProcessEvents(milliseconds(0));
      window.EnableButton(WindowButton::Continue, false);
    }
  });
  window.Run(events);
  EXPECT_THAT(events.raised, ElementsAre("Form_Load", "cmdContinue_Click", "cmdContinue_Click"));
}

TEST(ScriptWindow, ShowsEverythingOnTheScreen) {
  RecordingWindow screen;
  ScriptWindow window(screen, {}, 0);

  window.SetTitle("Korvo Update");
  window.AppendMessage("abc", 0);
  window.AppendMessage("def", 2);
  window.ShowProgress(3, 4);
  window.EnableButton(WindowButton::Install360, true);
  window.ProcessEvents(milliseconds(7));
  window.Close();

  EXPECT_EQ(screen.title, "Korvo Update");
  EXPECT_EQ(screen.log, "cdef");
  EXPECT_THAT(screen.progress, ElementsAre(RecordingWindow::Progress{3, 4}));
  EXPECT_TRUE(screen.IsEnabled(WindowButton::Install360));
  EXPECT_THAT(screen.waits, ElementsAre(milliseconds(7)));
  EXPECT_TRUE(screen.closed);
}

TEST(ScriptWindow, HandsOnWhatTheUserDoesOnTheScreen) {
  RecordingWindow screen;
  ScriptWindow window(screen, {}, 0);
  screen.clicks = {WindowButton::Install360, WindowButton::Close};
  RecordingEvents events([&] {
    EXPECT_FALSE(window.CloseRequested());
    screen.close_requested = true;
    EXPECT_TRUE(window.CloseRequested());
    window.EnableButton(WindowButton::Install360, true);
    window.ProcessEvents(milliseconds(0));
    window.ProcessEvents(milliseconds(0));
  });
  window.Run(events);
  EXPECT_THAT(events.raised, ElementsAre("Form_Load", "cmdInstall360_Click", "cmdClose_Click"));
}

TEST(ScriptWindow, ClosesTheScreenAfterTheRun) {
  RecordingWindow screen;
  ScriptWindow window(screen, {}, 0);
  RecordingEvents events([&] { EXPECT_FALSE(screen.closed); });
  window.Run(events);
  EXPECT_TRUE(screen.closed);
}

}  // namespace
}  // namespace zent
