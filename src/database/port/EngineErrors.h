#pragma once

#include <string>
#include <vector>

namespace zent {

/// Numbers of database engine errors that the updater looks at. They are DAO's: an adapter turns
/// what its engine says into them; other errors of a server have the server's own numbers.
inline constexpr int kEngineDuplicateKey = 3022;
inline constexpr int kEngineFileNotFound = 3024;
inline constexpr int kEngineReadOnly = 3027;
inline constexpr int kEngineWrongPassword = 3031;
inline constexpr int kEngineFileInUse = 3045;
inline constexpr int kEngineNoSuchTable = 3078;
inline constexpr int kEngineServerCallFailed = 3146;  ///< a server error without a number
inline constexpr int kEngineTextTooLong = 3163;
inline constexpr int kEngineWriteConflict = 3197;  ///< another user changed the same row
inline constexpr int kEngineItemNotFound = 3265;
inline constexpr int kEngineOpenedExclusively = 3356;

/// The source of an error that an engine raised.
inline constexpr const char* kEngineSource = "DAO";

/// One entry of an engine's error collection.
struct EngineError {
  int number = 0;  ///< DAO's number; of a server its own: 18456 is a refused login
  std::string description;
  std::string source;         ///< the part that raised it, as it names itself
  std::string sqlstate = {};  ///< five characters; empty for errors that have none
};

using EngineErrors = std::vector<EngineError>;

}  // namespace zent
