#include "database/Credentials.h"

#include "base/Text.h"
#include "driver/run/Messages.h"
#include "lib/AppSettings.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::string_view kApplication = "Korvo";
constexpr std::string_view kSection = "General";
constexpr std::string_view kAccessPassword = "Talamu";
constexpr std::string_view kServerUser = "SSUN";
constexpr std::string_view kServerPassword = "SSPW";

std::string Stored(const Platform& machine, std::string_view key) {
  return GetAppSetting(machine, kApplication, kSection, key);
}

Status Store(const Platform& machine, std::string_view key, std::string_view value) {
  return SaveAppSetting(machine, kApplication, kSection, key, value);
}

std::string Ask(UpdateRun& run, const InputQuestion& question) {
  return run.AskText(question).value_or("");
}

}  // namespace

std::string StoredAccessPassword(const Platform& machine) {
  return ScrambleText(machine.system, Stored(machine, kAccessPassword));
}

Status StoreAccessPassword(const Platform& machine, const std::string& password) {
  return Store(machine, kAccessPassword, ScrambleText(machine.system, password));
}

ServerLogin StoredServerLogin(const Platform& machine) {
  return {.user = Stored(machine, kServerUser),
          .password = ScrambleText(machine.system, Stored(machine, kServerPassword))};
}

Status StoreServerLogin(const Platform& machine, const ServerLogin& login) {
  Status user = Store(machine, kServerUser, login.user);
  if (!user.ok()) return user;
  return Store(machine, kServerPassword, ScrambleText(machine.system, login.password));
}

std::string AskUserName(UpdateRun& run) {
  return Ask(run, {.title = "Enter Username",
                   .prompt = "Please Enter Database Username.\r\nUsername is Case Sensitive."});
}

std::string AskPassword(UpdateRun& run) {
  return Ask(run, {.title = "Enter Password",
                   .prompt = "Please Enter Database Password.\r\nPassword is Case Sensitive.",
                   .hidden = true});
}

void NoteUnlessStored(UpdateRun& run, const Status& stored) {
  if (!stored.ok()) run.Note("the login could not be stored: " + ReasonOf(stored.error()));
}

}  // namespace zent
