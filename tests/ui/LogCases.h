#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/Utf.h"

/// What every message box that can be cut shows.
namespace zent::testing {

struct Piece {
  std::string text;
  std::size_t cut = 0;
};
struct LogCase {
  const char* what;
  std::vector<Piece> pieces;
  std::string shown;  ///< each line end as one line feed
};

inline const LogCase kLogCases[] = {
    {"a line and its end", {{"  one\r\n"}}, "  one\n"},
    {"lines follow each other", {{"  one\r\n"}, {"  two\r\n"}}, "  one\n  two\n"},
    {"a lone line break is a line of two blanks and an empty one", {{"  \r\n\r\n"}}, "  \n\n"},
    {"a cut in the middle of a line", {{"  one\r\n"}, {"  two\r\n", 3}}, "ne\n  two\n"},
    {"a cut up to the line end", {{"one\r\n"}, {"two\r\n", 3}}, "\ntwo\n"},
    {"a cut between CR and LF", {{"one\r\n"}, {"two\r\n", 4}}, "\ntwo\n"},
    {"then the LF alone goes", {{"one\r\n"}, {"two\r\n", 4}, {"three", 1}}, "two\nthree"},
    {"a cut of a whole line", {{"one\r\n"}, {"two\r\n", 5}}, "two\n"},
    {"a cut over two lines", {{"one\r\ntwo\r\n"}, {"three", 6}}, "wo\nthree"},
    {"a cut of everything", {{"one\r\n"}, {"two", 5}}, "two"},
    {"a cut beyond everything", {{"one\r\n"}, {"two", 500}}, "two"},
    {"a cut without a text", {{"one\r\n"}, {"", 1}}, "ne\n"},
    {"characters beyond the first plane count one",
     {{"\U0001F600\U0001F601\U0001F602\r\n"}, {"end", 2}},
     "\U0001F602\nend"},
    {"so do accents and letters of other scripts", {{"\u00e4\u65e5x\r\n"}, {"end", 2}}, "x\nend"},
    {"a combining mark is a character of its own", {{"e\u0301x"}, {"", 1}}, "\u0301x"},
    {"CR alone and LF alone end lines", {{"a\rb\nc"}}, "a\nb\nc"},
    {"CR and LF of two pieces are one line end", {{"a\r"}, {"\nb"}}, "a\nb"},
    {"and count two characters", {{"a\r"}, {"\nb"}, {"", 2}}, "\nb"},
    {"markup is text", {{"<b>&amp;</b>\r\n"}}, "<b>&amp;</b>\n"},
    {"broken text is shown as broken", {{"a\xFFz"}}, "a\uFFFDz"},
    {"broken text counts one a character", {{"\xFF\xFFz"}, {"", 2}}, "z"},
    {"marks of the document are no part of its structure",
     {{"a\u2029b\uFDD0c"}, {"", 2}},
     "b\uFFFDc"},
    {"NUL is visible", {{std::string("a\0b", 3)}}, "a\u2400b"},
};

inline std::string ToUtf8(const std::u32string& text) {
  std::string utf8;
  for (const char32_t c : text) AppendUtf8(c, utf8);
  return utf8;
}

/// The text box as it is described: the last `limit` characters of all that was said.
class PlainLog {
 public:
  std::size_t Add(const std::u32string& text, std::size_t limit) {
    text_ += text;
    const std::size_t cut = text_.size() > limit ? text_.size() - limit : 0;
    text_.erase(0, cut);
    return cut;
  }
  /// Takes off the end as many of `count` characters as there are, and returns how many.
  std::size_t TakeBack(std::size_t count) {
    count = count < text_.size() ? count : text_.size();
    text_.resize(text_.size() - count);
    return count;
  }
  /// In UTF-8, each line end as one line feed.
  std::string Shown() const {
    std::string shown;
    bool after_cr = false;
    for (const char c : ToUtf8(text_)) {
      if (c != '\n' || !after_cr) shown += c == '\r' ? '\n' : c;
      after_cr = c == '\r';
    }
    return shown;
  }

 private:
  std::u32string text_;
};

}  // namespace zent::testing
