#pragma once

#include <string>

#include "base/Status.h"
#include "jet/catalog/Catalog.h"
#include "jet/tools/JsonWriter.h"

namespace zent::jet {

struct DumpOptions {
  std::string file_name = {};  ///< as the dump names the file
  std::string table = {};      ///< of the tables this one alone, in any case; empty: all
  bool rows = true;
  bool whole_values = false;  ///< long values themselves, not what stands for them (ValueJson)
};

/// Everything of a database as one JSON object: properties, catalog, relationships, and the tables
/// that people made with columns, properties, indexes and rows; a row at a time. After an error
/// what was written is not complete; kNoSuchTable comes before anything is written.
Status DumpDatabase(Catalog& catalog, const DumpOptions& options, const TakeText& take);

}  // namespace zent::jet
