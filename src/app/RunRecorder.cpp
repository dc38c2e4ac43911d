#include "app/RunRecorder.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "base/Text.h"

namespace zent {
namespace {

using Json = nlohmann::ordered_json;

const char* NameOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::Ok:
      return "OK";
    case BoxButtons::RetryCancel:
      return "RetryCancel";
    case BoxButtons::YesNo:
      return "YesNo";
  }
  return "";
}

const char* NameOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Information:
      return "information";
    case BoxIcon::Question:
      return "question";
    case BoxIcon::Critical:
      return "critical";
    case BoxIcon::None:
      return "none";
  }
  return "";
}

const char* NameOf(Answer answer) {
  switch (answer) {
    case Answer::Ok:
      return "ok";
    case Answer::Retry:
      return "retry";
    case Answer::Cancel:
      return "cancel";
    case Answer::Yes:
      return "yes";
    case Answer::No:
      return "no";
  }
  return "";
}

const char* NameOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::Done:
      return "done";
    case Outcome::Skipped:
      return "skipped";
    case Outcome::Warned:
      return "warned";
    case Outcome::Failed:
      return "failed";
  }
  return "";
}

const char* NameOf(XmlAction action) {
  switch (action) {
    case XmlAction::Load:
      return "Load";
    case XmlAction::Skip:
      return "Skip";
    case XmlAction::Insert:
      return "Insert";
    case XmlAction::Replace:
      return "Replace";
    case XmlAction::Delete:
      return "Delete";
    case XmlAction::Tab:
      return "Tab";
    case XmlAction::Field:
      return "Field";
    case XmlAction::Stamp:
      return "Stamp";
    case XmlAction::Save:
      return "Save";
  }
  return "";
}

const char* NameOf(XmlOutcome outcome) {
  switch (outcome) {
    case XmlOutcome::Done:
      return "done";
    case XmlOutcome::InsertedBefore:
      return "inserted-before";
    case XmlOutcome::Appended:
      return "appended";
    case XmlOutcome::Replaced:
      return "replaced";
    case XmlOutcome::NotFound:
      return "not-found";
    case XmlOutcome::Nothing:
      return "nothing";
    case XmlOutcome::Failed:
      return "failed";
  }
  return "";
}

const char* NameOf(RunResult result) {
  switch (result) {
    case RunResult::Success:
      return "success";
    case RunResult::Failed:
      return "failed";
    case RunResult::NotInstalled:
      return "not-installed";
    case RunResult::Refused:
      return "refused";
  }
  return "";
}

void WriteEvent(std::optional<RecordFile>& events, const Json& event) {
  if (!events) return;
  // A text from a broken file may hold bytes that are no UTF-8: shown as U+FFFD, never thrown.
  events->Write(event.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
}

}  // namespace

void RunRecorder::OnMessage(std::string_view text) {
  if (log_) log_->Write("  " + std::string(text) + std::string(kLineBreak));
  if (events_) WriteEvent(events_, {{"event", "message"}, {"text", text}});
}

void RunRecorder::OnBox(const MessageQuestion& question, Answer answer) {
  if (notes_ != nullptr) {
    *notes_ << ReplaceAllIgnoringCase(question.text, kLineBreak, "\n") << "\n-> " << NameOf(answer)
            << std::endl;
  }
  WriteEvent(events_, {{"event", "box"},
                       {"title", question.title},
                       {"text", question.text},
                       {"buttons", NameOf(question.buttons)},
                       {"icon", NameOf(question.icon)},
                       {"answer", NameOf(answer)}});
}

void RunRecorder::OnInput(const InputQuestion& question, std::string_view answer) {
  WriteEvent(events_, {{"event", "box"},
                       {"title", question.title},
                       {"text", question.prompt},
                       {"buttons", "Input"},
                       {"icon", "question"},
                       {"answer", answer}});
}

void RunRecorder::OnCommand(const CommandRecord& record) {
  if (!events_) return;
  Json event = {{"event", "command"},
                {"line", record.line},
                {"keyword", record.keyword},
                {"tokens", record.tokens},
                {"record", NameOf(record.outcome)}};
  if (!record.reason.empty()) event["reason"] = record.reason;
  WriteEvent(events_, event);
}

void RunRecorder::OnXml(const XmlOperation& operation) {
  if (!events_) return;
  Json event = {
      {"event", "xml"},         {"file", operation.file},   {"operation", NameOf(operation.action)},
      {"node", operation.node}, {"place", operation.place}, {"outcome", NameOf(operation.outcome)}};
  if (!operation.reason.empty()) event["reason"] = operation.reason;
  WriteEvent(events_, event);
}

void RunRecorder::OnLaunch(std::string_view command_line) {
  WriteEvent(events_, {{"event", "launch"}, {"command", command_line}});
}

void RunRecorder::OnProgress(std::string_view text) {
  WriteEvent(events_, {{"event", "progress"}, {"text", text}});
}

void RunRecorder::OnEnd(RunResult result, bool restart) {
  WriteEvent(events_, {{"event", "end"}, {"result", NameOf(result)}, {"restart", restart}});
}

std::vector<std::string> RunRecorder::Complaints() const {
  std::vector<std::string> complaints;
  for (const std::optional<RecordFile>* const file : {&log_, &events_}) {
    if (*file && (*file)->failed()) complaints.push_back("cannot write " + (*file)->path());
  }
  return complaints;
}

}  // namespace zent
