#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/RunRecorder.h"
#include "app/host/OwnFile.h"
#include "support/TempFolder.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(CreateOwnFile, GivesAFileThatIsNotInherited) {
  const testing::TempFolder folder;
  const std::string path = (folder.path() / "log").string();
  {
    const OwnFile file = CreateOwnFile(path);
    ASSERT_NE(file, nullptr);
    EXPECT_NE(::fcntl(::fileno(file.get()), F_GETFD) & FD_CLOEXEC, 0);
    std::fputs("a\n", file.get());
  }
  EXPECT_EQ(folder.Get("log"), "a\n");
  CreateOwnFile(path);
  EXPECT_EQ(folder.Get("log"), "");
}

TEST(RunRecorder, ComplainsOnceOfAFileThatCannotBeWritten) {
  Result<RecordFile> full = RecordFile::Create("/dev/full");
  ASSERT_TRUE(full.ok());
  RunRecorder recorder(std::move(full.value()), std::nullopt);
  EXPECT_THAT(recorder.Complaints(), IsEmpty());
  recorder.OnMessage("one");
  recorder.OnMessage("two");
  EXPECT_THAT(recorder.Complaints(), ElementsAre("cannot write /dev/full"));
}

}  // namespace
}  // namespace zent
