#include "ui/win32/Win32UpdateWindow.h"

#include <algorithm>
#include <climits>
#include <exception>
#include <utility>

#include "ui/CloseQuestion.h"
#include "ui/win32/InputBox.h"
#include "ui/win32/MainWindow.h"
#include "ui/win32/QuestionBoxes.h"

namespace zent {
namespace {

using std::chrono::milliseconds;
using Clock = RepaintPace::TimePoint::clock;

constexpr milliseconds kShowDelay{20};

}  // namespace

Win32UpdateWindow::Win32UpdateWindow()
    : window_(std::make_unique<MainWindow>(MainWindow::Actions{
          .close_clicked = [this] { CloseClicked(); },
          .continue_clicked = [this] { RaiseClick(WindowButton::Continue); },
          .install_clicked = [this] { RaiseClick(WindowButton::Install360); },
          .close_wanted = [this] { CloseWanted(); },
          .show_due = [this] { ShowPending(false); },
          .defect_happened = [this](const char* what) { ReportDefect(what); }})) {}

Win32UpdateWindow::~Win32UpdateWindow() = default;

void Win32UpdateWindow::Run(WindowEvents& events) {
  if (stage_ != Stage::Made) return;
  events_ = &events;
  stage_ = Stage::Loading;
  window_->SetRunning(true);
  window_->Show();
  ServeEvents();
  Load();
  MSG message{};
  while (stage_ != Stage::Closed && GetMessageA(&message, nullptr, 0, 0) > 0) {
    window_->Dispatch(message);
  }
  CloseNow();
  events_ = nullptr;
}

void Win32UpdateWindow::Load() {
  try {
    events_->Form_Load();
  } catch (const std::exception& error) {
    ReportDefect(error.what());
  } catch (...) {
    ReportDefect("unknown");
  }
  // First of all: a restart that the run asked for is not to be held up by its window.
  stage_ = Stage::Loaded;
  window_->SetRunning(false);
  ShowPending(true);
  if (close_requested_ || close_after_load_) CloseNow();
}

void Win32UpdateWindow::Close() {
  if (stage_ == Stage::Loaded) return CloseNow();
  close_after_load_ = true;
}

void Win32UpdateWindow::RaiseClick(WindowButton button) {
  if (events_ != nullptr) zent::RaiseClick(*events_, button);
}

void Win32UpdateWindow::CloseClicked() {
  return stage_ == Stage::Loaded ? RaiseClick(WindowButton::Close) : CloseWanted();
}

void Win32UpdateWindow::CloseWanted() {
  if (close_requested_ || stage_ == Stage::Made) return;
  if (stage_ != Stage::Loading) return CloseNow();
  if (AskBox(window_->handle(), CloseQuestion()) != Answer::Yes) return;
  close_requested_ = true;
  window_->ShowClosing();
}

void Win32UpdateWindow::CloseNow() {
  stage_ = Stage::Closed;
  window_->Hide();
  // Wakes the loop of Run, which may wait for the next message.
  PostMessageA(window_->handle(), WM_NULL, 0, 0);
}

void Win32UpdateWindow::ReportDefect(const char* what) noexcept {
  try {
    AppendMessage("  Unexpected error in the update window: " + std::string(what) + "\r\n", 0);
  } catch (...) {
    // Out of memory while telling so: the run goes on, as after any other callback.
    return;
  }
}

void Win32UpdateWindow::SetTitle(std::string_view title) { window_->SetTitle(title); }

void Win32UpdateWindow::AppendMessage(std::string_view text, std::size_t cut) {
  window_->log().Append(text, cut);
  ShowAtPace();
}

void Win32UpdateWindow::ShowCounter(std::string_view text, std::size_t replaced, std::size_t cut) {
  window_->log().TakeBack(replaced);
  window_->log().Append(text, cut);
  ShowAtPace();
}

void Win32UpdateWindow::ShowProgress(std::size_t step, std::size_t steps) {
  pending_progress_ = Progress{step, steps};
  ShowAtPace();
}

void Win32UpdateWindow::EnableButton(WindowButton button, bool enabled) {
  window_->EnableButton(button, enabled);
}

Answer Win32UpdateWindow::Ask(const MessageQuestion& question) {
  ShowPending(true);
  return AskBox(window_->handle(), question);
}

std::optional<std::string> Win32UpdateWindow::AskText(const InputQuestion& question) {
  ShowPending(true);
  return AskInput(window_->handle(), question);
}

void Win32UpdateWindow::ProcessEvents(milliseconds wait) {
  ShowPending(false);
  if (ServeEvents() || wait <= milliseconds::zero()) return;
  const auto limit = std::min<milliseconds::rep>(wait.count(), INT_MAX);
  MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(limit), QS_ALLINPUT);
  ServeEvents();
}

bool Win32UpdateWindow::ServeEvents() {
  bool served = false;
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    served = true;
    // Whoever posts the end to this thread means the window, and that the run need not go on.
    if (message.message == WM_QUIT) close_requested_ = true;
    window_->Dispatch(message);
  }
  return served;
}

void Win32UpdateWindow::ShowAtPace() {
  const auto start = Clock::now();
  if (serving_ || !pace_.Due(start)) {
    if (!show_soon_) window_->StartShowTimer(kShowDelay);
    show_soon_ = true;
    return;
  }
  ShowPending(true);
  pace_.Took(Clock::now() - start);
  serving_ = true;
  ServeEvents();
  serving_ = false;
}

void Win32UpdateWindow::ShowPending(bool paint) {
  if (std::exchange(show_soon_, false)) window_->StopShowTimer();
  const bool changed = pending_progress_.has_value() || window_->log().HasPending();
  if (const std::optional<Progress> shown = std::exchange(pending_progress_, std::nullopt)) {
    window_->SetProgress(shown->step, shown->steps);
  }
  window_->log().Flush();
  if (paint && changed) window_->PaintNow();
}

}  // namespace zent
