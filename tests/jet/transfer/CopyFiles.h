#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "jet/fakes/MemoryStorage.h"

namespace zent::jet::testing {

/// Makes a database with all that a copy has to keep: a table "Things" with an AutoNumber that is
/// ahead of its rows, a dropped column, long values of all lengths, a column of each type, and
/// indexes; a table "Parts" that refers to it; properties.
void MakeSource(Storage& storage, std::string_view path, int rows = 50,
                std::string_view password = {});

/// Makes a database whose table "Letters" has had no column dropped, so that rows may be taken over
/// as they are: some older than its last column, some grown and moved, long values of all lengths,
/// texts of all kinds in its indexes.
void MakeLetters(Storage& storage, std::string_view path, int rows = 60);

/// Makes a database whose table "Wide" has 130 memo columns, and rows whose memos all lie
/// elsewhere: because they are long, or because they are many.
void MakeWide(Storage& storage, std::string_view path);

/// Makes a database of a hundred empty tables, whose catalog has more than one page.
void MakeMany(Storage& storage, std::string_view path);

/// An empty database.
void MakeEmpty(Storage& storage, std::string_view path);

}  // namespace zent::jet::testing
