#pragma once

#include <memory>
#include <string_view>

#include "base/Status.h"
#include "jet/format/FileHeader.h"
#include "jet/storage/Pager.h"

namespace zent::jet {

/// Creates a file of Jet 4 with that header, opens it exclusively, begins a transaction and adds
/// the global map and pages for the definitions of the four tables of the catalog, still empty.
Result<std::unique_ptr<Pager>> MakeNewFile(Storage& storage, std::string_view path,
                                           const FileHeader& header, const PagerOptions& options);

}  // namespace zent::jet
