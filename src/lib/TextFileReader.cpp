#include "lib/TextFileReader.h"

#include <algorithm>
#include <utility>

namespace zent {
namespace {

constexpr std::size_t kPieceSize = std::size_t{64} << 10U;  // bytes
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Marks[] = {"\xFF\xFE", "\xFE\xFF"};

/// Two characters of UTF-16 without a mark have a NUL on the same side of both.
bool LooksLikeUtf16(std::string_view start) {
  if (start.size() < 4) return false;
  const auto is_nul = [&](std::size_t i) { return start[i] == '\0'; };
  return (is_nul(1) && is_nul(3) && !is_nul(0) && !is_nul(2)) ||
         (is_nul(0) && is_nul(2) && !is_nul(1) && !is_nul(3));
}

}  // namespace

Result<TextFileReader> TextFileReader::Open(FileSystem& files, SystemInfo& system,
                                            std::string_view path) {
  Result<std::unique_ptr<File>> file = files.OpenForReading(path);
  if (!file.ok()) return file.error();
  TextFileReader reader(system, std::move(file.value()));
  if (const Result<bool> read = reader.Refill(); !read.ok()) return read.error();
  if (const Status checked = reader.CheckEncoding(); !checked.ok()) return checked.error();
  return reader;
}

Status TextFileReader::CheckEncoding() {
  const std::string_view start = std::string_view(buffer_).substr(0, 4);
  for (const std::string_view mark : kUtf16Marks) {
    if (start.substr(0, mark.size()) == mark) {
      return StandardError(kInvalidFileFormat, "UTF-16 text; save it as ANSI or UTF-8");
    }
  }
  if (LooksLikeUtf16(start)) {
    return StandardError(kInvalidFileFormat, "UTF-16 text; save it as ANSI or UTF-8");
  }
  utf8_ = start.substr(0, kUtf8Mark.size()) == kUtf8Mark;
  if (utf8_) start_ = kUtf8Mark.size();
  return {};
}

Result<bool> TextFileReader::Refill() {
  if (at_end_) return false;
  buffer_.erase(0, start_);
  start_ = 0;
  const std::size_t kept = buffer_.size();
  if (kept >= kLongestLine) return StandardError(kOutOfStringSpace, "a line without an end");
  // Pieces grow with the line at hand, so that a long line is moved a bounded number of times.
  buffer_.resize(std::min(kept + std::max(kept, kPieceSize), kLongestLine));
  const Result<std::size_t> read = file_->ReadAt(offset_, std::span(buffer_).subspan(kept));
  if (!read.ok()) {
    buffer_.resize(kept);
    return read.error();
  }
  buffer_.resize(kept + read.value());
  offset_ += read.value();
  at_end_ = read.value() == 0;
  return !at_end_;
}

void TextFileReader::TakeLine(std::size_t end, std::size_t line_end_size, std::string& line) {
  const std::string_view bytes(buffer_.data() + start_, end - start_);
  line = utf8_ ? std::string(bytes) : system_->FromAnsi(bytes);
  start_ = end + line_end_size;
}

Result<bool> TextFileReader::Next(std::string& line) {
  std::size_t searched = 0;  // bytes of the present line known to hold no line end
  while (true) {
    const std::size_t end = buffer_.find_first_of("\r\n", start_ + searched);
    const bool complete =
        end != std::string::npos && (buffer_[end] == '\n' || end + 1 < buffer_.size() || at_end_);
    if (complete) {
      const bool pair =
          buffer_[end] == '\r' && end + 1 < buffer_.size() && buffer_[end + 1] == '\n';
      TakeLine(end, pair ? 2 : 1, line);
      return true;
    }
    searched = (end == std::string::npos ? buffer_.size() : end) - start_;
    const Result<bool> more = Refill();
    if (!more.ok()) return more.error();
    if (!more.value() && end == std::string::npos) break;
  }
  if (start_ >= buffer_.size()) return false;
  TakeLine(buffer_.size(), 0, line);
  return true;
}

}  // namespace zent
