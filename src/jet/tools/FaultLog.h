#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "base/RuntimeError.h"

namespace zent::jet {

/// Takes one fault, one line.
using TellFault = std::function<void(const std::string&)>;

/// Faults of a file, each with what it is found in. A part that is wrong all over is told of a few
/// times only, so that the others are not lost in the flood.
class FaultLog {
 public:
  /// Lines told of one subject.
  static constexpr std::uint64_t kMostLines = 20;

  explicit FaultLog(TellFault tell) : tell_(std::move(tell)) {}

  void Add(const std::string& subject, const std::string& what);
  void Add(const std::string& subject, const RuntimeError& error);
  /// Tells how many faults of each subject were left out.
  void Finish();

  std::uint64_t count() const { return count_; }

 private:
  TellFault tell_;
  std::uint64_t count_ = 0;
  std::map<std::string, std::uint64_t> per_subject_;
};

}  // namespace zent::jet
