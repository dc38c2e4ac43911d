#include "fakes/ui/FakeProcesses.h"

#include <algorithm>
#include <utility>

#include "base/CodePage.h"
#include "base/Text.h"
#include "platform/ErrorOutput.h"

namespace zent::testing {

class FakeProcesses::FakeProgram : public RunningProgram {
 public:
  FakeProgram(FakeProcesses& owner, std::string program)
      : owner_(owner), program_(std::move(program)) {}
  FakeProgram(const FakeProgram&) = delete;
  FakeProgram& operator=(const FakeProgram&) = delete;
  ~FakeProgram() override { owner_.let_go += ended_ ? 0U : 1U; }

  Result<std::optional<ProgramEnd>> Wait(std::chrono::milliseconds) override {
    const RuntimeError* const failure = FindFailure(owner_.wait_failures_, program_);
    if (failure != nullptr) return *failure;
    Ending* const ending = owner_.FindEnding(program_);
    if (ending != nullptr && ending->waits != 0) {
      if (ending->waits > 0) --ending->waits;
      return std::optional<ProgramEnd>();
    }
    ended_ = true;
    if (ending == nullptr) return std::optional(ProgramEnd{});
    ErrorOutput output;
    output.Add(ending->end.error_text);
    return std::optional(ProgramEnd{ending->end.exit_code, output.Text(FromAnsi)});
  }

 private:
  FakeProcesses& owner_;
  std::string program_;
  bool ended_ = false;
};

Result<std::uint32_t> FakeProcesses::Start(const Launch& launch) {
  launches.push_back(launch);
  const RuntimeError* const failure = FindFailure(failures_, launch.program);
  if (failure != nullptr) return *failure;
  if (on_launch) on_launch();
  return next_task++;
}

Result<std::unique_ptr<RunningProgram>> FakeProcesses::StartWaited(const Launch& launch) {
  const Result<std::uint32_t> started = Start(launch);
  if (!started.ok()) return started.error();
  return std::unique_ptr<RunningProgram>(new FakeProgram(*this, launch.program));
}

void FakeProcesses::Fail(std::string program, RuntimeError error) {
  failures_.push_back({std::move(program), std::move(error)});
}

void FakeProcesses::FailWaits(std::string program, RuntimeError error) {
  wait_failures_.push_back({std::move(program), std::move(error)});
}

void FakeProcesses::EndWith(std::string program, ProgramEnd end, int waits) {
  std::erase_if(endings_,
                [&](const Ending& each) { return EqualsIgnoringCase(each.program, program); });
  endings_.push_back({std::move(program), std::move(end), waits});
}

const RuntimeError* FakeProcesses::FindFailure(const std::vector<Failure>& failures,
                                               std::string_view program) {
  const auto found = std::find_if(failures.begin(), failures.end(), [&](const Failure& each) {
    return EqualsIgnoringCase(each.program, program);
  });
  return found == failures.end() ? nullptr : &found->error;
}

FakeProcesses::Ending* FakeProcesses::FindEnding(std::string_view program) {
  const auto found = std::find_if(endings_.begin(), endings_.end(), [&](const Ending& each) {
    return EqualsIgnoringCase(each.program, program);
  });
  return found == endings_.end() ? nullptr : &*found;
}

}  // namespace zent::testing
