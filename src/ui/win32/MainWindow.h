#pragma once

#include <windows.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "ui/UpdateWindow.h"
#include "ui/win32/Fonts.h"
#include "ui/win32/LogBox.h"
#include "ui/win32/MainLayout.h"
#include "ui/win32/ShutdownBlock.h"

namespace zent {

/// The controls of the window and their places. Class and title make the window known to other
/// programs, identifiers its controls. What they do is told to whoever sets the actions; the window
/// itself never closes, it only reports that the user wants it to.
///
/// Return presses the button with the focus, else the default button: Continue while it is enabled,
/// else Close once the run has ended. While the run is at work no button answers to it.
class MainWindow {
 public:
  static constexpr char kClass[] = "frmZentUpdate";
  /// The controls in the order of the Tab key. A label stands right before what it names.
  enum Control : int { Caption = 100, Log, Step, Bar, Install, Continue, Close };
  static constexpr int kControls = 7;

  struct Actions {
    std::function<void()> close_clicked;
    std::function<void()> continue_clicked;
    std::function<void()> install_clicked;
    std::function<void()> close_wanted;                ///< by the window's frame
    std::function<void()> show_due;                    ///< the time of StartShowTimer is over
    std::function<void(const char*)> defect_happened;  ///< an exception, kept from the system
  };

  /// Throws when the system gives no window.
  explicit MainWindow(Actions actions);
  ~MainWindow();
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  HWND handle() const { return handle_; }
  LogBox& log() { return *log_; }
  void Show();
  void Hide();
  void SetTitle(std::string_view title);
  void EnableButton(WindowButton button, bool enabled);
  void SetProgress(std::size_t step, std::size_t steps);
  /// The run is at work, or no longer.
  void SetRunning(bool running);
  /// Says that the window closes after the present step, and takes Close away.
  void ShowClosing();
  /// Paints at once what has changed.
  void PaintNow();
  void StartShowTimer(std::chrono::milliseconds delay);
  void StopShowTimer();
  /// Dispatches a message of the thread, the keyboard of this window included.
  void Dispatch(MSG& message);

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam,
                                    LPARAM lparam) noexcept;
  LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT HandlePlace(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT Default(UINT message, WPARAM wparam, LPARAM lparam) const;
  LRESULT OnCommand(int id, int notification);
  LRESULT OnControlColor(WPARAM wparam, LPARAM lparam);
  void OnNextControl(WPARAM wparam, bool is_control);
  void OnActivate(bool active);
  void OnDpiChanged(int dpi, const RECT& place);

  HWND ControlOf(int id) const { return controls_[static_cast<std::size_t>(id - Caption)]; }
  void MakeControls();
  void MakeControl(Control id, const char* window_class, const char* text, DWORD style);
  void SetFonts(int dpi);
  void SetFirstSize();
  void Arrange();
  void SetStepText(const std::string& text);
  void ShowBar(std::size_t step, std::size_t steps);
  bool IsEnabled(int id) const { return IsWindowEnabled(ControlOf(id)) != FALSE; }
  void Click(int id);
  /// The button that Return presses where the focus is on no button; 0 for none.
  int DefaultButton() const;
  void MarkDefault();

  Actions actions_;
  HWND handle_ = nullptr;
  std::array<HWND, kControls> controls_{};  ///< children of the window, which owns them
  std::unique_ptr<Fonts> fonts_;
  std::unique_ptr<LogBox> log_;
  std::unique_ptr<ShutdownBlock> shutdown_block_;
  LayoutSizes sizes_;
  int dpi_ = 0;
  HWND focus_ = nullptr;  ///< the control that gets the focus with the window
  bool running_ = false;
  bool closing_ = false;
  bool has_steps_ = false;
};

}  // namespace zent
