#include "ui/script/ScriptWindow.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "ui/Answers.h"

namespace zent {
namespace {

/// Hands the screen's events on, and closes the screen when the run is over.
class RunThenClose : public WindowEvents {
 public:
  RunThenClose(WindowEvents& events, UpdateWindow& screen) : events_(events), screen_(screen) {}
  void Form_Load() override {
    events_.Form_Load();
    screen_.Close();
  }
  void cmdClose_Click() override { events_.cmdClose_Click(); }
  void cmdContinue_Click() override { events_.cmdContinue_Click(); }
  void cmdInstall360_Click() override { events_.cmdInstall360_Click(); }

 private:
  WindowEvents& events_;
  UpdateWindow& screen_;
};

/// The button that the answer presses in a box.
std::optional<Answer> ButtonOf(ScriptedAnswer::Kind kind) {
  switch (kind) {
    case ScriptedAnswer::Kind::Retry:
      return Answer::Retry;
    case ScriptedAnswer::Kind::Cancel:
      return Answer::Cancel;
    case ScriptedAnswer::Kind::Yes:
      return Answer::Yes;
    case ScriptedAnswer::Kind::No:
      return Answer::No;
    case ScriptedAnswer::Kind::Continue:
    case ScriptedAnswer::Kind::Text:
      break;
  }
  return std::nullopt;
}

}  // namespace

ScriptWindow::ScriptWindow(UpdateWindow& screen, ScriptedAnswers answers, int retries)
    : screen_(screen), answers_(std::move(answers)), retries_(retries) {}

void ScriptWindow::Run(WindowEvents& events) {
  RunThenClose forwarder(events, screen_);
  events_ = &events;
  screen_.Run(forwarder);
  events_ = nullptr;
}

void ScriptWindow::EnableButton(WindowButton button, bool enabled) {
  if (button == WindowButton::Continue) {
    continue_due_ = enabled && (continue_due_ || !continue_enabled_);
    continue_enabled_ = enabled;
  }
  screen_.EnableButton(button, enabled);
}

Answer ScriptWindow::Ask(const MessageQuestion& question) {
  const std::string asked = question.title + "\n" + question.text;
  if (asked != last_question_) retried_ = 0;
  last_question_ = asked;
  if (question.buttons == BoxButtons::Ok) return Answer::Ok;

  const ScriptedAnswer* const answer = Peek();
  if (answer == nullptr) {
    return RetriesAgain(question) ? Answer::Retry : SafeAnswer(question.buttons);
  }
  ++next_;
  const std::optional<Answer> button = ButtonOf(answer->kind);
  if (button && HasButton(question.buttons, *button)) return *button;
  Complain(*answer, question.text);
  return SafeAnswer(question.buttons);
}

std::optional<std::string> ScriptWindow::AskText(const InputQuestion& question) {
  last_question_.clear();
  const ScriptedAnswer* const answer = Peek();
  if (answer == nullptr) return std::nullopt;
  ++next_;
  if (answer->kind == ScriptedAnswer::Kind::Text) return answer->text;
  if (answer->kind != ScriptedAnswer::Kind::Cancel) Complain(*answer, question.prompt);
  return std::nullopt;
}

void ScriptWindow::ProcessEvents(std::chrono::milliseconds wait) {
  if (!continue_due_ || events_ == nullptr) {
    screen_.ProcessEvents(wait);
    return;
  }
  continue_due_ = false;
  const ScriptedAnswer* const answer = Peek();
  if (answer != nullptr && answer->kind == ScriptedAnswer::Kind::Continue) ++next_;
  events_->cmdContinue_Click();
}

const ScriptedAnswer* ScriptWindow::Peek() const {
  return next_ < answers_.size() ? &answers_[next_] : nullptr;
}

/// Names the question by the first line of its text.
void ScriptWindow::Complain(const ScriptedAnswer& answer, std::string_view question) {
  complaints_.push_back(fmt::format("Answer in line {}, \"{}\", does not fit the question \"{}\"",
                                    answer.line, NameOf(answer.kind),
                                    question.substr(0, question.find_first_of("\r\n"))));
}

bool ScriptWindow::RetriesAgain(const MessageQuestion& question) {
  if (question.buttons != BoxButtons::RetryCancel || retried_ >= retries_) return false;
  ++retried_;
  return true;
}

}  // namespace zent
