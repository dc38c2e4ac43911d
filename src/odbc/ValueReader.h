#pragma once

#include <functional>
#include <string_view>

#include "base/Status.h"
#include "odbc/OdbcHandle.h"
#include "odbc/OdbcSession.h"
#include "odbc/ValueForm.h"

namespace zent::odbc {

/// Takes a piece of a long value, UTF-8 or bytes; an error of its own ends the reading.
using PieceSink = std::function<Status(std::string_view piece)>;

/// Reads the values of the present row that are not bound, each once and from left to right, as
/// every driver allows. What the server says of lengths is never allocated: a value grows with what
/// has come.
class ValueReader {
 public:
  ValueReader(OdbcSession& session, const OdbcHandle& statement)
      : session_(session), statement_(statement) {}

  /// The value of the column, counted from 1. Error kOutOfStringSpace: above 256 MB.
  Result<OdbcValue> Read(SQLUSMALLINT column, const ValueForm& form);

  /// Hands a text or binary value over in pieces of at most 64 KB or so; false when it is null.
  Result<bool> ReadPieces(SQLUSMALLINT column, const ValueForm& form, const PieceSink& sink);

 private:
  OdbcSession& session_;
  const OdbcHandle& statement_;
};

}  // namespace zent::odbc
