#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"

namespace zent::testing {

/// What a fake was asked for, call by call, and which calls it is told to fail.
class CallLog {
 public:
  /// The `nth` changing call from now on (1 is the next one) fails with `error`.
  void FailChange(std::size_t nth, RuntimeError error);
  /// Every call whose record holds `text` (any case) fails with `error`.
  void FailWhere(std::string text, RuntimeError error);
  /// No call fails any more.
  void FailNothing();

  /// Every call, failed ones too, as a verb and its operands: "Write C:\a.ini".
  const std::vector<std::string>& calls() const { return calls_; }
  /// The calls that change something, or would have.
  const std::vector<std::string>& changes() const { return changes_; }
  /// Forgets what was recorded.
  void Forget();

  /// For the fakes: records a call and says whether it is to fail.
  Status Read(std::string call);
  Status Change(std::string call);

 private:
  struct Fault {
    std::string text;
    RuntimeError error;
  };

  Status FaultOf(std::string_view call) const;

  std::vector<std::string> calls_;
  std::vector<std::string> changes_;
  std::vector<Fault> faults_;
  std::size_t changes_to_fault_ = 0;  // 0: none is to fail
  RuntimeError change_error_;
};

}  // namespace zent::testing
