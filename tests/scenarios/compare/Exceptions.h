#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace zent::testing {

/// What a case expects otherwise on Windows: its file `expected.windows`. Each block begins with
/// its reason and changes lines of one expected text:
///
///   # Wine's registration tool is found although its file is missing.
///   records
///   - 7 ureg failed: File not found (53)
///   + 7 ureg done
///
/// The "-" lines of a block stand together in the text and in this order; its "+" lines take their
/// place. A block with "+" alone adds its lines at the end. `*` at the end of a "-" line stands for
/// any rest.

/// `text` as the blocks for it say, and what is wrong with the blocks (empty: nothing): one without
/// a reason, or one whose lines do not stand there, which is an exception that nothing needs.
std::pair<std::string, std::string> ApplyExceptions(std::string_view exceptions,
                                                    std::string_view name, std::string text);

}  // namespace zent::testing
