#pragma once

#include <windows.h>

#include <ostream>
#include <streambuf>
#include <string>

namespace zent {

/// Writes UTF-8 text to a standard handle of Windows: a console gets it as Unicode, a pipe or file
/// gets the bytes as they are, so that what is in a database does not change on its way. What
/// cannot be written makes the stream bad.
class StandardBuffer final : public std::streambuf {
 public:
  /// Does not own `handle`.
  explicit StandardBuffer(HANDLE handle);

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override;

 private:
  bool Write(std::size_t size);

  HANDLE handle_;
  bool is_console_ = false;
  std::string pending_;
};

class StandardOutput final : public std::ostream {
 public:
  explicit StandardOutput(HANDLE handle) : std::ostream(nullptr), buffer_(handle) {
    rdbuf(&buffer_);
  }

 private:
  StandardBuffer buffer_;
};

}  // namespace zent
