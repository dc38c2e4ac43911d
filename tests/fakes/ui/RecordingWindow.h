#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ui/UpdateWindow.h"

namespace zent::testing {

/// A window that nobody sees: records what it shows, gives the answers prepared, and never waits.
class RecordingWindow : public UpdateWindow {
 public:
  struct Progress {
    std::size_t step = 0;
    std::size_t steps = 0;
    bool operator==(const Progress&) const = default;
  };

  /// Raises Form_Load and returns after it.
  void Run(WindowEvents& events) override;
  void Close() override { closed = true; }
  bool CloseRequested() const override { return close_requested; }
  void SetTitle(std::string_view text) override { title = text; }
  void AppendMessage(std::string_view text, std::size_t cut) override;
  void ShowCounter(std::string_view text, std::size_t replaced, std::size_t cut) override;
  void EnableButton(WindowButton button, bool enabled) override;
  void ShowProgress(std::size_t step, std::size_t steps) override;
  /// The next of `answers` when the box has that button, else its safe answer; a box with only OK
  /// takes none of them.
  Answer Ask(const MessageQuestion& question) override;
  /// The next of `texts`, or nothing.
  std::optional<std::string> AskText(const InputQuestion& question) override;
  /// Records the wait, calls `on_events`, and raises the next of `clicks` once its button is
  /// enabled.
  void ProcessEvents(std::chrono::milliseconds wait) override;

  bool IsEnabled(WindowButton button) const { return enabled.contains(button); }

  // What the user does.
  std::deque<Answer> answers;
  std::deque<std::optional<std::string>> texts;
  std::deque<WindowButton> clicks;
  bool close_requested = false;
  std::function<void(std::chrono::milliseconds)> on_events;  ///< may move a clock, or close
  std::function<void()> on_ask;  ///< at each box, before its answer: what the user does meanwhile

  // What was shown.
  std::string title;
  std::string log;                    ///< the message box, with what was cut off it missing
  std::vector<std::string> messages;  ///< each text appended
  std::vector<std::string> boxes;     ///< the texts of `questions`
  std::vector<MessageQuestion> questions;
  std::vector<InputQuestion> inputs;
  std::vector<Progress> progress;
  std::vector<std::chrono::milliseconds> waits;  ///< of ProcessEvents
  std::set<WindowButton> enabled = {WindowButton::Close};
  bool closed = false;

 private:
  WindowEvents* events_ = nullptr;  ///< only during Run
};

}  // namespace zent::testing
