#pragma once

#include <string>
#include <string_view>

#include "jet/fakes/MemoryStorage.h"
#include "jet/format/Layout.h"
#include "jet/format/TableDefinition.h"
#include "jet/tools/Verify.h"

namespace zent::jet::testing {

/// Where the parts of the tables of SampleDatabase lie.
struct SamplePlaces {
  PageNumber people = 0;       ///< definition
  PageNumber orders = 0;       ///< definition
  PageNumber rows = 0;         ///< first data page of People
  PageNumber map_page = 0;     ///< usage maps of People
  std::uint8_t map_row = 0;    ///< of the map of its pages
  PageNumber root = 0;         ///< of the index over the names: a node
  PageNumber leaf = 0;         ///< the first leaf below it
  PageNumber second_leaf = 0;  ///< the one behind it
  PageNumber values = 0;       ///< first page of long values
  PageNumber last = 0;         ///< the last page of the file
  TableDefinition people_table = {};
};

/// A database with two related tables made by the engine: People (every type, long values in all
/// their forms, moved rows, an index of two levels) and Orders, which refers to it. Rows were
/// deleted, so that pages are free. Made once.
const std::string& SampleDatabase();
const SamplePlaces& PlacesOfSample();

/// The file with bytes of it changed.
class DamagedFile {
 public:
  DamagedFile() : bytes_(SampleDatabase()) {}

  static const SamplePlaces& at() { return PlacesOfSample(); }
  std::string& bytes() { return bytes_; }
  std::uint32_t U16(PageNumber page, std::size_t offset) const;
  std::uint32_t U32(PageNumber page, std::size_t offset) const;
  /// A page that one row of a long value's chain fills, which goes on elsewhere.
  PageNumber PageOfChain() const;
  void PutU8(PageNumber page, std::size_t offset, unsigned value);
  void PutU16(PageNumber page, std::size_t offset, unsigned value);
  void PutU32(PageNumber page, std::size_t offset, std::uint32_t value);

 private:
  std::string bytes_;
};

/// What a check of these bytes ends with.
struct Verified {
  int error = 0;  ///< number, when the file cannot be opened or read at all
  VerifySummary summary = {};
  std::string faults;  ///< all lines
};
Verified VerifyBytes(std::string_view bytes);

/// Reads every row of every table, as far as it can be read, and what the catalog knows.
void ReadEverything(std::string_view bytes);

}  // namespace zent::jet::testing
