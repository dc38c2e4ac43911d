#pragma once

#include <windows.h>

#include <functional>
#include <string>

/// What another thread or program sees of the window and does to it, by the calls of the system
/// alone. Texts are ANSI.
namespace zent::testing {

/// True once `done`; waits for that ten seconds at most.
bool WaitFor(const std::function<bool()>& done);

/// The window on the screen; null without one.
HWND FindMain();
/// A control of the window, see MainWindow::Control.
HWND Control(int id);
/// The question box on the screen, once its buttons are there; null when none comes.
HWND WaitForBox();
/// The button, text or other control `id` of a box.
HWND BoxItem(HWND box, int id);
/// The identifier of the text in a message box.
constexpr int kBoxText = 65535;
/// The edit control of an input box.
HWND EditOf(HWND box);

std::string TextOf(HWND window);
std::string ClassOf(HWND window);
/// The control of the window's thread that has the focus.
HWND FocusOf(HWND window);

void Click(HWND button);
void PressKey(HWND control, WPARAM key);
/// Alt and a letter.
void PressMnemonic(HWND control, char letter);
void Type(HWND control, const std::string& text);
/// As by the frame.
void CloseFrame(HWND window);

}  // namespace zent::testing
