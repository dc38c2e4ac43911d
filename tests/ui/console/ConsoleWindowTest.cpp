#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "contracts/UpdateWindowContract.h"
#include "ui/console/ConsoleWindow.h"
#include "ui/console/TypedInput.h"

namespace zent {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::RecordingEvents;
using testing::TypedInput;

/// The window with an input that has ended.
struct EndedConsole {
  UpdateWindow& window() { return console; }
  std::string shown() const { return output.str(); }
  TypedInput input{""};
  std::ostringstream output;
  ConsoleWindow console{input, output, true};
};

}  // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(ConsoleWindow, UpdateWindowContract, EndedConsole);
}  // namespace testing

namespace {

struct AnswerCase {
  const char* what;
  BoxButtons buttons;
  const char* typed;
  Answer answer;
};

constexpr AnswerCase kAnswerCases[] = {
    {"the initial", BoxButtons::RetryCancel, "r\n", Answer::Retry},
    {"the capital", BoxButtons::RetryCancel, "C\n", Answer::Cancel},
    {"the word", BoxButtons::RetryCancel, "retry\n", Answer::Retry},
    {"the word in any case", BoxButtons::RetryCancel, "cAnCeL\n", Answer::Cancel},
    {"with blanks around", BoxButtons::YesNo, " \tyes \r\n", Answer::Yes},
    {"without a line end", BoxButtons::YesNo, "y", Answer::Yes},
    {"no", BoxButtons::YesNo, "N\n", Answer::No},
    {"Enter alone for Ok", BoxButtons::Ok, "\n", Answer::Ok},
    {"ok", BoxButtons::Ok, "OK\n", Answer::Ok},
    {"Enter alone for others asks again", BoxButtons::YesNo, "\nyes\n", Answer::Yes},
    {"a part of a word asks again", BoxButtons::YesNo, "ye\ny\n", Answer::Yes},
    {"a button of another box asks again", BoxButtons::RetryCancel, "y\nno\nok\nr\n",
     Answer::Retry},
    {"anything asks again", BoxButtons::YesNo, "what?\nyesno\nyes\n", Answer::Yes},
    {"the end of the input is Cancel", BoxButtons::RetryCancel, "", Answer::Cancel},
    {"the end of the input is No", BoxButtons::YesNo, "", Answer::No},
    {"the end of the input is Ok", BoxButtons::Ok, "", Answer::Ok},
    {"also behind a wrong answer", BoxButtons::YesNo, "what?\n", Answer::No},
};

TEST(ConsoleWindow, TakesWordsAndInitialsForAnswers) {
  for (const bool interactive : {true, false}) {
    for (const AnswerCase& row : kAnswerCases) {
      SCOPED_TRACE(row.what);
      TypedInput input(row.typed);
      std::ostringstream output;
      ConsoleWindow window(input, output, interactive);
      EXPECT_EQ(window.Ask({.title = "T", .text = "t", .buttons = row.buttons}), row.answer);
    }
  }
}

TEST(ConsoleWindow, ShowsTitleTextAndChoices) {
  TypedInput input("x\nr\n\nn\n");
  std::ostringstream output;
  ConsoleWindow window(input, output, true);

  window.Ask({.title = "Korvo", .text = "In use.\r\nRetry?", .buttons = BoxButtons::RetryCancel});
  window.Ask({.title = "Korvo", .text = "Done.\r\n"});
  window.Ask({.title = "", .text = "Reboot?", .buttons = BoxButtons::YesNo});

  EXPECT_EQ(output.str(),
            "Korvo\nIn use.\nRetry?\n[R]etry, [C]ancel: [R]etry, [C]ancel: "
            "Korvo\nDone.\n[O]k: "
            "Reboot?\n[Y]es, [N]o: ");
}

TEST(ConsoleWindow, ShowsTheAnswersThatNoTerminalShows) {
  TypedInput input("\x1B[2J\nretry\nsome text\nsecret\n");
  std::ostringstream output;
  ConsoleWindow window(input, output, false);

  window.Ask({.title = "T", .text = "a", .buttons = BoxButtons::RetryCancel});
  EXPECT_EQ(window.AskText({.title = "T", .prompt = "b"}), "some text");
  EXPECT_EQ(window.AskText({.title = "T", .prompt = "c", .hidden = true}), "secret");
  EXPECT_EQ(window.Ask({.title = "T", .text = "d", .buttons = BoxButtons::YesNo}), Answer::No);

  EXPECT_EQ(output.str(),
            "T\na\n[R]etry, [C]ancel: ^[[2J\n[R]etry, [C]ancel: retry\n"
            "T\nb\n> some text\nT\nc\n> \nT\nd\n[Y]es, [N]o: \n");
}

TEST(ConsoleWindow, AnEndlessInputThatAnswersNothingIsGivenUp) {
  std::string lines;
  for (int i = 0; i < 11; ++i) lines += "what?\n";
  TypedInput input(lines + "yes\n");
  std::ostringstream output;
  ConsoleWindow window(input, output, false);

  EXPECT_EQ(window.Ask({.title = "T", .text = "t", .buttons = BoxButtons::YesNo}), Answer::No);

  EXPECT_EQ(window.Ask({.title = "T", .text = "t", .buttons = BoxButtons::YesNo}), Answer::Yes)
      << "ten lines were used up";
}

TEST(ConsoleWindow, APersonMayMistypeAsOftenAsTheyLike) {
  std::string lines;
  for (int i = 0; i < 50; ++i) lines += "what?\n";
  TypedInput input(lines + "yes\n");
  std::ostringstream output;
  ConsoleWindow window(input, output, true);
  EXPECT_EQ(window.Ask({.title = "T", .text = "t", .buttons = BoxButtons::YesNo}), Answer::Yes);
}

struct InputCase {
  const char* what;
  const char* typed;
  std::optional<std::string> text;
};

const InputCase kInputCases[] = {
    {"a line", "some text\n", "some text"},
    {"blanks stay", "  a \n", "  a "},
    {"a CR before the line end goes", "a\r\n", "a"},
    {"an empty line is an empty text", "\n", ""},
    {"a line without its end", "a", "a"},
    {"other characters", "\xC3\xA4\n", "\xC3\xA4"},
    {"the end of the input cancels", "", std::nullopt},
};

TEST(ConsoleWindow, AsksForALineOfText) {
  for (const bool hidden : {false, true}) {
    for (const InputCase& row : kInputCases) {
      SCOPED_TRACE(row.what);
      TypedInput input(row.typed);
      std::ostringstream output;
      ConsoleWindow window(input, output, false);
      EXPECT_EQ(window.AskText({.title = "T", .prompt = "p", .hidden = hidden}), row.text);
    }
  }
}

TEST(ConsoleWindow, PrintsMessagesWithoutTheirControls) {
  TypedInput input("");
  std::ostringstream output;
  ConsoleWindow window(input, output, true);

  window.SetTitle("Korvo\x1B]0;hacked\x07 Update");
  window.SetTitle("Korvo\x1B]0;hacked\x07 Update");
  window.AppendMessage("  one\r\n", 0);
  window.AppendMessage("  \x1B[2Jtwo\r\n", 30000);
  window.ShowProgress(1, 2);
  window.SetTitle("Other");
  window.AppendMessage("  begun", 0);
  window.SetTitle("Third");

  EXPECT_EQ(output.str(), "Korvo^[]0;hacked^G Update\n  one\n  ^[[2Jtwo\nOther\n  begun\nThird\n");
}

TEST(ConsoleWindow, ShowsCountersInPlaceOnATerminalAlone) {
  for (const bool terminal : {true, false}) {
    TypedInput input("");
    std::ostringstream output;
    ConsoleWindow window(input, output, terminal);
    window.AppendMessage("  Updating\r\n", 0);
    window.ShowCounter("  1000 Links", 0, 0);
    window.ShowCounter("  2\x1B Links", 12, 0);
    window.AppendMessage("  next\r\n", 0);
    EXPECT_EQ(output.str(), terminal ? "  Updating\n\r  1000 Links\r  2^[ Links \n  next\n"
                                     : "  Updating\n  next\n");
  }
}

TEST(ConsoleWindow, BoxesObeyNoControlsEither) {
  TypedInput input("");
  std::ostringstream output;
  ConsoleWindow window(input, output, true);
  window.Ask({.title = "\x1B[1m", .text = "\x1B[2m", .buttons = BoxButtons::YesNo});
  window.AskText({.title = "\x1B[3m", .prompt = "\x1B[4m", .hidden = true});
  EXPECT_EQ(output.str().find('\x1B'), std::string::npos);
}

/// One wait for Continue: what is typed, and what it raises in `looks` looks.
struct WaitCase {
  const char* what;
  const char* typed;
  bool can_install;
  int looks;
  std::vector<std::string> raised;
};

const WaitCase kWaitCases[] = {
    {"Enter continues", "\n", true, 1, {"cmdContinue_Click"}},
    {"so does the word", "Continue\n", true, 1, {"cmdContinue_Click"}},
    {"and its initial", "c\n", true, 1, {"cmdContinue_Click"}},
    {"i installs", "i\n\n", true, 2, {"cmdInstall360_Click", "cmdContinue_Click"}},
    {"install installs", " INSTALL \n\n", true, 2, {"cmdInstall360_Click", "cmdContinue_Click"}},
    {"i without that button does nothing", "i\n\n", false, 2, {"cmdContinue_Click"}},
    {"anything else does nothing", "what?\n", true, 1, {}},
    {"the end of the input continues", "", true, 1, {"cmdContinue_Click"}},
    {"also after an installation", "i\n", true, 2, {"cmdInstall360_Click", "cmdContinue_Click"}},
};

TEST(ConsoleWindow, WaitsForContinue) {
  for (const WaitCase& row : kWaitCases) {
    SCOPED_TRACE(row.what);
    TypedInput input(row.typed);
    std::ostringstream output;
    ConsoleWindow window(input, output, true);
    RecordingEvents events([&] {
      window.EnableButton(WindowButton::Install360, row.can_install);
      window.EnableButton(WindowButton::Continue, true);
      for (int i = 0; i < row.looks; ++i) window.ProcessEvents(milliseconds(1000));
    });
    window.Run(events);
    std::vector<std::string> expected = {"Form_Load"};
    expected.insert(expected.end(), row.raised.begin(), row.raised.end());
    EXPECT_THAT(events.raised, ElementsAreArray(expected));
  }
}

TEST(ConsoleWindow, TellsHowToContinue) {
  TypedInput input("\nwhat?\n");
  std::ostringstream output;
  ConsoleWindow window(input, output, true);
  RecordingEvents events([&] {
    window.EnableButton(WindowButton::Continue, true);
    window.EnableButton(WindowButton::Install360, true);
    window.EnableButton(WindowButton::Continue, true);
    window.ProcessEvents(milliseconds(1000));
    EXPECT_EQ(output.str(), "Press Enter to continue, or i and Enter to install 3.6.0.\n");
    window.EnableButton(WindowButton::Continue, false);
    window.EnableButton(WindowButton::Install360, false);
    window.ProcessEvents(milliseconds(0));

    output.str("");
    window.EnableButton(WindowButton::Continue, true);
    window.ProcessEvents(milliseconds(1000));
  });
  window.Run(events);
  EXPECT_EQ(output.str(), "Press Enter to continue.\nPress Enter to continue.\n")
      << "once at the start, once for the line that says nothing";
}

TEST(ConsoleWindow, WaitsOnlyAsLongAsAsked) {
  TypedInput input;
  std::ostringstream output;
  ConsoleWindow window(input, output, true);
  RecordingEvents events([&] {
    const auto start = std::chrono::steady_clock::now();
    window.ProcessEvents(milliseconds(20));
    window.EnableButton(WindowButton::Continue, true);
    window.ProcessEvents(milliseconds(20));
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, milliseconds(40));
    EXPECT_LT(waited, std::chrono::seconds(20));
  });
  window.Run(events);
  EXPECT_THAT(events.raised, ElementsAre("Form_Load"));
}

TEST(ConsoleWindow, LeavesTheInputToTheNextQuestion) {
  TypedInput input("yes\n");
  std::ostringstream output;
  ConsoleWindow window(input, output, true);
  RecordingEvents events([&] {
    window.ProcessEvents(milliseconds(5));
    EXPECT_EQ(window.Ask({.title = "T", .text = "t", .buttons = BoxButtons::YesNo}), Answer::Yes);
  });
  window.Run(events);
  EXPECT_THAT(events.raised, ElementsAre("Form_Load"));
}

TEST(ConsoleWindow, AnEndlessInputThatDoesNotContinueIsGivenUp) {
  std::string lines;
  for (int i = 0; i < 50; ++i) lines += "i\n";
  TypedInput input(lines);
  std::ostringstream output;
  ConsoleWindow window(input, output, false);
  RecordingEvents events([&] {
    window.EnableButton(WindowButton::Continue, true);
    window.EnableButton(WindowButton::Install360, true);
    for (int i = 0; i < 10; ++i) window.ProcessEvents(milliseconds(1000));
  });
  window.Run(events);
  ASSERT_EQ(events.raised.size(), 11U);
  EXPECT_EQ(events.raised.back(), "cmdContinue_Click");
}

TEST(ConsoleWindow, RaisesNothingOutsideOfARun) {
  TypedInput input("\n");
  std::ostringstream output;
  ConsoleWindow window(input, output, true);
  window.EnableButton(WindowButton::Continue, true);
  window.ProcessEvents(milliseconds(0));
  EXPECT_EQ(output.str(), "");
}

}  // namespace
}  // namespace zent
