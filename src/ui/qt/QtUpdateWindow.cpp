#include "ui/qt/QtUpdateWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWindow>
#include <exception>
#include <utility>

#include "ui/CloseQuestion.h"
#include "ui/qt/AppIcon.h"
#include "ui/qt/LogBox.h"
#include "ui/qt/MainWindow.h"
#include "ui/qt/QtText.h"
#include "ui/qt/QuestionBoxes.h"

namespace zent {
namespace {

using std::chrono::milliseconds;

/// Longest wait for the desktop to bring the window up; one that is minimised at once never is.
constexpr qint64 kVisibleLimit = 1000;  // milliseconds
constexpr milliseconds kShowDelay{20};

}  // namespace

template <typename Callback>
void QtUpdateWindow::Guarded(Callback callback) noexcept {
  try {
    callback();
  } catch (const std::exception& error) {
    ReportDefect(error.what());
  } catch (...) {
    ReportDefect("unknown");
  }
}

QtUpdateWindow::QtUpdateWindow() {
  if (QCoreApplication::instance() == nullptr) {
    application_ = std::make_unique<QApplication>(argument_count_, arguments_);
    QGuiApplication::setDesktopFileName("zentupdate");
  }
  QGuiApplication::setQuitOnLastWindowClosed(false);  // Run ends its own loop
  window_ = std::make_unique<MainWindow>(MainWindow::Actions{
      .close_clicked = [this] { Guarded([this] { CloseClicked(); }); },
      .continue_clicked = [this] { Guarded([this] { RaiseClick(WindowButton::Continue); }); },
      .install_clicked = [this] { Guarded([this] { RaiseClick(WindowButton::Install360); }); },
      .close_wanted = [this] { Guarded([this] { CloseWanted(); }); }});
  show_timer_ = std::make_unique<QTimer>();
  show_timer_->setSingleShot(true);
  QObject::connect(show_timer_.get(), &QTimer::timeout, window_.get(),
                   [this] { Guarded([this] { ShowPending(false); }); });
}

QtUpdateWindow::~QtUpdateWindow() = default;

void QtUpdateWindow::Run(WindowEvents& events) {
  if (stage_ != Stage::Made) return;
  events_ = &events;
  stage_ = Stage::Loading;
  window_->SetRunning(true);
  window_->show();
  QEventLoop loop;
  loop_ = &loop;
  QTimer::singleShot(0, window_.get(), [this] { Guarded([this] { Load(); }); });
  loop.exec();
  loop_ = nullptr;
  events_ = nullptr;
}

void QtUpdateWindow::Load() {
  WaitUntilVisible();
  Guarded([this] { events_->Form_Load(); });
  stage_ = Stage::Loaded;
  ShowPending(true);
  window_->SetRunning(false);
  if (close_requested_ || close_after_load_) CloseNow();
}

void QtUpdateWindow::WaitUntilVisible() {
  QElapsedTimer time;
  time.start();
  const QWindow* native = window_->windowHandle();
  while (native != nullptr && !native->isExposed() && time.elapsed() < kVisibleLimit) {
    ProcessEvents(milliseconds(10));
  }
  window_->PaintNow();
}

void QtUpdateWindow::Close() {
  if (stage_ == Stage::Loaded) return CloseNow();
  close_after_load_ = true;
}

void QtUpdateWindow::RaiseClick(WindowButton button) {
  if (events_ != nullptr) zent::RaiseClick(*events_, button);
}

void QtUpdateWindow::CloseClicked() {
  return stage_ == Stage::Loaded ? RaiseClick(WindowButton::Close) : CloseWanted();
}

void QtUpdateWindow::CloseWanted() {
  // A question that stands open is answered first, whoever closes.
  if (close_requested_ || QApplication::activeModalWidget() != nullptr) return;
  if (stage_ != Stage::Loading) return CloseNow();
  if (AskBox(window_.get(), CloseQuestion()) != Answer::Yes) return;
  close_requested_ = true;
  window_->ShowClosing();
}

void QtUpdateWindow::CloseNow() {
  stage_ = Stage::Closed;
  window_->hide();
  if (loop_ != nullptr) loop_->quit();
}

void QtUpdateWindow::ReportDefect(const char* what) noexcept {
  try {
    AppendMessage("  Unexpected error in the update window: " + std::string(what) + "\r\n", 0);
  } catch (...) {
    // Out of memory while telling so: the run goes on, as after any other callback.
    return;
  }
}

void QtUpdateWindow::SetTitle(std::string_view title) { window_->setWindowTitle(ToQt(title)); }

void QtUpdateWindow::AppendMessage(std::string_view text, std::size_t cut) {
  window_->log().Append(text, cut);
  ShowAtPace();
}

void QtUpdateWindow::ShowCounter(std::string_view text, std::size_t replaced, std::size_t cut) {
  window_->log().TakeBack(replaced);
  window_->log().Append(text, cut);
  ShowAtPace();
}

void QtUpdateWindow::ShowProgress(std::size_t step, std::size_t steps) {
  pending_progress_ = Progress{step, steps};
  ShowAtPace();
}

void QtUpdateWindow::EnableButton(WindowButton button, bool enabled) {
  window_->EnableButton(button, enabled);
}

Answer QtUpdateWindow::Ask(const MessageQuestion& question) {
  ShowPending(true);
  return AskBox(window_.get(), question);
}

std::optional<std::string> QtUpdateWindow::AskText(const InputQuestion& question) {
  ShowPending(true);
  return AskInput(window_.get(), question);
}

void QtUpdateWindow::ProcessEvents(milliseconds wait) {
  ShowPending(false);
  QEventLoop loop;
  if (loop.processEvents(QEventLoop::AllEvents) || wait <= milliseconds::zero()) return;
  QTimer limit;
  limit.setTimerType(Qt::PreciseTimer);
  limit.start(wait);
  loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtUpdateWindow::ShowAtPace() {
  if (serving_ || !pace_.Due(RepaintPace::TimePoint::clock::now())) {
    if (!show_timer_->isActive()) show_timer_->start(kShowDelay);
    return;
  }
  ShowPending(true);
  serving_ = true;
  QCoreApplication::processEvents(QEventLoop::AllEvents);
  serving_ = false;
}

void QtUpdateWindow::ShowPending(bool paint) {
  show_timer_->stop();
  const bool changed = pending_progress_.has_value() || window_->log().HasPending();
  if (const std::optional<Progress> shown = std::exchange(pending_progress_, std::nullopt)) {
    window_->SetProgress(shown->step, shown->steps);
  }
  window_->log().Flush();
  if (paint && changed && window_->isVisible()) window_->PaintNow();
}

}  // namespace zent
