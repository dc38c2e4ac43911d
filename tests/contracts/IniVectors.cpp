#include "contracts/IniVectors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <sstream>
#include <string_view>

#include "support/TempFolder.h"

namespace zent::testing {
namespace {

/// Takes the words of one row off its front.
class RowReader {
 public:
  explicit RowReader(std::string_view row) : rest_(row) {}

  std::string_view Word() {
    SkipBlanks();
    const std::string_view word = rest_.substr(0, rest_.find(' '));
    rest_.remove_prefix(word.size());
    return word;
  }

  std::size_t Number() {
    SkipBlanks();
    std::size_t number = 0;
    const auto parsed = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    rest_.remove_prefix(static_cast<std::size_t>(parsed.ptr - rest_.data()));
    return number;
  }

  /// `none`, or quoted pieces joined by " + ", each after an optional "times*".
  std::optional<std::string> Text() {
    SkipBlanks();
    if (rest_.starts_with("none")) {
      rest_.remove_prefix(4);
      return std::nullopt;
    }
    std::string text = Piece();
    while (rest_.starts_with(" + ")) {
      rest_.remove_prefix(3);
      text += Piece();
    }
    return text;
  }

  /// Takes "->" off.
  void Arrow() { EXPECT_EQ(Word(), "->"); }

 private:
  void SkipBlanks() {
    while (rest_.starts_with(' ')) rest_.remove_prefix(1);
  }

  std::string Piece() {
    std::size_t times = 1;
    if (!rest_.starts_with('"')) {
      times = Number();
      EXPECT_TRUE(rest_.starts_with("*\"")) << rest_;
      rest_.remove_prefix(1);
    }
    const std::string piece = Quoted();
    std::string text;
    for (; times > 0; --times) text += piece;
    return text;
  }

  std::string Quoted() {
    std::string text;
    std::size_t at = 1;
    for (; at < rest_.size() && rest_[at] != '"'; ++at) {
      text += rest_[at] == '\\' ? Escaped(++at) : rest_[at];
    }
    EXPECT_LT(at, rest_.size()) << "no closing quote: " << rest_;
    rest_.remove_prefix(std::min(at + 1, rest_.size()));
    return text;
  }

  /// The character that the escape at `at` stands for; leaves `at` on its last character.
  char Escaped(std::size_t& at) {
    switch (rest_[at]) {
      case 'r':
        return '\r';
      case 'n':
        return '\n';
      case 't':
        return '\t';
      case 'x': {
        unsigned code = 0;
        std::from_chars(rest_.data() + at + 1, rest_.data() + at + 3, code, 16);
        at += 2;
        return static_cast<char>(code);
      }
      default:
        return rest_[at];
    }
  }

  std::string_view rest_;
};

IniCall ParseCall(const std::string& line) {
  RowReader row(line);
  IniCall call;
  call.line = line.substr(0, 200);
  call.is_write = row.Word() == "write";
  call.section = row.Text();
  call.key = row.Text();
  call.value = row.Text();
  if (!call.is_write) call.buffer_size = row.Number();
  row.Arrow();
  call.result = row.Text();
  return call;
}

}  // namespace

std::vector<IniCase> LoadIniCases(const std::filesystem::path& path) {
  std::vector<IniCase> cases;
  std::istringstream rows(ReadHostFile(path));
  for (std::string line; std::getline(rows, line);) {
    if (line.empty() || line.starts_with('#')) continue;
    RowReader row(line);
    const std::string_view word = row.Word();
    if (word == "case") {
      cases.emplace_back();
      cases.back().name = row.Text().value_or("");
    } else if (cases.empty()) {
      ADD_FAILURE() << "a row before the first case: " << line;
    } else if (word == "file") {
      cases.back().file = row.Text();
    } else if (word == "own") {
      cases.back().own = true;
    } else if (word == "read" || word == "write") {
      cases.back().calls.push_back(ParseCall(line));
    } else if (word != "layout") {
      ADD_FAILURE() << "unknown row: " << line;
    }
  }
  EXPECT_FALSE(cases.empty()) << path;
  return cases;
}

}  // namespace zent::testing
