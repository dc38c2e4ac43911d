#include "ui/win32/MainWindow.h"

#include <commctrl.h>

#include <algorithm>
#include <climits>
#include <stdexcept>
#include <utility>

#include "platform/win32/AnsiText.h"
#include "ui/win32/AppIcon.h"
#include "ui/win32/Dpi.h"

namespace zent {
namespace {

// Of the progress bar, named by headers for Windows XP and later; older ones ignore both.
constexpr LONG kMarquee = 0x08;
constexpr UINT kSetMarquee = WM_USER + 10;
constexpr LPARAM kMarqueeInterval = 30;  ///< milliseconds

constexpr char kClosingText[] = "Closing after this step...";

int ToBarValue(std::size_t value) {
  return static_cast<int>(std::min<std::size_t>(value, INT_MAX));
}

int IdOf(WindowButton button) {
  switch (button) {
    case WindowButton::Install360:
      return MainWindow::Install;
    case WindowButton::Continue:
      return MainWindow::Continue;
    case WindowButton::Close:
      break;
  }
  return MainWindow::Close;
}

bool IsButton(int id) { return id >= MainWindow::Install && id <= MainWindow::Close; }

void RegisterMainClass(WNDPROC procedure) {
  WNDCLASSEXA look{};
  look.cbSize = sizeof look;
  look.lpfnWndProc = procedure;
  look.hInstance = GetModuleHandleA(nullptr);
  look.hIcon = AppIcon(IconSize::Large);
  look.hIconSm = AppIcon(IconSize::Small);
  look.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
  look.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
  look.lpszClassName = MainWindow::kClass;
  RegisterClassExA(&look);  // refused when a window before this one has done it: as good
}

}  // namespace

MainWindow::MainWindow(Actions actions) : actions_(std::move(actions)) {
  DrawInScreenPixels();
  InitCommonControls();
  RegisterMainClass(&Procedure);
  CreateWindowExA(WS_EX_CONTROLPARENT, kClass, "ZentUpdate", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                  CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                  GetModuleHandleA(nullptr), this);
  if (handle_ == nullptr) throw std::runtime_error("The system gives no window.");
  MakeControls();
  shutdown_block_ = std::make_unique<ShutdownBlock>(handle_);
  SetStepText("Starting...");
  SetFonts(DpiOf(handle_));
  SetFirstSize();
  focus_ = ControlOf(Log);
  MarkDefault();
}

MainWindow::~MainWindow() {
  log_.reset();
  SetWindowLongPtrA(handle_, GWLP_USERDATA, 0);  // nothing is told any more
  DestroyWindow(handle_);
}

void MainWindow::MakeControls() {
  constexpr DWORD kButton = BS_PUSHBUTTON | BS_NOTIFY | WS_TABSTOP;
  MakeControl(Caption, "Static", "&Messages:", SS_LEFT);
  log_ = std::make_unique<LogBox>(handle_, Log);
  controls_[Log - Caption] = log_->handle();
  MakeControl(Step, "Static", "", SS_LEFTNOWORDWRAP | SS_NOPREFIX);
  MakeControl(Bar, PROGRESS_CLASSA, "Progress of the update", 0);
  MakeControl(Install, "Button", "&Install 3.6.0", kButton | WS_DISABLED);
  MakeControl(Continue, "Button", "Con&tinue", kButton | WS_DISABLED);
  MakeControl(Close, "Button", "&Close", kButton);
}

void MainWindow::MakeControl(Control id, const char* window_class, const char* text, DWORD style) {
  controls_[static_cast<std::size_t>(id - Caption)] =
      CreateWindowExA(0, window_class, text, style | WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, handle_,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
}

void MainWindow::SetFonts(int dpi) {
  auto fonts = std::make_unique<Fonts>(dpi);
  dpi_ = dpi;
  for (const HWND control : controls_) {
    const HFONT font = control == log_->handle() ? fonts->log() : fonts->text();
    SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  }
  fonts_ = std::move(fonts);  // the ones before go when no control has them any more
  sizes_ = {.text = UnitsOf(fonts_->text()),
            .log = UnitsOf(fonts_->log()),
            .step_width = static_cast<int>(TextSize(fonts_->text(), kClosingText).cx),
            .button_width = static_cast<int>(TextSize(fonts_->text(), "Install 3.6.0").cx)};
  Arrange();
}

void MainWindow::SetFirstSize() {
  RECT room{};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &room, 0);
  const SIZE usual = WindowSizeFor(handle_, UsualClient(sizes_), dpi_);
  const SIZE smallest = WindowSizeFor(handle_, SmallestClient(sizes_), dpi_);
  const LONG width = std::max(smallest.cx, std::min(usual.cx, (room.right - room.left) * 9 / 10));
  const LONG height = std::max(smallest.cy, std::min(usual.cy, (room.bottom - room.top) * 9 / 10));
  SetWindowPos(handle_, nullptr, room.left + (room.right - room.left - width) / 2,
               room.top + (room.bottom - room.top - height) / 2, width, height,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void MainWindow::Arrange() {
  RECT client{};
  GetClientRect(handle_, &client);
  const MainLayout layout = LayOutMain({client.right, client.bottom}, sizes_);
  log_->Place(layout.log);
  const std::pair<Control, RECT> places[] = {{Caption, layout.caption}, {Step, layout.step},
                                             {Bar, layout.bar},         {Install, layout.install},
                                             {Continue, layout.go_on},  {Close, layout.close}};
  for (const auto& [id, place] : places) {
    MoveWindow(ControlOf(id), place.left, place.top, place.right - place.left,
               place.bottom - place.top, TRUE);
  }
}

void MainWindow::Show() {
  ShowWindow(handle_, SW_SHOWNORMAL);
  SetForegroundWindow(handle_);
  PaintNow();
}

void MainWindow::Hide() { ShowWindow(handle_, SW_HIDE); }

void MainWindow::SetTitle(std::string_view title) {
  SetWindowTextA(handle_, ShownAnsiOf(title).c_str());
}

void MainWindow::EnableButton(WindowButton button, bool enabled) {
  const int id = IdOf(button);
  const HWND control = ControlOf(id);
  const bool had_focus = GetFocus() == control;
  EnableWindow(control, enabled && !(closing_ && id == Close));
  // A disabled control that keeps the focus takes the keyboard away from all of them.
  if (had_focus && !IsEnabled(id)) SetFocus(ControlOf(Log));
  if (focus_ == control && !IsEnabled(id)) focus_ = ControlOf(Log);
  MarkDefault();
}

void MainWindow::SetProgress(std::size_t step, std::size_t steps) {
  has_steps_ = steps > 0;
  ShowBar(step, steps);
  if (closing_) return;
  SetStepText(has_steps_ ? "Step " + std::to_string(step) + " of " + std::to_string(steps)
                         : "Working...");
}

void MainWindow::ShowBar(std::size_t step, std::size_t steps) {
  const HWND bar = ControlOf(Bar);
  const LONG style = GetWindowLongA(bar, GWL_STYLE);
  const LONG wanted = steps == 0 ? style | kMarquee : style & ~kMarquee;
  if (wanted != style) {
    SetWindowLongA(bar, GWL_STYLE, wanted);
    SendMessageA(bar, kSetMarquee, steps == 0 ? TRUE : FALSE, kMarqueeInterval);
    InvalidateRect(bar, nullptr, TRUE);
  }
  if (steps == 0) return;
  SendMessageA(bar, PBM_SETRANGE32, 0, ToBarValue(steps));
  SendMessageA(bar, PBM_SETPOS, static_cast<WPARAM>(ToBarValue(std::min(step, steps))), 0);
}

void MainWindow::SetStepText(const std::string& text) {
  SetWindowTextA(ControlOf(Step), text.c_str());
  if (fonts_ == nullptr) return;
  const int width = static_cast<int>(TextSize(fonts_->text(), text).cx);
  if (width <= sizes_.step_width) return;
  sizes_.step_width = width;
  Arrange();
}

void MainWindow::SetRunning(bool running) {
  running_ = running;
  shutdown_block_->Set(running);
  MarkDefault();
  if (running || has_steps_) return;
  ShowBar(0, 1);  // a bar that moves would say that work goes on
  SetStepText("Ended");
}

void MainWindow::ShowClosing() {
  closing_ = true;
  EnableButton(WindowButton::Close, false);
  SetStepText(kClosingText);
}

void MainWindow::PaintNow() {
  RedrawWindow(handle_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

int MainWindow::DefaultButton() const {
  if (IsEnabled(Continue)) return Continue;
  return running_ || !IsEnabled(Close) ? 0 : Close;
}

void MainWindow::MarkDefault() {
  // A button with the focus answers to Return itself, and is then the one that looks so.
  const HWND focus = GetFocus();
  const int focused = focus != nullptr && GetParent(focus) == handle_ ? GetDlgCtrlID(focus) : 0;
  const int marked = IsButton(focused) ? focused : DefaultButton();
  for (const int id : {Install, Continue, Close}) {
    const auto style = static_cast<WPARAM>(id == marked ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON);
    const auto now = static_cast<WPARAM>(GetWindowLongA(ControlOf(id), GWL_STYLE)) & BS_TYPEMASK;
    if (now != style) SendMessageA(ControlOf(id), BM_SETSTYLE, style, TRUE);
  }
}

}  // namespace zent
