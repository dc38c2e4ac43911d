#pragma once

#include <cstdint>
#include <string_view>

#include "base/Status.h"
#include "jet/store/UsageMaps.h"

/// Who may do what with an object: the rows of MSysACEs. Accounts are known by bytes that every
/// file masks in its own way.
namespace zent::jet {

/// Gives a new object what its container hands on. What is meant for "whoever makes it" goes to
/// `owner`, unless the owner has a row of his own; `engine` is the account of the system objects,
/// from which that entry is known.
Status GrantInherited(UsageMaps& maps, std::int32_t object, std::int32_t container,
                      std::string_view owner, std::string_view engine);

/// Deletes all rows of an object.
Status RevokeAll(UsageMaps& maps, std::int32_t object);

}  // namespace zent::jet
