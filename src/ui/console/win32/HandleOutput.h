#pragma once

#include <windows.h>

#include <ostream>
#include <streambuf>
#include <string>

namespace zent {

/// Writes UTF-8 text to a standard handle of Windows at each flush: a console gets it as Unicode,
/// whatever its code page; a pipe or file gets the bytes. Line ends are CR LF, as programs there
/// write them. What cannot be written is lost: a console that goes away must not end a run.
class HandleBuffer final : public std::streambuf {
 public:
  /// Does not own `handle`.
  explicit HandleBuffer(HANDLE handle);

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override;

 private:
  HANDLE handle_;
  bool is_console_;
  std::string pending_;
};

/// A stream over a HandleBuffer. `handle` may be null: what is written is lost.
class HandleOutput final : public std::ostream {
 public:
  explicit HandleOutput(HANDLE handle) : std::ostream(nullptr), buffer_(handle) { rdbuf(&buffer_); }

 private:
  HandleBuffer buffer_;
};

}  // namespace zent
