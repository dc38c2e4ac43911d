#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "fakes/ui/RecordingEvents.h"
#include "ui/Answers.h"
#include "ui/UpdateWindow.h"

namespace zent::testing {

/// What every window does when nobody is there to answer. `Subject` is built without arguments, has
/// `window()`, the window before it is run, with an input that has ended, and `shown()`, all that
/// the message box was given.
template <typename Subject>
class UpdateWindowContract : public ::testing::Test {
 protected:
  /// Runs the window with `on_load` as its run; the names of the events raised.
  template <typename Function>
  std::vector<std::string> Run(Function on_load) {
    RecordingEvents events(on_load);
    subject.window().Run(events);
    return events.raised;
  }

  Subject subject;
};

TYPED_TEST_SUITE_P(UpdateWindowContract);

TYPED_TEST_P(UpdateWindowContract, LoadsOnceAndReturnsWhenClosed) {
  UpdateWindow& window = this->subject.window();
  const auto raised = this->Run([&] { window.Close(); });
  EXPECT_THAT(raised, ::testing::ElementsAre("Form_Load"));
}

TYPED_TEST_P(UpdateWindowContract, StaysClosedWhenClosedTwice) {
  UpdateWindow& window = this->subject.window();
  const auto raised = this->Run([&] {
    window.Close();
    window.Close();
  });
  window.Close();
  EXPECT_THAT(raised, ::testing::ElementsAre("Form_Load"));
}

TYPED_TEST_P(UpdateWindowContract, GivesTheSafeAnswerWhenNobodyAnswers) {
  UpdateWindow& window = this->subject.window();
  this->Run([&] {
    for (const BoxButtons buttons : {BoxButtons::Ok, BoxButtons::RetryCancel, BoxButtons::YesNo}) {
      const Answer answer = window.Ask({.title = "Title", .text = "Text", .buttons = buttons});
      EXPECT_EQ(answer, SafeAnswer(buttons));
    }
    EXPECT_EQ(window.AskText({.title = "Title", .prompt = "Prompt"}), std::nullopt);
    EXPECT_EQ(window.AskText({.title = "Title", .prompt = "Prompt", .hidden = true}), std::nullopt);
    window.Close();
  });
}

TYPED_TEST_P(UpdateWindowContract, ShowsMessagesInTheirOrder) {
  UpdateWindow& window = this->subject.window();
  this->Run([&] {
    window.SetTitle("Korvo Update");
    window.ShowProgress(0, 0);
    window.AppendMessage("  first\r\n", 0);
    window.ShowProgress(1, 2);
    window.AppendMessage("  second \xC3\xA4\r\n", 3);
    window.Close();
  });
  const std::string shown = this->subject.shown();
  const std::size_t second = shown.find("second \xC3\xA4");
  EXPECT_NE(second, std::string::npos);
  EXPECT_LT(shown.find("st"), second) << "before it stands what was not cut off the first";
}

TYPED_TEST_P(UpdateWindowContract, ShowsMessagesBehindACounter) {
  UpdateWindow& window = this->subject.window();
  this->Run([&] {
    window.AppendMessage("  heading\r\n", 0);
    window.ShowCounter("      100 Links", 0, 0);
    window.ShowCounter("      200 Links", 15, 0);
    window.AppendMessage("  next\r\n", 0);
    window.Close();
  });
  const std::string shown = this->subject.shown();
  EXPECT_LT(shown.find("heading"), shown.find("next"));
  EXPECT_LT(shown.find("next"), shown.size());
}

TYPED_TEST_P(UpdateWindowContract, NobodyAsksForItsClosing) {
  UpdateWindow& window = this->subject.window();
  this->Run([&] {
    EXPECT_FALSE(window.CloseRequested());
    window.Close();
  });
}

TYPED_TEST_P(UpdateWindowContract, RaisesNothingWhileContinueIsDisabled) {
  UpdateWindow& window = this->subject.window();
  const auto raised = this->Run([&] {
    window.ProcessEvents(std::chrono::milliseconds(0));
    window.EnableButton(WindowButton::Continue, true);
    window.EnableButton(WindowButton::Continue, false);
    window.ProcessEvents(std::chrono::milliseconds(5));
    window.Close();
  });
  EXPECT_THAT(raised, ::testing::ElementsAre("Form_Load"));
}

REGISTER_TYPED_TEST_SUITE_P(UpdateWindowContract, LoadsOnceAndReturnsWhenClosed,
                            StaysClosedWhenClosedTwice, GivesTheSafeAnswerWhenNobodyAnswers,
                            ShowsMessagesInTheirOrder, ShowsMessagesBehindACounter,
                            NobodyAsksForItsClosing, RaisesNothingWhileContinueIsDisabled);

}  // namespace zent::testing
