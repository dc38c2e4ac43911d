#include "ui/console/ConsoleWindow.h"

#include <algorithm>
#include <array>
#include <optional>
#include <ostream>
#include <thread>
#include <utility>

#include "base/Text.h"
#include "ui/Answers.h"
#include "ui/console/TerminalText.h"

namespace zent {
namespace {

constexpr int kTriesWithoutTerminal = 10;

struct Choice {
  Answer answer;
  std::string_view word;
};

constexpr std::array kChoices = {
    Choice{Answer::Ok, "ok"},         Choice{Answer::Ok, ""},     Choice{Answer::Retry, "retry"},
    Choice{Answer::Cancel, "cancel"}, Choice{Answer::Yes, "yes"}, Choice{Answer::No, "no"},
};

std::string_view PromptOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::RetryCancel:
      return "[R]etry, [C]ancel: ";
    case BoxButtons::YesNo:
      return "[Y]es, [N]o: ";
    case BoxButtons::Ok:
      break;
  }
  return "[O]k: ";
}

/// `line` without what surrounds a word, in small letters.
std::string WordOf(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return ToLower(line.substr(first, line.find_last_not_of(" \t") - first + 1));
}

bool IsWordOrInitial(std::string_view typed, std::string_view word) {
  return typed == word || (!word.empty() && typed == word.substr(0, 1));
}

std::optional<Answer> AnswerOf(std::string_view line, BoxButtons buttons) {
  const std::string typed = WordOf(line);
  const auto* const found =
      std::find_if(kChoices.begin(), kChoices.end(), [&](const Choice& choice) {
        return HasButton(buttons, choice.answer) && IsWordOrInitial(typed, choice.word);
      });
  if (found == kChoices.end()) return std::nullopt;
  return found->answer;
}

/// Keeps what is typed from being shown, as long as it lives.
class HiddenTyping {
 public:
  explicit HiddenTyping(ConsoleInput& input) : input_(input) { input_.HideTyping(); }
  HiddenTyping(const HiddenTyping&) = delete;
  HiddenTyping& operator=(const HiddenTyping&) = delete;
  ~HiddenTyping() { input_.ShowTyping(); }

 private:
  ConsoleInput& input_;
};

}  // namespace

ConsoleWindow::ConsoleWindow(ConsoleInput& input, std::ostream& output, bool interactive)
    : input_(input), output_(output), interactive_(interactive) {}

void ConsoleWindow::Run(WindowEvents& events) {
  events_ = &events;
  events.Form_Load();
  events_ = nullptr;
}

void ConsoleWindow::SetTitle(std::string_view title) {
  if (title == title_) return;
  title_ = title;
  PrintLines(title);
}

void ConsoleWindow::AppendMessage(std::string_view text, std::size_t) { Print(text); }

void ConsoleWindow::ShowCounter(std::string_view text, std::size_t, std::size_t) {
  if (!interactive_) return;
  if (counter_ == 0) BeginLine();
  const std::string shown = ForTerminal(text);
  const std::size_t length = CountCharacters(shown);
  const std::size_t blanks = counter_ - std::min(counter_, length);
  output_ << '\r' << shown << std::string(blanks, ' ') << std::flush;
  counter_ = length;
}

void ConsoleWindow::EnableButton(WindowButton button, bool enabled) {
  if (button == WindowButton::Install360) can_install_ = enabled;
  if (button == WindowButton::Continue) {
    // The hint waits for ProcessEvents: which of the two buttons comes first is not fixed.
    if (enabled && !can_continue_) {
      hint_due_ = true;
      wait_lines_ = 0;
    }
    can_continue_ = enabled;
  }
}

Answer ConsoleWindow::Ask(const MessageQuestion& question) {
  PrintLines(question.title, question.text);
  for (int tries = 1;; ++tries) {
    Print(PromptOf(question.buttons));
    const ConsoleInput::Reading reading = input_.Next(std::nullopt);
    if (reading.state != ConsoleInput::State::Line) break;
    ShowTyped(reading.line);
    if (const auto answer = AnswerOf(reading.line, question.buttons)) return *answer;
    if (!interactive_ && tries == kTriesWithoutTerminal) break;
  }
  BeginLine();
  return SafeAnswer(question.buttons);
}

std::optional<std::string> ConsoleWindow::AskText(const InputQuestion& question) {
  PrintLines(question.title, question.prompt);
  ConsoleInput::Reading reading;
  if (question.hidden) {
    const HiddenTyping hidden(input_);
    Print("> ");
    reading = input_.Next(std::nullopt);
    Print("\n");
  } else {
    Print("> ");
    reading = input_.Next(std::nullopt);
    if (reading.state == ConsoleInput::State::Line) ShowTyped(reading.line);
  }
  if (reading.state == ConsoleInput::State::Line) return reading.line;
  BeginLine();
  return std::nullopt;
}

void ConsoleWindow::ProcessEvents(std::chrono::milliseconds wait) {
  if (!can_continue_ || events_ == nullptr) {
    std::this_thread::sleep_for(wait);
    return;
  }
  if (hint_due_) PrintHint();
  const ConsoleInput::Reading reading = input_.Next(wait);
  if (reading.state == ConsoleInput::State::End) {
    events_->cmdContinue_Click();
  } else if (reading.state == ConsoleInput::State::Line) {
    if (interactive_) at_line_start_ = true;
    HandleWaitLine(WordOf(reading.line));
  }
}

void ConsoleWindow::HandleWaitLine(const std::string& line) {
  const bool is_last = !interactive_ && ++wait_lines_ == kTriesWithoutTerminal;
  if (line.empty() || IsWordOrInitial(line, "continue") || is_last) {
    events_->cmdContinue_Click();
  } else if (can_install_ && IsWordOrInitial(line, "install")) {
    events_->cmdInstall360_Click();
  } else {
    PrintHint();
  }
}

void ConsoleWindow::Print(std::string_view text) {
  if (std::exchange(counter_, 0) != 0) output_ << '\n';
  const std::string shown = ForTerminal(text);
  if (!shown.empty()) at_line_start_ = shown.back() == '\n';
  output_ << shown << std::flush;
}

void ConsoleWindow::BeginLine() {
  if (!at_line_start_) Print("\n");
}

/// Lines of their own, without those that are empty.
void ConsoleWindow::PrintLines(std::string_view first, std::string_view second) {
  BeginLine();
  Print(first);
  BeginLine();
  Print(second);
  BeginLine();
}

void ConsoleWindow::PrintHint() {
  hint_due_ = false;
  PrintLines(can_install_ ? "Press Enter to continue, or i and Enter to install 3.6.0."
                          : "Press Enter to continue.");
}

/// A terminal has shown the line and its end already.
void ConsoleWindow::ShowTyped(std::string_view line) {
  if (interactive_) {
    at_line_start_ = true;
  } else {
    Print(line);
    Print("\n");
  }
}

}  // namespace zent
