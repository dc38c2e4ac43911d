#include "jet/schema/Names.h"

#include <algorithm>

#include "base/Utf.h"
#include "jet/format/JetErrors.h"
#include "jet/format/Layout.h"
#include "jet/format/TextCodec.h"

namespace zent::jet {

Status CheckName(std::string_view name) {
  const auto forbidden = [](char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7F' ||
           std::string_view(".!`[]").find(c) != std::string_view::npos;
  };
  const bool right = !name.empty() && name.front() != ' ' && IsUtf8(name) &&
                     CountUnits(name) <= kMaxNameUnits &&
                     std::none_of(name.begin(), name.end(), forbidden);
  return right ? Status() : Status(JetError(kInvalidName, name));
}

}  // namespace zent::jet
