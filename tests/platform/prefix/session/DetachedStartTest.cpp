#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>

#include "platform/posix/UniqueFd.h"
#include "platform/prefix/session/DetachedStart.h"
#include "platform/prefix/session/HostScripts.h"

namespace zent {
namespace {

using std::filesystem::perms;
using testing::HasChildren;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::PutRecorder;
using testing::PutScript;
using testing::TempFolder;
using testing::WaitForFile;

/// The path of a program's output file: written under another name, then put in place.
std::string Into(const std::string& commands, const std::filesystem::path& file) {
  return "{ " + commands + "; } >'" + file.string() + ".new' 2>&1\nmv '" + file.string() +
         ".new' '" + file.string() + "'";
}

TEST(StartDetached, PassesArgumentsAsTheyAre) {
  const TempFolder folder;
  const std::vector<std::string> hostile = {
      "$(touch hacked)", "; rm -rf .", "`id`", "a\nb", "", "'\"", "--", "*", "\xC3\xA4"};
  const auto program = PutRecorder(folder, "with blanks/a program", "record");

  const auto started = StartDetached(
      {.program = program, .arguments = hostile, .folder = folder.path(), .environment = {}});

  ASSERT_TRUE(started.ok());
  std::string expected;
  for (const std::string& argument : hostile) expected += "<" + argument + ">\n";
  EXPECT_THAT(WaitForFile(folder.path() / "record"), ::testing::EndsWith(expected));
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "hacked"));
}

TEST(StartDetached, PutsVariablesOverTheOwnEnvironment) {
  const TempFolder folder;
  ::setenv("MARK", "inherited", 1);
  ::setenv("WINEPREFIX", "/somewhere/else", 1);
  const auto program = PutRecorder(folder, "program", "record");

  const auto started = StartDetached({.program = program,
                                      .arguments = {},
                                      .folder = "/",
                                      .environment = {"WINEPREFIX=/the machine"}});
  ::unsetenv("MARK");
  ::unsetenv("WINEPREFIX");

  ASSERT_TRUE(started.ok());
  EXPECT_EQ(WaitForFile(folder.path() / "record"),
            "WINEPREFIX=/the machine\nMARK=inherited\npwd=/\n");
}

TEST(StartDetached, ReturnsTheProcessIdAtOnceAndLeavesNoChild) {
  const TempFolder folder;
  const auto start = std::chrono::steady_clock::now();
  const auto program =
      PutScript(folder, "program", Into("echo $$", folder.path() / "record") + "\nexec sleep 20");

  const auto started =
      StartDetached({.program = program, .arguments = {}, .folder = "/", .environment = {}});

  ASSERT_TRUE(started.ok());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
  EXPECT_FALSE(HasChildren());
  EXPECT_EQ(WaitForFile(folder.path() / "record"), std::to_string(started.value()) + "\n");
  ::kill(static_cast<pid_t>(started.value()), SIGKILL);
}

TEST(StartDetached, RunsInASessionOfItsOwn) {
  const TempFolder folder;
  // The sixth field is the session, when no blank stands in the name.
  const auto program =
      PutScript(folder, "program", Into("cut -d' ' -f6 /proc/$$/stat", folder.path() / "record"));

  ASSERT_TRUE(
      StartDetached({.program = program, .arguments = {}, .folder = "/", .environment = {}}).ok());

  EXPECT_NE(WaitForFile(folder.path() / "record"), std::to_string(::getsid(0)) + "\n");
}

TEST(StartDetached, ClosesEveryDescriptor) {
  const TempFolder folder;
  const auto kept = folder.Put("kept", "");
  // NOLINTNEXTLINE(android-cloexec-open): that it would be inherited is what is tested.
  const UniqueFd inherited(::open(kept.c_str(), O_RDONLY));
  ASSERT_TRUE(inherited.ok());
  const auto program = PutScript(
      folder, "program",
      "in=$(readlink /proc/$$/fd/0) out=$(readlink /proc/$$/fd/1) err=$(readlink /proc/$$/fd/2)\n" +
          Into("echo $in $out $err; ls -l /proc/$$/fd", folder.path() / "record"));

  ASSERT_TRUE(
      StartDetached({.program = program, .arguments = {}, .folder = "/", .environment = {}}).ok());

  const std::string record = WaitForFile(folder.path() / "record");
  EXPECT_THAT(record, ::testing::StartsWith("/dev/null /dev/null /dev/null\n"));
  EXPECT_THAT(record, Not(HasSubstr(kept.string())));
}

TEST(StartDetached, GivesSignalsTheirDefaults) {
  const TempFolder folder;
  const auto program =
      PutScript(folder, "program",
                Into("grep -E 'Sig(Blk|Ign)' /proc/self/status", folder.path() / "record"));
  sigset_t blocked;
  sigset_t before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGUSR2);
  ::sigprocmask(SIG_BLOCK, &blocked, &before);
  const auto handler = ::signal(SIGUSR1, SIG_IGN);

  const auto started =
      StartDetached({.program = program, .arguments = {}, .folder = "/", .environment = {}});
  sigset_t after;
  ::sigprocmask(SIG_SETMASK, &before, &after);
  ::signal(SIGUSR1, handler);

  ASSERT_TRUE(started.ok());
  const std::string record = WaitForFile(folder.path() / "record");
  EXPECT_THAT(record, ::testing::StartsWith("SigBlk:\t0000000000000000\n"));
  // The C library keeps the signals 32 and 33 to itself, in whatever state it was started with.
  constexpr unsigned long long kOurs = 0x7FFFFFFF;
  const std::size_t ignored = record.find("SigIgn:\t");
  ASSERT_NE(ignored, std::string::npos);
  EXPECT_EQ(std::stoull(record.substr(ignored + 8), nullptr, 16) & kOurs, 0U);
  EXPECT_EQ(::sigismember(&after, SIGUSR2), 1) << "our own mask stays";
  EXPECT_EQ(::sigismember(&after, SIGTERM), 0) << "our own mask stays";
}

/// A command that cannot start, with why.
struct FailureCase {
  const char* what;
  HostCommand command;
  int error;
};

TEST(StartDetached, ReportsWhyTheProgramDidNotStart) {
  const TempFolder folder;
  const auto good = PutScript(folder, "good", "");
  const auto text = folder.Put("text", "#!/bin/sh\n");
  const auto orphan = folder.Put("orphan", "#!/no/such/interpreter\n");
  const auto refused = folder.Put("refused", "#!" + text.string() + "\n");
  const auto damaged = folder.Put("damaged", "\177ELF, but no more of it");
  for (const auto& file : {orphan, refused, damaged}) {
    std::filesystem::permissions(file, perms::owner_all);
  }
  const std::string nul("a\0b", 3);
  const FailureCase rows[] = {
      {"missing", {folder.path() / "missing", {}, "/", {}}, kFileNotFound},
      {"a file on the way", {good / "program", {}, "/", {}}, kFileNotFound},
      {"no execute permission", {text, {}, "/", {}}, kPermissionDenied},
      {"a folder", {folder.path(), {}, "/", {}}, kPermissionDenied},
      {"a script without its interpreter", {orphan, {}, "/", {}}, kFileNotFound},
      {"an interpreter that is none", {refused, {}, "/", {}}, kPermissionDenied},
      {"a damaged program", {damaged, {}, "/", {}}, kInvalidProcedureCall},
      {"a missing working folder", {good, {}, folder.path() / "none", {}}, kPathNotFound},
      {"a NUL in an argument", {good, {nul}, "/", {}}, kInvalidProcedureCall},
      {"a NUL in a variable", {good, {}, "/", {"A=" + nul}}, kInvalidProcedureCall},
      {"arguments beyond the system's limit",
       {good, {std::string(std::size_t{8} << 20U, 'x')}, "/", {}},
       kInvalidProcedureCall},
  };
  for (const FailureCase& row : rows) {
    SCOPED_TRACE(row.what);
    const auto started = StartDetached(row.command);
    EXPECT_EQ(started.number(), row.error);
    EXPECT_FALSE(HasChildren());
  }
}

TEST(StartDetached, ReportsAProgramThatIsBeingWritten) {
  const TempFolder folder;
  const auto program = folder.path() / "true";
  std::filesystem::copy_file("/bin/true", program);
  const UniqueFd writer(::open(program.c_str(), O_WRONLY | O_CLOEXEC));
  ASSERT_TRUE(writer.ok());

  const auto started =
      StartDetached({.program = program, .arguments = {}, .folder = "/", .environment = {}});

  EXPECT_EQ(started.number(), kPermissionDenied);
}

TEST(StartDetached, WorksWithoutStandardStreamsOfOurOwn) {
  const TempFolder folder;
  const auto program = PutRecorder(folder, "program", "record");
  const UniqueFd kept(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10));
  ::close(STDIN_FILENO);

  const auto started =
      StartDetached({.program = program, .arguments = {"x"}, .folder = "/", .environment = {}});
  const auto missing =
      StartDetached({.program = "/missing", .arguments = {}, .folder = "/", .environment = {}});
  if (kept.ok()) ::dup2(kept.get(), STDIN_FILENO);

  EXPECT_TRUE(started.ok());
  EXPECT_EQ(missing.number(), kFileNotFound);
  EXPECT_THAT(WaitForFile(folder.path() / "record"), HasSubstr("<x>"));
}

}  // namespace
}  // namespace zent
