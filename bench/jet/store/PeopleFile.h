#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "jet/fakes/StoreFile.h"
#include "jet/host/posix/PosixStorage.h"
#include "jet/store/TableStore.h"
#include "support/TempFolder.h"

namespace zent::jet::bench {

inline constexpr std::int32_t kRows = 100'000;

/// A database on disk with a table "People" of five columns, empty, and with as much of a catalog
/// as other readers need. It goes with this object.
class PeopleFile {
 public:
  enum Position : std::uint8_t { Id, Code, Name, Born, Amount };

  /// `key` is the column of the primary key.
  explicit PeopleFile(Position key);

  const std::string& path() const { return path_; }
  testing::StoreFile& file() { return *file_; }
  /// The definition of the table.
  PageNumber page() const { return page_; }

  /// Inserts the first `rows` rows; no commit. False when one is refused.
  bool Fill(std::int32_t rows);
  /// Commits and closes the file: it can be read by others, and no more through this.
  void Close();

 private:
  zent::testing::TempFolder folder_;
  std::string path_;
  PosixStorage storage_;
  std::unique_ptr<testing::StoreFile> file_;
  std::unique_ptr<TableStore> table_;
  PageNumber page_;
};

/// Row `number` of People. The codes are all different and in no order.
std::vector<Value> Person(std::int32_t number);
std::string CodeOf(std::int32_t number);

}  // namespace zent::jet::bench
