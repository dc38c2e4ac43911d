#include "contracts/FileSystemContract.h"
#include "platform/win32/files/HoldingProcess.h"
#include "platform/win32/files/TestFolder.h"

namespace zent::testing {
namespace {

class Win32Subject : public FileSystemSubject {
 public:
  FileSystem& files() override { return folder_.files(); }
  std::string folder() const override { return folder_.text(); }
  std::shared_ptr<void> HoldOpen(const std::string& name) override {
    return std::make_shared<HoldingProcess>(folder_.Full(name), "r1");
  }

 private:
  TestFolder folder_;
};

std::unique_ptr<FileSystemSubject> MakeWin32Subject() { return std::make_unique<Win32Subject>(); }

INSTANTIATE_TEST_SUITE_P(Win32, FileSystemContract,
                         ::testing::Values(FileSystemMaker{"win32", &MakeWin32Subject}));

}  // namespace
}  // namespace zent::testing
