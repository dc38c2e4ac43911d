#pragma once

#include <string>
#include <vector>

#include "driver/run/RunObserver.h"

namespace zent::testing {

/// Keeps what a run tells.
class RecordingObserver : public RunObserver {
 public:
  void OnMessage(std::string_view text) override { messages.emplace_back(text); }
  void OnBox(const MessageQuestion& question, Answer answer) override {
    questions.push_back(question);
    answers.push_back(answer);
  }
  void OnInput(const InputQuestion& question, std::string_view answer) override {
    inputs.push_back(question.title + ": " + std::string(answer));
  }
  void OnCommand(const CommandRecord& record) override { records.push_back(record); }
  void OnXml(const XmlOperation& operation) override { xml.push_back(operation); }
  void OnLaunch(std::string_view command_line) override { launches.emplace_back(command_line); }
  void OnProgress(std::string_view text) override { progress.emplace_back(text); }
  void OnEnd(RunResult run_result, bool needs_restart) override {
    ends.push_back(run_result);
    restart = needs_restart;
  }

  std::vector<std::string> messages;
  std::vector<MessageQuestion> questions;
  std::vector<Answer> answers;
  std::vector<std::string> inputs;
  std::vector<CommandRecord> records;
  std::vector<XmlOperation> xml;
  std::vector<std::string> launches;
  std::vector<std::string> progress;
  std::vector<RunResult> ends;
  bool restart = false;
};

}  // namespace zent::testing
