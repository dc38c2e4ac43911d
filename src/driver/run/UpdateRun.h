#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "driver/run/CommandRecord.h"
#include "driver/run/DatabaseConnection.h"
#include "driver/run/MessageLog.h"
#include "driver/run/RunObserver.h"
#include "driver/run/RunState.h"
#include "platform/Platform.h"
#include "ui/UpdateWindow.h"

namespace zent {

struct RunOptions {
  bool strict = false;  ///< refuse what a plain run only tolerates and records
};

/// One update: its state, the machine it works on and the window it speaks through. Every command
/// handler is a function over this. Two runs share nothing.
class UpdateRun {
 public:
  /// All of them outlive the run.
  UpdateRun(const Platform& machine, UpdateWindow& update_window, RunObserver& run_observer,
            RunOptions run_options);

  const Platform& platform;
  UpdateWindow& window;
  RunState state;
  DatabaseConnection database;
  ButtonTags tags;

  // --- The window ---

  /// Writes a message into the message box and repaints it. A lone line break separates blocks.
  void ShowMsg(std::string_view message);
  /// The place behind the newest message is where counters stand.
  void MarkCounter() { log_.Mark(); }
  /// Replaces what the message box holds behind that place by a counter. It is no message: the next
  /// one follows it on the same line.
  void ShowCounter(std::string_view text);
  /// Says again what the message box holds already: told to the observer, the box stays.
  void RepeatProgress(std::string_view text) { observer_.OnProgress(text); }
  void SetTitle(std::string_view title);
  const std::string& Title() const { return title_; }
  std::string_view LogText() const { return log_.text(); }

  /// Shows a box; one without a title gets the default one.
  Answer Ask(MessageQuestion question);
  std::optional<std::string> AskText(const InputQuestion& question);
  /// Waits `seconds`, keeping the window responsive.
  void Pause(double seconds);

  // --- Reports ---

  /// The failure of a step: an OK box "headline, Description, Number", ErrorOccurred is set and the
  /// command recorded as failed.
  void Report(std::string_view headline, const RuntimeError& error);
  /// As Report, and success: what a handler returns whose error has been dealt with.
  Status ReportError(std::string_view headline, const RuntimeError& error) {
    Report(headline, error);
    return {};
  }
  /// As Report without the box: the step fails quietly.
  void FailStep(const RuntimeError& error);
  /// The same three lines as messages of their own, without a box and without ErrorOccurred.
  void ShowError(std::string_view headline, const RuntimeError& error);

  /// Records of the present command. The worst outcome counts; reasons are collected,
  /// each once; past 2000 bytes only one that makes the outcome worse.
  void Note(std::string_view reason) { Record(Outcome::Done, reason); }  ///< a trace, no outcome
  void Skip(std::string_view reason) { Record(Outcome::Skipped, reason); }
  void Warn(std::string_view reason) { Record(Outcome::Warned, reason); }
  void Fail(std::string_view reason) { Record(Outcome::Failed, reason); }
  /// Something that a plain run tolerates: recorded as a warning and true; a strict run is refused
  /// here: an error box, ErrorOccurred, and false.
  bool Tolerate(std::string_view what);
  bool Refused() const { return refused_; }

  /// Begins the record of a command and ends it, telling the observer.
  void BeginCommand(CommandRecord record);
  void EndCommand();
  /// Tells a step of a change to an XML file.
  void Tell(const XmlOperation& operation) { observer_.OnXml(operation); }
  /// The worst outcome of any command so far.
  Outcome WorstOutcome() const { return worst_; }

  // --- The machine ---

  /// Starts a program, minimised and not waited for; the task identifier.
  Result<std::uint32_t> Start(const Launch& launch);
  /// Starts a program, minimised, whose end can be waited for.
  Result<std::unique_ptr<RunningProgram>> StartWaited(const Launch& launch);

 private:
  void Record(Outcome outcome, std::string_view reason);

  RunObserver& observer_;
  RunOptions options_;
  std::string title_;
  MessageLog log_;
  CommandRecord record_;
  Outcome worst_ = Outcome::Done;
  bool refused_ = false;
};

}  // namespace zent
