#pragma once

#include <memory>

#include "jet/storage/Storage.h"

namespace zent::testing {

/// The files of the system that the tests run on.
std::unique_ptr<jet::Storage> HostStorage();

}  // namespace zent::testing
