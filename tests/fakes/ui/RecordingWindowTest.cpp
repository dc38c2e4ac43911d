#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/UpdateWindowContract.h"
#include "fakes/ui/RecordingWindow.h"

namespace zent::testing {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;

struct Subject {
  UpdateWindow& window() { return recording; }
  std::string shown() const { return recording.log; }
  RecordingWindow recording;
};

INSTANTIATE_TYPED_TEST_SUITE_P(RecordingWindow, UpdateWindowContract, Subject);

TEST(RecordingWindow, KeepsTheLogAsTheMessageBoxHasIt) {
  RecordingWindow window;
  window.AppendMessage(
      "\xC3\xA4"
      "bc\r\n",
      0);
  window.AppendMessage("def\r\n", 2);
  EXPECT_EQ(window.log, "c\r\ndef\r\n") << "two characters were cut, not two bytes";
  EXPECT_EQ(window.messages.size(), 2U);
}

TEST(RecordingWindow, GivesTheAnswersPrepared) {
  RecordingWindow window;
  window.answers = {Answer::Retry, Answer::Retry};
  window.texts = {"secret", std::nullopt};
  const MessageQuestion retry = {.title = "T", .text = "a", .buttons = BoxButtons::RetryCancel};
  const MessageQuestion yes_no = {.title = "T", .text = "b", .buttons = BoxButtons::YesNo};
  const MessageQuestion ok = {.title = "T", .text = "c"};

  EXPECT_EQ(window.Ask(ok), Answer::Ok);
  EXPECT_EQ(window.Ask(retry), Answer::Retry);
  EXPECT_EQ(window.Ask(yes_no), Answer::No) << "the box has no Retry";
  EXPECT_EQ(window.Ask(retry), Answer::Cancel) << "no answer is left";
  EXPECT_EQ(window.AskText({.title = "T", .prompt = "p", .hidden = true}), "secret");
  EXPECT_EQ(window.AskText({.title = "T", .prompt = "q"}), std::nullopt);

  EXPECT_THAT(window.boxes, ElementsAre("c", "a", "b", "a"));
  ASSERT_EQ(window.inputs.size(), 2U);
  EXPECT_TRUE(window.inputs[0].hidden);
}

TEST(RecordingWindow, ClicksAButtonOnceItIsEnabled) {
  RecordingWindow window;
  window.clicks = {WindowButton::Install360, WindowButton::Continue, WindowButton::Close};
  RecordingEvents events([&] {
    window.ProcessEvents(milliseconds(1));
    window.EnableButton(WindowButton::Install360, true);
    window.EnableButton(WindowButton::Continue, true);
    for (int i = 0; i < 4; ++i) window.ProcessEvents(milliseconds(1000));
  });

  window.Run(events);

  EXPECT_THAT(events.raised, ElementsAre("Form_Load", "cmdInstall360_Click", "cmdContinue_Click",
                                         "cmdClose_Click"));
  EXPECT_EQ(window.waits.size(), 5U);
}

TEST(RecordingWindow, LetsTheTestDoSomethingWithTheEvents) {
  RecordingWindow window;
  milliseconds waited(0);
  window.on_events = [&](milliseconds wait) {
    waited += wait;
    window.close_requested = true;
  };
  EXPECT_FALSE(window.CloseRequested());
  window.ProcessEvents(milliseconds(20));
  EXPECT_TRUE(window.CloseRequested());
  EXPECT_EQ(waited, milliseconds(20));
}

TEST(RecordingWindow, RecordsTitleProgressAndButtons) {
  RecordingWindow window;
  window.SetTitle("Korvo Update");
  window.ShowProgress(1, 3);
  EXPECT_TRUE(window.IsEnabled(WindowButton::Close));
  EXPECT_FALSE(window.IsEnabled(WindowButton::Continue));
  window.EnableButton(WindowButton::Continue, true);
  EXPECT_TRUE(window.IsEnabled(WindowButton::Continue));
  window.Close();

  EXPECT_EQ(window.title, "Korvo Update");
  EXPECT_THAT(window.progress, ElementsAre(RecordingWindow::Progress{1, 3}));
  EXPECT_TRUE(window.closed);
}

}  // namespace
}  // namespace zent::testing
