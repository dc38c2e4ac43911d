#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zent {

/// The text of the message box `txtMessage`: the last 30000 characters of all that was said.
class MessageLog {
 public:
  static constexpr std::size_t kLimit = 30000;  // characters, not bytes

  /// What an append did to the box.
  struct Change {
    std::size_t cut = 0;        ///< characters taken off the start of the old text
    std::string_view appended;  ///< the part of the given text that was kept
  };

  /// Appends `text` and cuts the oldest part off, possibly in the middle of a line. Takes time
  /// proportional to `text`, whatever the log holds.
  Change Append(std::string_view text);

  /// Notes the end of the text as the place where counters stand; at first that is its start.
  void Mark() { marked_ = characters_; }
  /// Replaces everything behind the mark by `text`. `replaced` gets the number of characters taken
  /// off the end, before anything is cut off the start.
  Change ReplaceFromMark(std::string_view text, std::size_t& replaced);

  std::string_view text() const { return std::string_view(buffer_).substr(start_); }
  /// Where the caret stands: the number of characters before the newest message.
  std::size_t caret() const { return caret_; }

 private:
  std::string buffer_;
  std::size_t start_ = 0;       ///< of the text in the buffer, bytes
  std::size_t characters_ = 0;  ///< in the text
  std::size_t caret_ = 0;
  std::size_t marked_ = 0;  ///< characters before the mark
};

}  // namespace zent
