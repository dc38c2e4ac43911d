#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ui/RepaintPace.h"
#include "ui/UpdateWindow.h"

class QApplication;
class QEventLoop;
class QTimer;

namespace zent {

class MainWindow;

/// True when a desktop can be reached to show the window on. Without one QtUpdateWindow must not
/// be made: Qt would end the program.
bool HasDesktop();

/// The window on a Linux desktop, made of Qt 6 widgets. Brings up Qt itself, unless the program has
/// done so already; the thread that makes it is the one that uses it.
///
/// A message is painted at once, and every 20 milliseconds at the latest the events of the user are
/// served too. Of a burst above 50 messages not all are painted singly; what was not is shown with
/// the next one, or when the window next processes events.
class QtUpdateWindow : public UpdateWindow {
 public:
  QtUpdateWindow();
  ~QtUpdateWindow() override;
  QtUpdateWindow(const QtUpdateWindow&) = delete;
  QtUpdateWindow& operator=(const QtUpdateWindow&) = delete;

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
  enum class Stage { Made, Loading, Loaded, Closed };
  struct Progress {
    std::size_t step = 0;
    std::size_t steps = 0;
  };

  void Load();
  void WaitUntilVisible();
  void RaiseClick(WindowButton button);
  void CloseClicked();
  /// The user wants to close: at once, or with a question while Form_Load is at work.
  void CloseWanted();
  void CloseNow();
  /// Runs what Qt called; nothing it throws goes back into Qt.
  template <typename Callback>
  void Guarded(Callback callback) noexcept;
  void ReportDefect(const char* what) noexcept;
  /// Shows what waits; with `paint`, on the screen when this returns.
  void ShowPending(bool paint);
  /// Shows now what has changed, or soon, as the pace has it.
  void ShowAtPace();

  int argument_count_ = 1;
  char program_name_[11] = "zentupdate";
  char* arguments_[2] = {program_name_, nullptr};
  std::unique_ptr<QApplication> application_;
  std::unique_ptr<MainWindow> window_;
  std::unique_ptr<QTimer> show_timer_;  ///< runs while something waits to be shown
  WindowEvents* events_ = nullptr;      ///< only inside Run
  QEventLoop* loop_ = nullptr;          ///< the one of Run
  RepaintPace pace_;
  std::optional<Progress> pending_progress_;
  Stage stage_ = Stage::Made;
  bool close_requested_ = false;
  bool close_after_load_ = false;
  bool serving_ = false;
};

}  // namespace zent
