#include "contracts/RegistryContract.h"
#include "platform/prefix/registry/RegistryMachines.h"

namespace zent::testing {
namespace {

class PrefixMachine : public RegistryMachine {
 public:
  PrefixMachine() : registry_(folder_.Open()) {}
  Registry& registry() override { return *registry_; }
  void Restart() override { registry_ = folder_.Open(); }

 private:
  MachineFolder folder_;
  std::unique_ptr<PrefixRegistry> registry_;
};

const RegistryAdapter kPrefixMachine = {"prefix", [] { return std::make_unique<PrefixMachine>(); }};

INSTANTIATE_TEST_SUITE_P(Prefix, RegistryContract, ::testing::Values(kPrefixMachine));

}  // namespace
}  // namespace zent::testing
