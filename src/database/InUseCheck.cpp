#include "database/InUseCheck.h"

#include <string>
#include <vector>

#include "base/Text.h"
#include "database/DBFuncs.h"
#include "driver/run/Messages.h"

namespace zent {
namespace {

/// The texts are shown as they have always been, their slips of the pen included.
std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    if (&line != lines.data()) text += kLineBreak;
    text += line;
  }
  return text;
}

std::string NeedLine(std::string_view path) {
  return "the database (" + std::string(path) + ") need to be updated too.";
}

std::string InUseText(std::string_view path) {
  return Lines({"To update the current version of Korvo,", NeedLine(path), "",
                "The database cannot be updated because it is opened by you or ",
                "someother Korvo user on the network.", "",
                "Close all instances of Korvo and click on 'Retry' or ",
                "click on 'Cancel' to cancel the update."});
}

std::string ErrorBoxText(std::string_view path, const RuntimeError& error) {
  return Lines(
      {"To update the current version of Korvo,", NeedLine(path), "",
       "The database cannot be updated because:", "Error Number: " + std::to_string(error.number),
       "Error Description: " + error.description, "",
       "Correct the above problem and click on 'Retry' or ",
       "click on 'Cancel' to cancel the update."});
}

Status OpenExclusively(UpdateRun& run, std::string_view path) {
  OpenRequest request{.exclusive = true};
  const Result<DatabasePtr> opened = OpenDatabase(run, path, request);
  if (!opened.ok()) return opened.error();
  if (opened.value() == nullptr) return StandardError(kObjectNotSet);
  return opened.value()->Close();
}

void TellUsers(UpdateRun& run, std::string_view path) {
  if (run.database.access == nullptr) return;
  std::string names;
  for (const DatabaseUser& user : run.database.access->UsersOf(path)) {
    names.append(names.empty() ? "" : ", ").append(user.computer);
    if (!user.user.empty()) names.append(" (").append(user.user).append(")");
  }
  if (!names.empty()) run.ShowMsg("The database is opened by " + names);
}

}  // namespace

bool IsInUseError(int number) {
  return number == kEngineOpenedExclusively || number == kEngineFileInUse;
}

bool ClaimDatabase(UpdateRun& run, const std::string& path) {
  if (!IsDataBaseOpen(run, path)) return true;
  run.ShowMsg("Could not open database " + path);
  run.Fail("the database could not be opened: " + path);
  return false;
}

bool IsDataBaseOpen(UpdateRun& run, std::string_view path) {
  while (true) {
    const Status opened = OpenExclusively(run, path);
    if (opened.ok()) return false;
    const bool in_use = IsInUseError(opened.number());
    if (in_use) TellUsers(run, path);
    const Answer answer =
        run.Ask({.title = run.Title(),
                 .text = in_use ? InUseText(path) : ErrorBoxText(path, opened.error()),
                 .buttons = BoxButtons::RetryCancel});
    if (answer == Answer::Retry) continue;
    run.Note("the database could not be opened exclusively: " + ReasonOf(opened.error()));
    return true;
  }
}

}  // namespace zent
