#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ui/RepaintPace.h"
#include "ui/UpdateWindow.h"

namespace zent {

class MainWindow;

/// True when this process can show windows to somebody. Without that Win32UpdateWindow must not be
/// made: the system gives it none.
bool HasDesktop();

/// The window on Windows, made of the system's own controls. The thread that makes it is the one
/// that uses it. Texts are shown in the code page of the machine.
///
/// A message is painted at once, and every 20 milliseconds at the latest the events of the user are
/// served too, on a machine that paints fast enough; a slow one spends half its time on painting.
/// Of a burst not all are painted singly; what was not is shown with the next one, or when the
/// window next processes events.
class Win32UpdateWindow : public UpdateWindow {
 public:
  /// Throws std::runtime_error when the system gives no window.
  Win32UpdateWindow();
  ~Win32UpdateWindow() override;
  Win32UpdateWindow(const Win32UpdateWindow&) = delete;
  Win32UpdateWindow& operator=(const Win32UpdateWindow&) = delete;

  void Run(WindowEvents& events) override;
  void Close() override;
  bool CloseRequested() const override { return close_requested_; }
  void SetTitle(std::string_view title) override;
  void AppendMessage(std::string_view text, std::size_t cut) override;
  void ShowCounter(std::string_view text, std::size_t replaced, std::size_t cut) override;
  void EnableButton(WindowButton button, bool enabled) override;
  void ShowProgress(std::size_t step, std::size_t steps) override;
  Answer Ask(const MessageQuestion& question) override;
  std::optional<std::string> AskText(const InputQuestion& question) override;
  void ProcessEvents(std::chrono::milliseconds wait) override;

 private:
  enum class Stage : std::uint8_t { Made, Loading, Loaded, Closed };
  struct Progress {
    std::size_t step = 0;
    std::size_t steps = 0;
  };

  void Load();
  void RaiseClick(WindowButton button);
  void CloseClicked();
  /// The user wants to close: at once, or with a question while Form_Load is at work.
  void CloseWanted();
  void CloseNow();
  void ReportDefect(const char* what) noexcept;
  /// Takes the messages of the thread that wait; true when there were any.
  bool ServeEvents();
  /// Shows what waits; with `paint`, on the screen when this returns.
  void ShowPending(bool paint);
  /// Shows now what has changed, or soon, as the pace has it.
  void ShowAtPace();

  std::unique_ptr<MainWindow> window_;
  WindowEvents* events_ = nullptr;  ///< only inside Run
  RepaintPace pace_;
  std::optional<Progress> pending_progress_;
  Stage stage_ = Stage::Made;
  bool close_requested_ = false;
  bool close_after_load_ = false;
  bool serving_ = false;
  bool show_soon_ = false;  ///< the timer runs that shows what waits
};

}  // namespace zent
