#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "platform/FileSystem.h"
#include "platform/SystemInfo.h"

namespace zent {

/// Reads a text file line by line, in pieces, so that its size does not matter. Lines end at CR LF,
/// LF or CR; the last one may lack its end. Text is in the machine's ANSI code page, or UTF-8 when
/// the file begins with that mark, which is dropped. UTF-16 is refused, and so is a line that does
/// not end within 16 MB, since each is held in memory. The system outlives the reader.
class TextFileReader {
 public:
  static constexpr std::size_t kLongestLine = std::size_t{16} << 20U;  ///< bytes, with its end

  /// Errors: those of FileSystem::OpenForReading; kInvalidFileFormat for UTF-16.
  static Result<TextFileReader> Open(FileSystem& files, SystemInfo& system, std::string_view path);

  /// Puts the next line, without its end and in UTF-8, into `line`; false at the end of the file.
  /// Errors: those of File::ReadAt; kOutOfStringSpace for a line that is too long.
  Result<bool> Next(std::string& line);

 private:
  TextFileReader(SystemInfo& system, std::unique_ptr<File> file)
      : system_(&system), file_(std::move(file)) {}

  /// Reads the next piece behind what is left in the buffer; false at the end of the file.
  Result<bool> Refill();
  Status CheckEncoding();
  /// The text of the bytes up to `end`, taken off the buffer together with their line end.
  void TakeLine(std::size_t end, std::size_t line_end_size, std::string& line);

  SystemInfo* system_;  ///< whose code page the text is in
  std::unique_ptr<File> file_;
  std::uint64_t offset_ = 0;  ///< of the next byte to read from the file
  std::string buffer_;
  std::size_t start_ = 0;  ///< of the present line in the buffer
  bool at_end_ = false;
  bool utf8_ = false;
};

}  // namespace zent
