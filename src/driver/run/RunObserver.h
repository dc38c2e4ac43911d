#pragma once

#include <cstddef>
#include <string_view>

#include "driver/run/CommandRecord.h"
#include "driver/run/XmlOperation.h"
#include "ui/UpdateWindow.h"

namespace zent {

enum class RunResult {
  Success,
  Failed,        ///< "Setup failed."
  NotInstalled,  ///< the application was not found
  Refused,       ///< a strict run met what a plain run only tolerates
};

/// Hears everything that a run says and does, as it happens; writes logs and events from it. Texts
/// are UTF-8 with CR LF. No password ever reaches it.
class RunObserver {
 public:
  virtual ~RunObserver() = default;
  /// A message as it went to the message box: `text` without the blanks before and the break
  /// behind.
  virtual void OnMessage(std::string_view text) = 0;
  virtual void OnBox(const MessageQuestion& question, Answer answer) = 0;
  /// `answer` is empty when the box was cancelled and masked when it was hidden.
  virtual void OnInput(const InputQuestion& question, std::string_view answer) = 0;
  virtual void OnCommand(const CommandRecord& record) = 0;
  virtual void OnXml(const XmlOperation& operation) = 0;
  /// A program start, its command line as the command gave it.
  virtual void OnLaunch(std::string_view command_line) = 0;
  /// A counter that the message box shows in place.
  virtual void OnProgress(std::string_view text) = 0;
  virtual void OnEnd(RunResult result, bool restart) = 0;
};

}  // namespace zent
