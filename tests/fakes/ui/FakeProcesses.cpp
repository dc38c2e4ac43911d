#include "fakes/ui/FakeProcesses.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"

namespace zent::testing {

Result<std::uint32_t> FakeProcesses::Start(const Launch& launch) {
  launches.push_back(launch);
  const auto failure = std::find_if(failures_.begin(), failures_.end(), [&](const Failure& each) {
    return EqualsIgnoringCase(each.program, launch.program);
  });
  if (failure != failures_.end()) return failure->error;
  return next_task++;
}

void FakeProcesses::Fail(std::string program, RuntimeError error) {
  failures_.push_back({std::move(program), std::move(error)});
}

}  // namespace zent::testing
