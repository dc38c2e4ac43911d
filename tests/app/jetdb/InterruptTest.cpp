#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>

#include "app/jetdb/JetdbRun.h"
#include "support/TempFolder.h"

/// Ctrl+C at any time.
namespace zent::testing {
namespace {

constexpr int kRows = 3000;

/// Starts jetdb with a script; its outputs go nowhere.
pid_t StartScript(const std::filesystem::path& folder) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  if (::chdir(folder.c_str()) != 0 || ::freopen("/dev/null", "w", stdout) == nullptr) ::_exit(127);
  ::execl(ZENT_PROGRAM, ZENT_PROGRAM, "sql", "a.mdb", "--file", "rows.sql", "--single-transaction",
          nullptr);
  ::_exit(127);
}

std::string CountOf(const TempFolder& folder) {
  const JetdbEnd end = RunBuiltJetdb(
      {"sql", "a.mdb", "--format", "csv", "SELECT COUNT(*) AS n FROM T"}, folder.path());
  EXPECT_EQ(end.exit_code, 0) << end.output;
  return end.output;
}

TEST(Jetdb, LosesNothingWhenItIsInterrupted) {
  const TempFolder folder;
  ASSERT_EQ(RunBuiltJetdb({"create", "a.mdb"}, folder.path()).exit_code, 0);
  ASSERT_EQ(RunBuiltJetdb({"sql", "a.mdb",
                           "CREATE TABLE T (Id COUNTER PRIMARY KEY, Name TEXT(200));"
                           "INSERT INTO T (Name) VALUES ('first')"},
                          folder.path())
                .exit_code,
            0);
  std::string script;
  for (int i = 0; i < kRows; ++i) {
    script +=
        "INSERT INTO T (Name) VALUES ('row " + std::to_string(i) + std::string(150, 'x') + "');\n";
  }
  folder.Put("rows.sql", script);

  for (int run = 0; run < 6; ++run) {
    SCOPED_TRACE(run);
    const pid_t child = StartScript(folder.path());
    // Somewhere in its work; where, does not matter to what must hold.
    const timespec pause = {.tv_sec = 0, .tv_nsec = 40'000'000L * (run + 1)};
    ::nanosleep(&pause, nullptr);
    ::kill(child, SIGINT);
    int status = 0;
    ::waitpid(child, &status, 0);
    const std::string count = CountOf(folder);
    const bool whole = count == "n\n" + std::to_string(kRows + 1) + "\n";
    EXPECT_TRUE(whole || count == "n\n1\n") << count;
    EXPECT_TRUE(whole || !WIFEXITED(status)) << status;
    const JetdbEnd verified = RunBuiltJetdb({"verify", "a.mdb"}, folder.path());
    EXPECT_EQ(verified.exit_code, 0) << verified.output;
    if (whole) break;
  }
}

}  // namespace
}  // namespace zent::testing
