#include "contracts/FileSystemContract.h"
#include "platform/prefix/files/TestMachine.h"
#include "support/posix/ChildProcess.h"

namespace zent::testing {
namespace {

class PrefixSubject : public FileSystemSubject {
 public:
  PrefixSubject() {
    machine_.MakeFolder("Work");
    files_ = &machine_.Open(folder());
  }
  FileSystem& files() override { return *files_; }
  std::string folder() const override { return R"(C:\Work)"; }
  std::shared_ptr<void> HoldOpen(const std::string& name) override {
    return std::make_shared<HoldingProcess>(machine_.C("Work/" + name), Hold::Reading);
  }

 private:
  TestMachine machine_;
  PrefixFileSystem* files_ = nullptr;
};

std::unique_ptr<FileSystemSubject> MakePrefixSubject() { return std::make_unique<PrefixSubject>(); }

INSTANTIATE_TEST_SUITE_P(Prefix, FileSystemContract,
                         ::testing::Values(FileSystemMaker{"prefix", &MakePrefixSubject}));

}  // namespace
}  // namespace zent::testing
