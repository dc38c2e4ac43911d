#include "app/jetdb/StatementSplitter.h"

#include <algorithm>

namespace zent {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

/// What ends what `c` begins; 0 when it begins nothing.
char EndOf(char c) {
  switch (c) {
    case '\'':
    case '"':
    case '`':
    case '#':
      return c;
    case '[':
      return ']';
    default:
      return 0;
  }
}

/// Goes through a script, letter by letter.
class Splitter {
 public:
  explicit Splitter(std::string_view script) : script_(script) {}

  std::vector<ScriptStatement> Split() {
    while (at_ < script_.size()) {
      if (end_ == 0 && AtLineStart() && script_.substr(at_).starts_with("--")) {
        at_ = std::min(script_.find('\n', at_), script_.size());
      } else {
        Take(script_[at_++]);
      }
    }
    Finish();
    return std::move(statements_);
  }

 private:
  bool AtLineStart() const { return at_ == 0 || script_[at_ - 1] == '\n'; }

  void Take(char c) {
    if (c == '\n') {
      ++line_;
      // Nothing but texts goes over a line: a "#" alone must not swallow the rest.
      if (end_ == '#' || end_ == ']' || end_ == '`') end_ = 0;
    }
    if (end_ != 0) {
      if (c == end_) end_ = 0;
    } else if (c == ';') {
      return Finish();
    } else {
      end_ = EndOf(c);
    }
    if (text_.empty() && IsBlank(c)) return;
    if (text_.empty()) begin_ = line_;
    text_.push_back(c);
  }

  void Finish() {
    while (!text_.empty() && IsBlank(text_.back())) text_.pop_back();
    if (!text_.empty()) statements_.push_back({.text = text_, .line = begin_});
    text_.clear();
    end_ = 0;
  }

  std::string_view script_;
  std::size_t at_ = 0;
  std::size_t line_ = 1;
  char end_ = 0;  ///< of the text, name or date that is open
  std::string text_;
  std::size_t begin_ = 1;
  std::vector<ScriptStatement> statements_;
};

}  // namespace

std::vector<ScriptStatement> SplitScript(std::string_view script) {
  if (script.starts_with(kMark)) script.remove_prefix(kMark.size());
  return Splitter(script).Split();
}

}  // namespace zent
