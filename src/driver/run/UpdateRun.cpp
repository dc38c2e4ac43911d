#include "driver/run/UpdateRun.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "driver/run/Messages.h"
#include "lib/FuncLib.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

// A command of thousands of steps may have as many reasons: the first ones tell the story, and the
// record stays a line that can be read.
constexpr std::size_t kReasonLimit = 2000;
constexpr std::string_view kMoreReasons = "; ...";

constexpr std::string_view kBetweenReasons = "; ";

/// True when `reason`, which is not empty, is one of those that are collected in `reasons`.
bool HasReason(std::string_view reasons, std::string_view reason) {
  for (std::size_t at = reasons.find(reason); at != std::string_view::npos;
       at = reasons.find(reason, at + 1)) {
    const std::string_view rest = reasons.substr(at + reason.size());
    const bool begins = at == 0 || reasons.substr(0, at).ends_with(kBetweenReasons);
    if (begins && (rest.empty() || rest.starts_with(kBetweenReasons))) return true;
  }
  return false;
}

}  // namespace

UpdateRun::UpdateRun(const Platform& machine, UpdateWindow& update_window,
                     RunObserver& run_observer, RunOptions run_options)
    : platform(machine), window(update_window), observer_(run_observer), options_(run_options) {}

void UpdateRun::ShowMsg(std::string_view message) {
  const std::string worded = IsOracleTitle(title_) ? OracleWording(message) : std::string(message);
  const std::string line = "  " + worded + std::string(kLineBreak);
  const MessageLog::Change change = log_.Append(line);
  window.AppendMessage(change.appended, change.cut);
  observer_.OnMessage(worded);
}

void UpdateRun::ShowCounter(std::string_view text) {
  std::size_t replaced = 0;
  const MessageLog::Change change = log_.ReplaceFromMark(text, replaced);
  window.ShowCounter(change.appended, replaced, change.cut);
  observer_.OnProgress(text);
}

void UpdateRun::SetTitle(std::string_view title) {
  title_ = title;
  window.SetTitle(title_);
}

Answer UpdateRun::Ask(MessageQuestion question) {
  if (question.title.empty()) question.title = kDefaultTitle;
  const Answer answer = window.Ask(question);
  observer_.OnBox(question, answer);
  return answer;
}

std::optional<std::string> UpdateRun::AskText(const InputQuestion& question) {
  std::optional<std::string> answer = window.AskText(question);
  // As many stars as characters would tell the length of a password.
  const std::string shown = question.hidden ? "***" : answer.value_or("");
  observer_.OnInput(question, answer ? shown : "");
  return answer;
}

void UpdateRun::Pause(double seconds) { zent::Pause(platform.clock, window, seconds, true); }

void UpdateRun::Report(std::string_view headline, const RuntimeError& error) {
  Ask({.title = {}, .text = ErrorText(headline, error)});
  FailStep(error);
}

void UpdateRun::FailStep(const RuntimeError& error) {
  state.ErrorOccurred = true;
  Fail(ReasonOf(error));
}

void UpdateRun::ShowError(std::string_view headline, const RuntimeError& error) {
  ShowMsg(headline);
  ShowMsg(DescriptionLine(error));
  ShowMsg(NumberLine(error));
}

bool UpdateRun::Tolerate(std::string_view what) {
  if (!options_.strict) {
    Warn(what);
    return true;
  }
  if (!refused_) {
    refused_ = true;
    Report("Error: a strict run refuses this line of the setup list",
           {.number = kInvalidProcedureCall, .description = std::string(what)});
  }
  return false;
}

void UpdateRun::BeginCommand(CommandRecord record) { record_ = std::move(record); }

void UpdateRun::EndCommand() {
  worst_ = std::max(worst_, record_.outcome);
  observer_.OnCommand(record_);
  record_ = {};
}

Result<std::uint32_t> UpdateRun::Start(const Launch& launch) {
  observer_.OnLaunch(MaskPasswords(launch.command_line));
  return platform.processes.Start(launch);
}

Result<std::unique_ptr<RunningProgram>> UpdateRun::StartWaited(const Launch& launch) {
  observer_.OnLaunch(MaskPasswords(launch.command_line));
  return platform.processes.StartWaited(launch);
}

void UpdateRun::Record(Outcome outcome, std::string_view reason) {
  const bool is_worse = outcome > record_.outcome;
  record_.outcome = std::max(record_.outcome, outcome);
  if (!is_worse && record_.reason.ends_with(kMoreReasons)) return;
  if (reason.empty() || HasReason(record_.reason, reason)) return;
  if (!record_.reason.empty()) record_.reason += kBetweenReasons;
  const std::string_view fitting = FirstCharacters(reason, kReasonLimit);
  record_.reason += fitting;
  if (record_.reason.size() > kReasonLimit) record_.reason += kMoreReasons;
}

}  // namespace zent
