#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "app/RecordFile.h"
#include "driver/run/RunObserver.h"

namespace zent {

/// Writes the log and the events of a run, each when it is asked for. Boxes that no person sees,
/// because they are answered beforehand, are told in `notes`.
class RunRecorder final : public RunObserver {
 public:
  /// `notes` may be null and outlives the recorder.
  RunRecorder(std::optional<RecordFile> log, std::optional<RecordFile> events,
              std::ostream* notes = nullptr)
      : log_(std::move(log)), events_(std::move(events)), notes_(notes) {}

  void OnMessage(std::string_view text) override;
  void OnBox(const MessageQuestion& question, Answer answer) override;
  void OnInput(const InputQuestion& question, std::string_view answer) override;
  void OnCommand(const CommandRecord& record) override;
  void OnXml(const XmlOperation& operation) override;
  void OnLaunch(std::string_view command_line) override;
  void OnProgress(std::string_view text) override;
  void OnEnd(RunResult result, bool restart) override;

  /// Which of the files could not be written to the end, to be told after the run.
  std::vector<std::string> Complaints() const;

 private:
  std::optional<RecordFile> log_;
  std::optional<RecordFile> events_;
  std::ostream* notes_;
};

}  // namespace zent
