#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string>

#include "database/InUseCheck.h"
#include "database/engines/jet/HostStorage.h"
#include "database/engines/jet/JetEngine.h"
#include "fakes/run/RunBuilder.h"
#include "support/TempFolder.h"

/// The in-use check over the real engine, with a file that another process really has open.
namespace zent::testing {
namespace {

/// Another process that has a database open until it is closed.
class OtherProgram {
 public:
  OtherProgram(const std::string& path, bool exclusive) {
    std::array<int, 2> told = {-1, -1};
    std::array<int, 2> end = {-1, -1};
    if (::pipe2(told.data(), O_CLOEXEC) != 0 || ::pipe2(end.data(), O_CLOEXEC) != 0) return;
    process_ = ::fork();
    if (process_ == 0) {
      ::close(end[1]);  // else it would never come to its end
      HoldUntilEnd(path, exclusive, told[1], end[0]);
    }
    ::close(told[1]);
    ::close(end[0]);
    end_ = end[1];
    char byte = 0;
    is_open_ = process_ > 0 && ::read(told[0], &byte, 1) == 1;
    ::close(told[0]);
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram() { CloseDatabase(); }

  bool is_open() const { return is_open_; }

  /// Returns when the process has closed the database and ended.
  void CloseDatabase() {
    if (process_ <= 0) return;
    ::close(end_);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
  }

 private:
  [[noreturn]] static void HoldUntilEnd(const std::string& path, bool exclusive, int told,
                                        int end) {
    {
      const std::unique_ptr<jet::Storage> storage = HostStorage();
      jet::Workspace workspace(*storage, {.user = {.computer = "DESK7", .name = "bert"}});
      const auto opened = workspace.OpenDatabase(path, exclusive);
      char byte = 1;
      if (opened.ok() && ::write(told, &byte, 1) == 1) {
        while (::read(end, &byte, 1) > 0) continue;
      }
    }
    ::_exit(0);
  }

  pid_t process_ = -1;
  int end_ = -1;
  bool is_open_ = false;
};

TEST(IsDataBaseOpen, RetryAfterAnotherProcessHasClosedTheDatabaseIsFalse) {
  for (const bool exclusive : {false, true}) {
    SCOPED_TRACE(exclusive ? "held alone" : "held with others");
    const TempFolder folder;
    const std::string path = (folder.path() / "Korvo.mdb").string();
    const std::unique_ptr<jet::Storage> storage = HostStorage();
    ASSERT_TRUE(jet::Workspace(*storage).CreateDatabase(path).ok());
    JetEngine engine(*storage, {});
    RunBuilder given;
    given.run.database.access = &engine;
    OtherProgram other(path, exclusive);
    ASSERT_TRUE(other.is_open());
    given.window.answers = {Answer::Retry, Answer::Retry};
    given.window.on_ask = [&] {
      if (given.window.boxes.size() == 2) other.CloseDatabase();
    };

    EXPECT_FALSE(IsDataBaseOpen(given.run, path));

    ASSERT_EQ(given.window.boxes.size(), 2U) << "the first Retry comes too early";
    for (const std::string& box : given.window.boxes) {
      EXPECT_NE(box.find("it is opened by you or"), std::string::npos) << box;
    }
    EXPECT_TRUE(engine.Open({.path = path, .exclusive = true}).ok()) << "nothing is left open";
  }
}

}  // namespace
}  // namespace zent::testing
