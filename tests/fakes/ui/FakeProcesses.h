#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Processes.h"

namespace zent::testing {

/// Starts nothing and records each launch, also one that fails.
class FakeProcesses : public Processes {
 public:
  static constexpr int kNever = -1;

  Result<std::uint32_t> Start(const Launch& launch) override;
  /// The program knows this object, which outlives it.
  Result<std::unique_ptr<RunningProgram>> StartWaited(const Launch& launch) override;

  /// Starts of `program` (any case) fail with this error from now on.
  void Fail(std::string program, RuntimeError error);
  /// `program` (any case), waited for, ends like this after so many waits in vain; the latest call
  /// counts. Programs that nothing is said of end at once, with 0.
  void EndWith(std::string program, ProgramEnd end, int waits = 0);
  /// To wait for `program` fails with this error.
  void FailWaits(std::string program, RuntimeError error);

  std::vector<Launch> launches;
  std::uint32_t next_task = 4711;   ///< the identifier of the next start, counted up by each
  std::size_t let_go = 0;           ///< programs that were let go of before their end
  std::function<void()> on_launch;  ///< at each start that succeeds

 private:
  class FakeProgram;
  struct Failure {
    std::string program;
    RuntimeError error;
  };
  struct Ending {
    std::string program;
    ProgramEnd end;
    int waits = 0;
  };

  static const RuntimeError* FindFailure(const std::vector<Failure>& failures,
                                         std::string_view program);
  Ending* FindEnding(std::string_view program);

  std::vector<Failure> failures_;
  std::vector<Failure> wait_failures_;
  std::vector<Ending> endings_;
};

}  // namespace zent::testing
