#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "platform/posix/UniqueFd.h"
#include "platform/prefix/session/HostScripts.h"
#include "platform/prefix/session/WaitedStart.h"

namespace zent {
namespace {

using std::chrono::milliseconds;
using testing::HasChildren;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::PutScript;
using testing::TempFolder;
using testing::WaitForFile;

HostCommand CommandOf(const std::filesystem::path& program) {
  return {.program = program, .arguments = {}, .folder = "/", .environment = {}};
}

/// How a script with these commands ends.
ProgramEnd EndOf(std::string_view commands) {
  const TempFolder folder;
  const auto started = StartWaited(CommandOf(PutScript(folder, "program", commands)));
  if (!started.ok()) {
    ADD_FAILURE() << started.error().description;
    return {};
  }
  const auto ended = started.value()->Wait(std::chrono::seconds(30));
  if (!ended.ok() || !ended.value()) {
    ADD_FAILURE() << "the program has not ended";
    return {};
  }
  return *ended.value();
}

struct EndCase {
  const char* what;
  const char* commands;
  std::uint32_t exit_code;
  const char* error_text;
};

TEST(StartWaited, TellsHowAProgramEnded) {
  const EndCase rows[] = {
      {"a signal counts as shells count it", "kill -9 $$", 137, ""},
      {"what was written before a signal is kept", "echo why >&2; kill -15 $$", 143, "why\n"},
      {"the output is dropped", "echo much; echo little >&2", 0, "little\n"},
      {"there is nothing to read", "read line || echo empty >&2", 0, "empty\n"},
      {"ANSI becomes UTF-8", R"(printf 'M\374ller' >&2)", 0, "M\xC3\xBCller"},
      {"a closed standard error", "exec 2>&-; exit 4", 4, ""},
      {"a program of its own that keeps the standard error", "echo a >&2; sleep 60 & exit 5", 5,
       "a\n"},
  };
  for (const EndCase& row : rows) {
    SCOPED_TRACE(row.what);
    const ProgramEnd end = EndOf(row.commands);
    EXPECT_EQ(end.exit_code, row.exit_code);
    EXPECT_EQ(end.error_text, row.error_text);
    EXPECT_FALSE(HasChildren());
  }
}

TEST(StartWaited, HearsOfChildrenAlsoWhenTheyWereIgnored) {
  const auto before = ::signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(EndOf("exit 3").exit_code, 3U);
  ::signal(SIGCHLD, before);
}

TEST(StartWaited, LetsGoOfAProgramThatRunsOn) {
  const TempFolder folder;
  const auto go = folder.path() / "go";
  const auto done = folder.path() / "done";
  const auto program = PutScript(folder, "program",
                                 "while [ ! -e '" + go.string() + "' ]; do sleep 0.01; done\n" +
                                     "echo nobody hears this >&2\n: >'" + done.string() + "'");
  {
    const auto started = StartWaited(CommandOf(program));
    ASSERT_TRUE(started.ok());
    EXPECT_FALSE(started.value()->Wait(milliseconds(0)).value().has_value());
  }
  folder.Put("go", "");
  WaitForFile(done);
  EXPECT_TRUE(std::filesystem::exists(done)) << "its complaint has not ended it";
  while (HasChildren()) ::usleep(1000);  // takes the child, which nobody else waits for
}

TEST(StartWaited, HandsDownNothingOfOurs) {
  const TempFolder folder;
  const auto kept = folder.Put("kept", "");
  // NOLINTNEXTLINE(android-cloexec-open): that it would be inherited is what is tested.
  const UniqueFd inherited(::open(kept.c_str(), O_RDONLY));
  ASSERT_TRUE(inherited.ok());
  const ProgramEnd end = EndOf("ls -l /proc/$$/fd >&2; cut -d' ' -f6 /proc/$$/stat >&2");
  EXPECT_THAT(end.error_text, HasSubstr("0 -> /dev/null\n"));
  EXPECT_THAT(end.error_text, HasSubstr("1 -> /dev/null\n"));
  EXPECT_THAT(end.error_text, Not(HasSubstr(kept.string())));
  EXPECT_THAT(end.error_text, Not(HasSubstr("\n" + std::to_string(::getsid(0)) + "\n")));
}

TEST(StartWaited, WorksWithoutStandardStreamsOfOurOwn) {
  const UniqueFd kept(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10));
  ::close(STDIN_FILENO);
  const ProgramEnd end = EndOf("echo here >&2; exit 6");
  if (kept.ok()) ::dup2(kept.get(), STDIN_FILENO);
  EXPECT_EQ(end.exit_code, 6U);
  EXPECT_EQ(end.error_text, "here\n");
}

TEST(StartWaited, ReportsWhyTheProgramDidNotStart) {
  const TempFolder folder;
  const auto good = PutScript(folder, "good", "");
  struct Row {
    const char* what;
    HostCommand command;
    int error;
  };
  const Row rows[] = {
      {"missing", CommandOf(folder.path() / "missing"), kFileNotFound},
      {"no execute permission", CommandOf(folder.Put("text", "#!/bin/sh\n")), kPermissionDenied},
      {"a missing working folder", {good, {}, folder.path() / "none", {}}, kPathNotFound},
      {"a NUL in an argument", {good, {std::string("a\0b", 3)}, "/", {}}, kInvalidProcedureCall},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(StartWaited(row.command).number(), row.error);
    EXPECT_FALSE(HasChildren());
  }
}

}  // namespace
}  // namespace zent
