#include "fakes/CallLog.h"

#include <utility>

#include "base/Text.h"

namespace zent::testing {

void CallLog::FailChange(std::size_t nth, RuntimeError error) {
  changes_to_fault_ = nth;
  change_error_ = std::move(error);
}

void CallLog::FailWhere(std::string text, RuntimeError error) {
  faults_.push_back({std::move(text), std::move(error)});
}

void CallLog::FailNothing() {
  faults_.clear();
  changes_to_fault_ = 0;
}

void CallLog::Forget() {
  calls_.clear();
  changes_.clear();
}

Status CallLog::Read(std::string call) {
  Status fault = FaultOf(call);
  calls_.push_back(std::move(call));
  return fault;
}

Status CallLog::Change(std::string call) {
  changes_.push_back(call);
  Status fault = Read(std::move(call));
  if (changes_to_fault_ > 0 && --changes_to_fault_ == 0) return change_error_;
  return fault;
}

Status CallLog::FaultOf(std::string_view call) const {
  for (const Fault& fault : faults_) {
    if (FindIgnoringCase(call, fault.text) != std::string_view::npos) return fault.error;
  }
  return {};
}

}  // namespace zent::testing
