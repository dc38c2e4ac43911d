#include "jet/tools/FaultLog.h"

#include <fmt/format.h>

#include <algorithm>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

/// Names of a damaged file may hold line breaks.
std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return text;
}

}  // namespace

void FaultLog::Add(const std::string& subject, const std::string& what) {
  ++count_;
  if (++per_subject_[subject] > kMostLines) return;
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
