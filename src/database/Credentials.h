#pragma once

#include <string>

#include "base/Status.h"
#include "driver/run/UpdateRun.h"
#include "platform/Platform.h"

/// Names and passwords of databases: kept in the per-user settings of the application, passwords
/// scrambled, and asked for.
namespace zent {

/// Of the Access file; empty when none is stored.
std::string StoredAccessPassword(const Platform& machine);
Status StoreAccessPassword(const Platform& machine, const std::string& password);

struct ServerLogin {
  std::string user;
  std::string password;

  /// The two as the end of a connect text. Nothing goes before "UID=": the caller's text ends with
  /// ";", and one that does not runs together with it.
  std::string Text() const { return "UID=" + user + ";PWD=" + password + ";"; }
};

ServerLogin StoredServerLogin(const Platform& machine);
Status StoreServerLogin(const Platform& machine, const ServerLogin& login);

/// Asks for them; empty texts when the user cancels. The password's box hides what is typed.
std::string AskUserName(UpdateRun& run);
std::string AskPassword(UpdateRun& run);

/// Tells the record of the command when something could not be stored: it will be asked again.
void NoteUnlessStored(UpdateRun& run, const Status& stored);

}  // namespace zent
