#pragma once

#include <iosfwd>
#include <string>

#include "ui/UpdateWindow.h"
#include "ui/console/ConsoleInput.h"

namespace zent {

/// The window on a terminal, or on whatever stands in for one. The message box is the output,
/// questions are asked line by line, progress is not shown. A terminal has no window to keep open:
/// Run returns after Form_Load, and nobody can ask for the window to be closed meanwhile.
///
/// Where the input ends, questions get their safe answer and a wait for Continue goes on.
class ConsoleWindow : public UpdateWindow {
 public:
  /// Reads from `input`, writes UTF-8 to `output`; owns neither. `interactive` says
  /// that a person types at a terminal that shows what is typed. Without it each answer is shown
  /// behind its question (hidden input never), and a question or wait that gets ten lines without
  /// an answer to it takes the safe one or goes on, so that an endless input does not keep the run.
  ConsoleWindow(ConsoleInput& input, std::ostream& output, bool interactive);

  void Run(WindowEvents& events) override;
  void Close() override {}
  bool CloseRequested() const override { return false; }
  void SetTitle(std::string_view title) override;
  /// Everything is shown: what was cut off the message box stays above.
  void AppendMessage(std::string_view text, std::size_t cut) override;
  /// On a terminal alone, over the counter before; the next text begins a line.
  void ShowCounter(std::string_view text, std::size_t replaced, std::size_t cut) override;
  void EnableButton(WindowButton button, bool enabled) override;
  void ShowProgress(std::size_t, std::size_t) override {}
  /// Shows title, text and choices; takes a choice or its first letter, in any case, and a lone
  /// Enter for Ok.
  Answer Ask(const MessageQuestion& question) override;
  /// Hidden input is not shown at all while it is typed. The end of the input cancels.
  std::optional<std::string> AskText(const InputQuestion& question) override;
  /// While Continue is enabled, Enter raises cmdContinue_Click and "i" cmdInstall360_Click. At all
  /// other times nothing is read, since the next line may answer the next question.
  void ProcessEvents(std::chrono::milliseconds wait) override;

 private:
  void Print(std::string_view text);
  void BeginLine();
  void PrintLines(std::string_view first, std::string_view second = {});
  void PrintHint();
  void ShowTyped(std::string_view line);
  void HandleWaitLine(const std::string& line);

  ConsoleInput& input_;
  std::ostream& output_;
  bool interactive_;
  WindowEvents* events_ = nullptr;  ///< only during Run
  std::string title_;
  bool at_line_start_ = true;
  bool can_continue_ = false;
  bool can_install_ = false;
  bool hint_due_ = false;
  std::size_t counter_ = 0;  ///< characters of the counter that stands on the present line
  int wait_lines_ = 0;       ///< read since Continue became enabled
};

}  // namespace zent
