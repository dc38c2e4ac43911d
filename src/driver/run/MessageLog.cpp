#include "driver/run/MessageLog.h"

#include <algorithm>

#include "base/Text.h"

namespace zent {
namespace {

// Bytes that may lie unused before the text until they are given up in one go.
constexpr std::size_t kSlack = 4 * MessageLog::kLimit;

}  // namespace

MessageLog::Change MessageLog::Append(std::string_view text) {
  const std::size_t added = CountCharacters(text);
  if (added > kLimit) text.remove_prefix(SkipCharacters(text, added - kLimit));
  const std::size_t kept = std::min(added, kLimit);

  Change change;
  change.cut = characters_ - std::min(characters_, kLimit - kept);
  start_ += SkipCharacters(std::string_view(buffer_).substr(start_), change.cut);
  characters_ -= change.cut;
  marked_ -= std::min(marked_, change.cut);
  caret_ = characters_;
  if (start_ > kSlack) {
    buffer_.erase(0, start_);
    start_ = 0;
  }
  buffer_.append(text);
  characters_ += kept;
  change.appended = text;
  return change;
}

MessageLog::Change MessageLog::ReplaceFromMark(std::string_view text, std::size_t& replaced) {
  replaced = characters_ - marked_;
  buffer_.resize(start_ + SkipCharacters(this->text(), marked_));
  characters_ = marked_;
  return Append(text);
}

}  // namespace zent
