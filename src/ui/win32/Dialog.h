#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "ui/win32/Fonts.h"

namespace zent {

/// A modal box of the system's dialog class "#32770": the owner window is disabled meanwhile. Made
/// of controls that a derived class adds and places; Return presses its default button, Escape and
/// the frame's close end it as IDCANCEL.
class Dialog {
 public:
  virtual ~Dialog() = default;
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;

 protected:
  Dialog() = default;

  /// Shows the box until it is ended; the identifier of the button that did it, IDCANCEL when the
  /// system gives no box. `owner` may be null, `title` is ANSI.
  int Show(HWND owner, const std::string& title, bool topmost);

  /// Adds the controls, in the order of the Tab key.
  virtual void Fill() = 0;
  /// Places the controls for fonts(); the size of the box's inside.
  virtual SIZE Arrange() = 0;
  /// The control that has the focus at first.
  virtual HWND FirstFocus() const = 0;
  /// The box ends by button `id`: the last chance to read its controls.
  virtual void OnEnd(int id) = 0;

  /// Texts are ANSI.
  HWND Add(const char* window_class, const std::string& text, DWORD style, int id,
           DWORD extended = 0);
  HWND Item(int id) const { return GetDlgItem(handle_, id); }
  void Place(int id, int left, int top, int width, int height) const;
  void SetItemFont(int id, HFONT font) const;
  HWND handle() const { return handle_; }
  const Fonts& fonts() const { return *fonts_; }
  DialogUnits units() const { return UnitsOf(fonts_->text()); }
  /// The width of an inside whose frame shows the whole title, as far as the screen has room.
  int TitleWidth() const;

 private:
  static INT_PTR CALLBACK Procedure(HWND box, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
  INT_PTR Handle(UINT message, WPARAM wparam, LPARAM lparam);
  void Init();
  void SetFonts(int dpi);
  void End(int id);
  void Center(SIZE size) const;

  HWND handle_ = nullptr;
  HWND owner_ = nullptr;
  std::string title_;
  bool topmost_ = false;
  std::unique_ptr<Fonts> fonts_;
  int dpi_ = 0;
};

}  // namespace zent
