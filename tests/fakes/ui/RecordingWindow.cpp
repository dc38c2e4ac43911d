#include "fakes/ui/RecordingWindow.h"

#include <utility>

#include "base/Text.h"
#include "ui/Answers.h"

namespace zent::testing {

void RecordingWindow::Run(WindowEvents& events) {
  events_ = &events;
  events.Form_Load();
  events_ = nullptr;
}

void RecordingWindow::AppendMessage(std::string_view text, std::size_t cut) {
  messages.emplace_back(text);
  log.erase(0, SkipCharacters(log, cut));
  log += text;
}

void RecordingWindow::ShowCounter(std::string_view text, std::size_t replaced, std::size_t cut) {
  log.resize(SkipCharacters(log, CountCharacters(log) - replaced));
  log.erase(0, SkipCharacters(log, cut));
  log += text;
}

void RecordingWindow::EnableButton(WindowButton button, bool is_enabled) {
  if (is_enabled) {
    enabled.insert(button);
  } else {
    enabled.erase(button);
  }
}

void RecordingWindow::ShowProgress(std::size_t step, std::size_t steps) {
  progress.push_back({step, steps});
}

Answer RecordingWindow::Ask(const MessageQuestion& question) {
  boxes.push_back(question.text);
  questions.push_back(question);
  if (on_ask) on_ask();
  if (question.buttons == BoxButtons::Ok) return Answer::Ok;
  if (answers.empty()) return SafeAnswer(question.buttons);
  const Answer answer = answers.front();
  answers.pop_front();
  return HasButton(question.buttons, answer) ? answer : SafeAnswer(question.buttons);
}

std::optional<std::string> RecordingWindow::AskText(const InputQuestion& question) {
  inputs.push_back(question);
  if (texts.empty()) return std::nullopt;
  std::optional<std::string> text = std::move(texts.front());
  texts.pop_front();
  return text;
}

void RecordingWindow::ProcessEvents(std::chrono::milliseconds wait) {
  waits.push_back(wait);
  if (on_events) on_events(wait);
  if (events_ == nullptr || clicks.empty() || !IsEnabled(clicks.front())) return;
  const WindowButton clicked = clicks.front();
  clicks.pop_front();
  switch (clicked) {
    case WindowButton::Close:
      return events_->cmdClose_Click();
    case WindowButton::Continue:
      return events_->cmdContinue_Click();
    case WindowButton::Install360:
      return events_->cmdInstall360_Click();
  }
}

}  // namespace zent::testing
