#include "jet/tools/FaultLog.h"

#include <fmt/format.h>

#include "base/Text.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {

void FaultLog::Add(const std::string& subject, const std::string& what) {
  ++count_;
  if (++per_subject_[subject] > kMostLines) return;
  // Names of a damaged file may hold anything.
  tell_(OneLine(subject.empty() ? what : subject + ": " + what));
}

void FaultLog::Add(const std::string& subject, const RuntimeError& error) {
  // Damage names its page in brackets behind a text that is the same for all.
  const std::string& text = error.description;
  const std::size_t at = text.find("(page ");
  const bool damage = error.number == kCannotOpenDatabase && at != std::string::npos;
  Add(subject, damage ? text.substr(at + 1, text.size() - at - 2) : text);
}

void FaultLog::Finish() {
  for (const auto& [subject, count] : per_subject_) {
    if (count <= kMostLines) continue;
    tell_(OneLine(fmt::format("{}: {} more faults", subject, count - kMostLines)));
  }
  per_subject_.clear();
}

}  // namespace zent::jet
