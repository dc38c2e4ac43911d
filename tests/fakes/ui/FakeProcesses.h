#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Processes.h"

namespace zent::testing {

/// Starts nothing and records each launch, also one that fails.
class FakeProcesses : public Processes {
 public:
  Result<std::uint32_t> Start(const Launch& launch) override;

  /// Starts of `program` (any case) fail with this error from now on.
  void Fail(std::string program, RuntimeError error);

  std::vector<Launch> launches;
  std::uint32_t next_task = 4711;  ///< the identifier of the next start, counted up by each

 private:
  struct Failure {
    std::string program;
    RuntimeError error;
  };
  std::vector<Failure> failures_;
};

}  // namespace zent::testing
