// Runs any bytes as a setup list over a machine in memory: it ends, and it says so.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "driver/SetupList.h"
#include "fakes/run/RunBuilder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zent::testing::RunBuilder given;
  std::string list = "[setup]\n";
  list.append(reinterpret_cast<const char*>(data), size);  // NOLINT: the fuzzer's own signature
  given.machine.files.PutFile(R"(D:\Package\ZentUpdate.ini)", list);
  zent::RunSetupList(given.run);
  return 0;
}
