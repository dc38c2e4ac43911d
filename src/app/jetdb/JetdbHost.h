#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "base/Status.h"
#include "jet/format/Value.h"
#include "jet/storage/LockFile.h"
#include "jet/storage/Storage.h"

namespace zent {

/// What jetdb wants of the system that it runs on. Text is UTF-8, paths are the system's own.
class JetdbHost {
 public:
  virtual ~JetdbHost() = default;

  virtual jet::Storage& storage() = 0;
  virtual std::ostream& output() = 0;
  virtual std::ostream& errors() = 0;
  /// Whether both paths lead to the same file, which is there.
  virtual bool IsSameFile(const std::string& a, const std::string& b) = 0;
  /// The text of a file; "-" is standard input, to its end.
  virtual Result<std::string> ReadText(const std::string& path) = 0;
  /// A variable of the environment; nothing when there is none.
  virtual std::optional<std::string> Variable(const std::string& name) = 0;
  /// Who is shown to others that have the database open.
  virtual jet::User user() = 0;
  /// The local time.
  virtual jet::Date Now() = 0;
};

/// How jetdb ends.
inline constexpr int kJetdbDone = 0;
inline constexpr int kJetdbFailed = 1;     ///< faults found, or an error of the database
inline constexpr int kJetdbWrongLine = 2;  ///< the command line

/// Runs jetdb with these arguments, UTF-8, the program's name first; the exit code.
int RunJetdb(JetdbHost& host, int argc, const char* const* argv);

}  // namespace zent
