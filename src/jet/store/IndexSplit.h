#pragma once

#include <optional>

#include "jet/format/IndexPage.h"

namespace zent::jet {

/// How many entries of an overfull page go to a new page on its left: such that both are about
/// equally full, or, with `leave_full`, all but the last. A node's left part ends with a child that
/// becomes its tail. What stays may still be too much. Nothing when entries are too long to part.
std::optional<std::size_t> ChooseSplit(JetVersion version, const IndexPage& page, bool leave_full);

}  // namespace zent::jet
