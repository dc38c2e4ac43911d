// Wine follows the links that we write. Built only where Wine is installed.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "fakes/MemoryFileSystem.h"
#include "platform/prefix/links/PrefixShellLinks.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

/// A fresh Wine prefix, gone with its server when the test ends.
class WinePrefix {
 public:
  WinePrefix() { EXPECT_EQ(Run({"wineboot", "-i"}), 0); }
  ~WinePrefix() { Run({"wineboot", "--kill"}); }
  WinePrefix(const WinePrefix&) = delete;
  WinePrefix& operator=(const WinePrefix&) = delete;

  /// Runs Wine with these arguments to its end; its exit code.
  int Run(const std::vector<std::string>& arguments) const {
    const pid_t child = ::fork();
    if (child == 0) Become(arguments);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  const TempFolder& folder() const { return folder_; }

 private:
  [[noreturn]] void Become(const std::vector<std::string>& arguments) const {
    std::vector<std::string> texts = {ZENT_WINE};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    argv.reserve(texts.size() + 1);
    for (std::string& text : texts) argv.push_back(text.data());
    argv.push_back(nullptr);
    const std::string prefix = (folder_.path() / "prefix").string();
    ::setenv("WINEPREFIX", prefix.c_str(), 1);    // NOLINT(concurrency-mt-unsafe): a child
    ::setenv("HOME", folder_.path().c_str(), 1);  // NOLINT(concurrency-mt-unsafe)
    ::setenv("WINEDEBUG", "-all", 1);             // NOLINT(concurrency-mt-unsafe)
    ::unsetenv("DISPLAY");                        // NOLINT(concurrency-mt-unsafe)
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }

  TempFolder folder_;
};

/// The bytes of the link file that we write.
std::string LinkBytes(const ShellLink& link) {
  MemoryFileSystem files;
  PrefixShellLinks links(files);
  EXPECT_TRUE(links.Create(R"(C:\a.lnk)", link).ok());
  return files.Contents(R"(C:\a.lnk)").value_or("");
}

TEST(WineOpensLinks, StartsTheTargetWithItsArgumentsInItsFolder) {
  const WinePrefix wine;
  const std::string drive = "prefix/drive_c/";
  wine.folder().Put(drive + "opened here/readme.txt", "x");
  wine.folder().Put(drive + "a.lnk", LinkBytes({.target = R"(C:\windows\system32\cmd.exe)",
                                                .arguments = "/c echo followed> result.txt",
                                                .working_folder = R"(C:\opened here)"}));

  EXPECT_EQ(wine.Run({"start", "/wait", R"(C:\a.lnk)"}), 0);

  for (int i = 0; i < 100 && wine.folder().Get(drive + "opened here/result.txt").empty(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  EXPECT_EQ(wine.folder().Get(drive + "opened here/result.txt"), "followed\r\n");
}

}  // namespace
}  // namespace zent::testing
