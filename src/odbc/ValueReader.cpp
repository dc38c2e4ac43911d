#include "odbc/ValueReader.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "odbc/WideText.h"

namespace zent::odbc {
namespace {

constexpr std::size_t kPieceUnits = 32768;
constexpr std::size_t kMostBytes = 256U << 20U;

/// How many bytes of a piece are there, of a buffer that holds `room` beside its closing zero: the
/// driver tells the length of what was left before the piece, or that it does not know.
std::size_t BytesThere(SQLRETURN code, SQLLEN told, std::size_t room) {
  const bool more = code == SQL_SUCCESS_WITH_INFO;
  if (told < 0) return more ? room : 0;
  return std::min(static_cast<std::size_t>(told), room);
}

}  // namespace

Result<OdbcValue> ValueReader::Read(SQLUSMALLINT column, const ValueForm& form) {
  if (form.bytes == 0) {
    std::string text;
    const Result<bool> there = ReadPieces(column, form, [&text](std::string_view piece) -> Status {
      if (text.size() + piece.size() > kMostBytes) return StandardError(kOutOfStringSpace);
      text += piece;
      return {};
    });
    if (!there.ok()) return there.error();
    if (!there.value()) return OdbcValue();
    return ValueOfText(form.kind, std::move(text));
  }
  std::vector<unsigned char> buffer(form.bytes);
  SQLLEN told = 0;
  const SQLRETURN code =
      session_.calls.get_data(statement_.get(), column, form.c_type, buffer.data(),
                              static_cast<SQLLEN>(buffer.size()), &told);
  if (Status read = session_.Check(statement_, code); !read.ok()) return read.error();
  if (told == SQL_NULL_DATA) return OdbcValue();
  return DecodeValue(form, buffer.data(), buffer.size());
}

Result<bool> ValueReader::ReadPieces(SQLUSMALLINT column, const ValueForm& form,
                                     const PieceSink& sink) {
  std::vector<SQLWCHAR> buffer(kPieceUnits);
  const bool wide = form.c_type == SQL_C_WCHAR;
  const std::size_t bytes = buffer.size() * sizeof(SQLWCHAR);
  const std::size_t room = wide ? bytes - sizeof(SQLWCHAR) : bytes;
  WideTextPieces text;
  while (true) {
    SQLLEN told = 0;
    const SQLRETURN code = session_.calls.get_data(
        statement_.get(), column, form.c_type, buffer.data(), static_cast<SQLLEN>(bytes), &told);
    if (code == SQL_NO_DATA) break;
    if (Status read = session_.Check(statement_, code); !read.ok()) return read.error();
    if (told == SQL_NULL_DATA) return false;
    const std::size_t there = BytesThere(code, told, room);
    const std::string piece =
        wide ? text.Add(buffer.data(), there / sizeof(SQLWCHAR))
             : std::string(reinterpret_cast<const char*>(buffer.data()), there);
    if (Status taken = sink(piece); !taken.ok()) return taken.error();
    // A last piece, or a driver that gives nothing and says that there is more.
    if (code == SQL_SUCCESS || there == 0) break;
  }
  if (Status taken = sink(text.Finish()); !taken.ok()) return taken.error();
  return true;
}

}  // namespace zent::odbc
