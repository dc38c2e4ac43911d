#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zent {

/// What the user does to the window, and its loading. Implemented by the run.
class WindowEvents {
 public:
  virtual ~WindowEvents() = default;
  /// The window is loaded: the whole run happens inside this call.
  virtual void Form_Load() = 0;
  virtual void cmdClose_Click() = 0;
  virtual void cmdContinue_Click() = 0;
  virtual void cmdInstall360_Click() = 0;
};

enum class WindowButton { Close, Continue, Install360 };

/// Tells `events` of a click on `button`.
void RaiseClick(WindowEvents& events, WindowButton button);

enum class BoxButtons { Ok, RetryCancel, YesNo };
enum class BoxIcon { Information, Question, Critical, None };
enum class Answer { Ok, Retry, Cancel, Yes, No };

/// A message box.
struct MessageQuestion {
  std::string title = {};
  std::string text;  ///< lines end with CR LF
  BoxButtons buttons = BoxButtons::Ok;
  BoxIcon icon = BoxIcon::Information;
  bool topmost = false;  ///< stays above all windows of the desktop
};

/// An input box: one line of text.
struct InputQuestion {
  std::string title;
  std::string prompt;   ///< lines end with CR LF
  bool hidden = false;  ///< shows a star for each character
};

/// The one window of the updater: a title, the message box `txtMessage` with a progress bar, three
/// buttons and question boxes. Calls come from one thread, inside Run. Texts are UTF-8.
///
/// While nothing else is said, Close is enabled, Continue and Install 3.6.0 are not.
class UpdateWindow {
 public:
  virtual ~UpdateWindow() = default;

  /// Shows the window, raises Form_Load once and returns when the window has been closed.
  virtual void Run(WindowEvents& events) = 0;
  /// Closes the window; Run returns once Form_Load has. A window already closed stays so.
  virtual void Close() = 0;
  /// The user has confirmed that the window be closed while Form_Load is at work: the run ends
  /// after its present step, a wait ends at once.
  virtual bool CloseRequested() const = 0;

  virtual void SetTitle(std::string_view title) = 0;
  /// Appends to the message box, after `cut` characters are taken off its start, puts the caret
  /// before what was appended, scrolls to the end and repaints at once. Lines end with CR LF.
  virtual void AppendMessage(std::string_view text, std::size_t cut) = 0;
  /// Shows a counter in place: takes the last `replaced` characters off the message box and goes on
  /// as AppendMessage. A window that cannot take back what it showed may leave counters out.
  virtual void ShowCounter(std::string_view text, std::size_t replaced, std::size_t cut) = 0;
  virtual void EnableButton(WindowButton button, bool enabled) = 0;
  /// Step `step` of `steps`, 1-based; 0 steps: unknown. Never part of the message box.
  virtual void ShowProgress(std::size_t step, std::size_t steps) = 0;

  /// Shows the box and waits for its answer, one of the box's buttons. A box that is closed in
  /// another way answers Cancel or No, or Ok when that is its only button.
  virtual Answer Ask(const MessageQuestion& question) = 0;
  /// Shows the input box and waits for its text; nothing when the user cancels.
  virtual std::optional<std::string> AskText(const InputQuestion& question) = 0;

  /// Lets the window process its pending events, waiting up to `wait` for the first of them.
  virtual void ProcessEvents(std::chrono::milliseconds wait) = 0;
};

}  // namespace zent
