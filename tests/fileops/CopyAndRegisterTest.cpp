#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fileops/CopyAndRegister.h"
#include "fileops/FileMachine.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::ErrorBox;
using testing::FileMachine;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kCopying = R"(Copying new.dll to C:\Korvo\addin.dll)";
constexpr const char* kRegistering = R"(Registering C:\Korvo\addin.dll)";
constexpr const char* kDestination = R"($(apppath)\addin.dll)";

/// A package with a component, and the registration tool in place.
struct ComponentMachine : FileMachine {
  explicit ComponentMachine(RunOptions options = {}) : FileMachine(options) {
    machine.files.PutFile(R"(D:\Package\new.dll)", "new");
    machine.files.PutFile(R"(C:\windows\system32\regsvr32.exe)", "MZ");
  }
};

enum class Before { Nothing, Installed, InUse, AnError };

struct RegisterCase {
  const char* what;
  const char* keyword;
  const char* source;
  Before before;
  std::vector<std::string> messages;
  int boxes;
  bool error_afterwards;
  Outcome outcome;
};

const std::string kSkipping = R"(Already exist, skipping: C:\Korvo\addin.dll)";
const std::string kCopyingMissing = R"(Copying nosuch.dll to C:\Korvo\addin.dll)";

const RegisterCase kRegisterCases[] = {
    {"cr copies and registers",
     "cr",
     "new.dll",
     Before::Nothing,
     {kCopying, kRegistering},
     0,
     false,
     Outcome::Done},
    {"cr copies over what is there",
     "cr",
     "new.dll",
     Before::Installed,
     {kCopying, kRegistering},
     0,
     false,
     Outcome::Done},
    {"keywords in any case, blanks around them",
     " CR ",
     "new.dll",
     Before::Nothing,
     {kCopying, kRegistering},
     0,
     false,
     Outcome::Done},
    {"cr of a missing source registers nothing",
     "cr",
     "nosuch.dll",
     Before::Nothing,
     {kCopyingMissing},
     1,
     true,
     Outcome::Failed},
    {"an earlier error keeps cr from registering",
     "cr",
     "new.dll",
     Before::AnError,
     {kCopying},
     0,
     true,
     Outcome::Failed},
    {"a cancelled copy is not registered",
     "cr",
     "new.dll",
     Before::InUse,
     {kCopying},
     1,
     true,
     Outcome::Failed},
    {"ccr copies and registers what is missing",
     "ccr",
     "new.dll",
     Before::Nothing,
     {kCopying, kRegistering},
     0,
     false,
     Outcome::Done},
    {"ccr skips what is there and registers nothing",
     "CCR",
     "new.dll",
     Before::Installed,
     {kSkipping},
     0,
     false,
     Outcome::Skipped},
    {"an earlier error keeps ccr from registering",
     "ccr",
     "new.dll",
     Before::AnError,
     {kCopying},
     0,
     true,
     Outcome::Failed},
    {"crie copies and registers",
     "crie",
     "new.dll",
     Before::Installed,
     {kCopying, kRegistering},
     0,
     false,
     Outcome::Done},
    {"crie of a missing source is silent and registers all the same",
     "crie",
     "nosuch.dll",
     Before::Installed,
     {kCopyingMissing, kRegistering},
     0,
     false,
     Outcome::Failed},
    {"crie forgets an earlier error",
     "crie",
     "new.dll",
     Before::AnError,
     {kCopying, kRegistering},
     0,
     false,
     Outcome::Done},
    {"crie of a missing source forgets an earlier error too",
     "crie",
     "nosuch.dll",
     Before::AnError,
     {kCopyingMissing, kRegistering},
     0,
     false,
     Outcome::Failed},
    {"crie never asks about a file in use",
     "crie",
     "new.dll",
     Before::InUse,
     {kCopying, kRegistering},
     0,
     false,
     Outcome::Failed},
};

void Prepare(ComponentMachine& given, Before before) {
  const bool installed = before == Before::Installed || before == Before::InUse;
  if (installed) given.machine.files.PutFile(R"(C:\Korvo\addin.dll)", "old");
  if (before == Before::InUse) given.machine.files.HoldOpen(R"(C:\Korvo\addin.dll)");
  given.run.state.ErrorOccurred = before == Before::AnError;
}

TEST(CopyAndRegister, KeepsTheRulesOfEachKeyword) {
  for (const RegisterCase& row : kRegisterCases) {
    SCOPED_TRACE(row.what);
    ComponentMachine given;
    Prepare(given, row.before);
    const CommandRecord record =
        given.Call(CopyAndRegister, {row.keyword, row.source, kDestination});
    EXPECT_EQ(given.messages(), row.messages);
    EXPECT_EQ(given.window.boxes.size(), static_cast<std::size_t>(row.boxes));
    EXPECT_EQ(given.run.state.ErrorOccurred, row.error_afterwards);
    EXPECT_EQ(record.outcome, row.outcome) << record.reason;
    const bool registers = row.messages.back() == kRegistering;
    EXPECT_EQ(given.machine.processes.launches.size(), registers ? 1U : 0U);
  }
}

TEST(CopyAndRegister, ARetryThatSucceedsIsRegistered) {
  ComponentMachine given;
  Prepare(given, Before::InUse);
  given.window.answers = {Answer::Retry};
  given.window.on_ask = [&] { given.machine.files.Release(R"(C:\Korvo\addin.dll)"); };
  given.Call(CopyAndRegister, {"cr", "new.dll", kDestination});
  EXPECT_THAT(given.messages(), ElementsAre(kCopying, kRegistering));
}

TEST(CopyAndRegister, CcrTakesAHiddenFileForMissing) {
  ComponentMachine given;
  given.machine.files.PutFile(R"(C:\Korvo\addin.dll)", "old", kAttributeHidden);
  given.Call(CopyAndRegister, {"ccr", "new.dll", kDestination});
  EXPECT_EQ(given.machine.files.Contents(R"(C:\Korvo\addin.dll)"), "new");
}

TEST(CopyAndRegister, ARegistrationThatCannotStartIsAnErrorOfCrAndForgottenByCrie) {
  for (const bool forgives : {false, true}) {
    SCOPED_TRACE(forgives);
    ComponentMachine given;
    given.machine.processes.Fail(R"(C:\windows\system32\regsvr32.exe)",
                                 StandardError(kFileNotFound));
    const CommandRecord record =
        given.Call(CopyAndRegister, {forgives ? "crie" : "cr", "new.dll", kDestination});
    EXPECT_EQ(given.window.boxes.empty(), forgives);
    EXPECT_EQ(given.run.state.ErrorOccurred, !forgives);
    EXPECT_EQ(record.outcome, Outcome::Failed) << "the record does not forget";
  }
}

TEST(CopyAndRegister, AMissingTokenIsReportedUnlessErrorsAreForgotten) {
  for (const char* keyword : {"cr", "ccr"}) {
    ComponentMachine given;
    given.Call(CopyAndRegister, {keyword, "new.dll"});
    EXPECT_THAT(given.window.boxes,
                ElementsAre(ErrorBox("Error Copying new.dll", kSubscriptOutOfRange)));
    EXPECT_TRUE(given.run.state.ErrorOccurred);
  }
  ComponentMachine given;
  const CommandRecord record = given.Call(CopyAndRegister, {"crie", "new.dll"});
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
}

TEST(CopyAndRegister, NothingForgetsTheRefusalOfAStrictRun) {
  for (const char* keyword : {"cr", "ccr", "crie"}) {
    SCOPED_TRACE(keyword);
    ComponentMachine given({.strict = true});
    given.Call(CopyAndRegister, {keyword, R"(..\Outside.txt)", kDestination});
    EXPECT_TRUE(given.run.Refused());
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_THAT(given.window.boxes, ElementsAre(HasSubstr("source outside the package folder")));
    EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
    EXPECT_THAT(given.machine.processes.launches, IsEmpty());
  }
}

}  // namespace
}  // namespace zent
