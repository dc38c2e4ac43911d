#pragma once

#include <string>
#include <string_view>

#include "base/Status.h"
#include "jet/format/Value.h"
#include "jet/storage/Storage.h"

namespace zent::jet {

struct NewDatabase {
  std::string password = {};  ///< at most 20 characters; empty: none
  Date created = {};          ///< written as the date of the system objects
};

/// Makes an empty database of Jet 4: the system tables and the containers, no table of its own. The
/// file is complete and closed, or not there at all. kDatabaseExists when there is a file of that
/// name, which is left as it is.
Status CreateDatabase(Storage& storage, std::string_view path, const NewDatabase& database);

}  // namespace zent::jet
