#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "platform/posix/FolderReader.h"
#include "platform/posix/UniqueFd.h"
#include "support/TempFolder.h"

namespace zent {
namespace {

using ::testing::UnorderedElementsAre;

std::vector<std::string> NamesIn(int folder_fd) {
  Result<FolderReader> reader = FolderReader::Open(folder_fd);
  EXPECT_TRUE(reader.ok());
  std::vector<std::string> names;
  while (const std::optional<std::string> name = reader.value().Next()) names.push_back(*name);
  EXPECT_TRUE(reader.value().status().ok());
  return names;
}

TEST(FolderReader, GivesEveryNameWithoutTheDots) {
  const testing::TempFolder folder;
  folder.Put("a", "");
  folder.Put(".b", "");
  folder.Put("sub/c", "");
  const UniqueFd fd(::open(folder.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));

  EXPECT_THAT(NamesIn(fd.get()), UnorderedElementsAre("a", ".b", "sub"));
  EXPECT_THAT(NamesIn(fd.get()), UnorderedElementsAre("a", ".b", "sub"));  // from the start again
}

TEST(FolderReader, RefusesWhatIsNoFolder) {
  const testing::TempFolder folder;
  const UniqueFd fd(::open(folder.Put("a", "").c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(FolderReader::Open(fd.get()).number(), kPathNotFound);
}

}  // namespace
}  // namespace zent
