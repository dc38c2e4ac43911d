#pragma once

#include <memory>
#include <string>
#include <vector>

#include "jet/fakes/TableBuilder.h"

/// A table on a file, and transactions over it that touch all that a table has.
namespace zent::jet::testing {

/// A database with one table and no rows: AutoNumber key, unique code, text and date together,
/// notes.
struct SampleTable {
  enum Position : std::uint8_t { Id, Code, City, Born, Note };
  static constexpr PageNumber kDefinition = kRelationshipsPage + 1;  ///< its first page

  /// The bytes of the database.
  static std::string Make();
  /// The table of such a database.
  static std::unique_ptr<TableStore> Open(StoreFile& file);
  /// A row; its code is made of `number`.
  static std::vector<Value> Row(int number, std::size_t note_size);
};

/// Transactions that follow each other: rows come, with long values; rows change and move; rows
/// go; more changes than a cache of 24 pages holds.
inline constexpr std::size_t kTableChanges = 4;
inline constexpr std::size_t kTableCachePages = 24;

/// Makes all of them on the table of the database at `path`, each committed, and stops at the first
/// failure. `committed` counts what was.
Status ChangeSampleTable(Storage& storage, std::string_view path, std::size_t& committed);

/// The rows before the first and after each transaction.
std::vector<TableRows> SampleTableStates();

/// The rows of the table of the database at `path`, which is opened as after a crash; everything of
/// the table is checked.
TableRows ExpectRightSampleTable(Storage& storage, std::string_view path);

}  // namespace zent::jet::testing
