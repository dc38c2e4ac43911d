#pragma once

#include "base/Status.h"
#include "jet/format/PropertyBlob.h"
#include "jet/schema/NewTable.h"

namespace zent::jet {

/// Puts what a new column asks of its values, and its other properties, into `blob`. What is absent
/// is not required, and allows no empty text.
Status AddColumnProperties(const NewColumn& column, PropertyBlob& blob);

}  // namespace zent::jet
