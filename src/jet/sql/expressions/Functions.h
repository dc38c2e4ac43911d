#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "base/Status.h"
#include "jet/format/Value.h"

/// The functions of expressions.
namespace zent::jet {

/// What functions know beside their arguments; the same for all rows of a statement.
struct EvaluationContext {
  Date now;  ///< local time
};

using Arguments = std::span<const Value>;

struct Function {
  std::string_view name;
  std::size_t fewest;  ///< arguments
  std::size_t most;
  /// Null for IIf alone, which leaves out what is not chosen.
  Result<Value> (*call)(Arguments arguments, const EvaluationContext& context);
};

/// By name, in any case; null when there is none.
const Function* FindFunction(std::string_view name);
/// By its place in the list of functions, which is `column` of a call whose names are looked up;
/// null beyond the end.
const Function* FunctionAt(std::size_t place);
std::size_t PlaceOf(const Function& function);

// Texts. Places and lengths are counted in UTF-16 units, the first is 1. Null gives null.
Result<Value> LeftFunction(Arguments arguments, const EvaluationContext& context);
Result<Value> RightFunction(Arguments arguments, const EvaluationContext& context);
Result<Value> MidFunction(Arguments arguments, const EvaluationContext& context);
Result<Value> LenFunction(Arguments arguments, const EvaluationContext& context);
Result<Value> TrimFunction(Arguments arguments, const EvaluationContext& context);
Result<Value> LTrimFunction(Arguments arguments, const EvaluationContext& context);
Result<Value> RTrimFunction(Arguments arguments, const EvaluationContext& context);
/// The letters of ASCII and Latin-1.
Result<Value> UCaseFunction(Arguments arguments, const EvaluationContext& context);
Result<Value> LCaseFunction(Arguments arguments, const EvaluationContext& context);
/// InStr([start,] text, part): the place, letters in any case as above; 0 when absent.
Result<Value> InStrFunction(Arguments arguments, const EvaluationContext& context);

// Dates. Units are "yyyy", "q", "m", "y", "d", "w", "ww", "h", "n" and "s", any other is
// kInvalidArgument; weeks begin on Sunday. Null dates give null.
/// DateAdd(unit, number, date). Of months the day stays, or is the last of the month.
Result<Value> DateAddFunction(Arguments arguments, const EvaluationContext& context);
/// DateDiff(unit, from, to): how many beginnings of units lie between; "w" counts whole weeks.
Result<Value> DateDiffFunction(Arguments arguments, const EvaluationContext& context);
/// DatePart(unit, date).
Result<Value> DatePartOfFunction(Arguments arguments, const EvaluationContext& context);
/// Weekday(date): Sunday is 1.
Result<Value> WeekdayFunction(Arguments arguments, const EvaluationContext& context);

}  // namespace zent::jet
