#include "SettingsMachine.h"
#include "contracts/SettingsFilesContract.h"

namespace zent::testing {
namespace {

class MemorySubject : public SettingsFilesSubject {
 public:
  SettingsFiles& settings() override { return machine_.settings; }
  std::string folder() override { return R"(C:\Korvo)"; }
  void PutFile(std::string_view name, std::string_view bytes) override {
    machine_.files.PutFile(folder() + '\\' + std::string(name), bytes);
  }

 private:
  SettingsMachine machine_;
};

std::unique_ptr<SettingsFilesSubject> MakeMemorySubject() {
  return std::make_unique<MemorySubject>();
}

INSTANTIATE_TEST_SUITE_P(OverMemory, SettingsFilesContract, ::testing::Values(&MakeMemorySubject));

}  // namespace
}  // namespace zent::testing
