// Any text as a statement: it is refused, or printed and parsed again it is the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "jet/format/JetErrors.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/syntax/Printer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const zent::Result<zent::jet::Statement> parsed = zent::jet::ParseStatement(text);
  if (!parsed.ok()) return 0;
  const zent::Result<zent::jet::Statement> again =
      zent::jet::ParseStatement(zent::jet::PrintStatement(parsed.value()));
  // The printed form may have brackets more, so that what was at the limit is beyond it.
  if (again.number() == zent::jet::kQueryTooComplex) return 0;
  if (!again.ok() || again.value() != parsed.value()) std::abort();
  return 0;
}
