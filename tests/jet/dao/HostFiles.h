#pragma once

#include <memory>

#include "jet/storage/Storage.h"

namespace zent::jet::testing {

/// The files of the system that the tests run on.
std::unique_ptr<Storage> HostFiles();

}  // namespace zent::jet::testing
