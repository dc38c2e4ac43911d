#include "lib/FuncLib.h"

namespace zent {
namespace {

/// Counts the quotes of a growing piece of a line; each character is looked at once.
class QuoteCounter {
 public:
  QuoteCounter(std::string_view line, std::string_view quote) : line_(line), quote_(quote) {}

  /// Begins a piece at `start`.
  void Restart(std::size_t start) {
    scanned_ = start;
    odd_ = false;
  }
  /// True when the piece, ended at `end`, holds an odd number of quotes.
  bool IsOddAt(std::size_t end) {
    if (quote_.empty()) return false;
    const std::string_view piece = line_.substr(0, end);
    for (std::size_t at = piece.find(quote_, scanned_); at != std::string_view::npos;
         at = piece.find(quote_, scanned_)) {
      odd_ = !odd_;
      scanned_ = at + quote_.size();
    }
    // The last characters may begin a quote that the next part of the piece completes.
    if (end >= quote_.size()) scanned_ = MaxOf(scanned_, end - quote_.size() + 1);
    return odd_;
  }

 private:
  std::string_view line_;
  std::string_view quote_;
  std::size_t scanned_ = 0;
  bool odd_ = false;
};

}  // namespace

Result<std::size_t> GetTokens(std::string_view line, std::string_view delimiter, TokenList& tokens,
                              std::string_view opening_quote,
                              [[maybe_unused]] std::string_view closing_quote) {
  tokens.Clear();
  if (delimiter.empty()) return StandardError(kInvalidProcedureCall);

  QuoteCounter quotes(line, IsBlank(opening_quote) ? std::string_view() : opening_quote);
  std::size_t start = 0;  // of the token
  std::size_t from = 0;   // of its last piece
  for (std::size_t cut = line.find(delimiter); cut != std::string_view::npos;
       cut = line.find(delimiter, from)) {
    from = cut + delimiter.size();
    const bool at_end = from == line.size();
    if (quotes.IsOddAt(cut) && !at_end) continue;
    tokens.Add(line.substr(start, cut - start));
    if (tokens.Count() > kMaxTokens) {
      tokens.Clear();
      return StandardError(kOutOfStringSpace);
    }
    if (at_end) return tokens.Count();
    start = from;
    quotes.Restart(start);
  }
  tokens.Add(line.substr(start));
  return tokens.Count();
}

}  // namespace zent
