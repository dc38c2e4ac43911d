#pragma once

#include <string>
#include <vector>

#include "ui/UpdateWindow.h"
#include "ui/script/ScriptedAnswers.h"

namespace zent {

/// A window that is answered beforehand: everything is shown on another window, `screen`, and every
/// question is answered here at once, so that a run needs nobody and never waits.
///
/// Answers are taken in their order, one a question; a box with only OK takes none. An answer that
/// is none to its question is used up all the same, and the question gets its safe answer: Cancel,
/// No, or the input cancelled. So does a question after the last answer, but there the same Retry
/// box is first answered with Retry, up to `retries` times in a row.
class ScriptWindow : public UpdateWindow {
 public:
  /// `screen` must outlive this.
  ScriptWindow(UpdateWindow& screen, ScriptedAnswers answers, int retries);

  /// One text for each answer that did not fit its question, for the user to read.
  const std::vector<std::string>& complaints() const { return complaints_; }

  /// Runs the screen, and closes it after Form_Load: there may be nobody who would.
  void Run(WindowEvents& events) override;
  void Close() override { screen_.Close(); }
  bool CloseRequested() const override { return screen_.CloseRequested(); }
  void SetTitle(std::string_view title) override { screen_.SetTitle(title); }
  void AppendMessage(std::string_view text, std::size_t cut) override {
    screen_.AppendMessage(text, cut);
  }
  void ShowCounter(std::string_view text, std::size_t replaced, std::size_t cut) override {
    screen_.ShowCounter(text, replaced, cut);
  }
  void EnableButton(WindowButton button, bool enabled) override;
  void ShowProgress(std::size_t step, std::size_t steps) override {
    screen_.ShowProgress(step, steps);
  }
  Answer Ask(const MessageQuestion& question) override;
  std::optional<std::string> AskText(const InputQuestion& question) override;
  /// Once after Continue has become enabled, raises cmdContinue_Click without waiting; it uses up a
  /// "continue" when that is the next answer.
  void ProcessEvents(std::chrono::milliseconds wait) override;

 private:
  const ScriptedAnswer* Peek() const;
  void Complain(const ScriptedAnswer& answer, std::string_view question);
  bool RetriesAgain(const MessageQuestion& question);

  UpdateWindow& screen_;
  ScriptedAnswers answers_;
  std::size_t next_ = 0;  ///< of answers_
  int retries_;
  int retried_ = 0;            ///< times in a row that last_question_ got a Retry of ours
  std::string last_question_;  ///< title and text of the box asked last
  std::vector<std::string> complaints_;
  WindowEvents* events_ = nullptr;  ///< only during Run
  bool continue_enabled_ = false;
  bool continue_due_ = false;
};

}  // namespace zent
