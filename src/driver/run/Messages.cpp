#include "driver/run/Messages.h"

#include "base/Text.h"

namespace zent {
namespace {

struct Wording {
  std::string_view written;
  std::string_view shown;
};

// In this order: the first takes "SQL Server" before the third could see its parts.
constexpr Wording kOracleWordings[] = {
    {"SQL Server", " Server"},
    {"MSSQLServer", "Server"},
    {"SQLServer", "Server"},
    {"Microsoft", ""},
};

}  // namespace

std::string OracleWording(std::string_view message) {
  std::string worded(message);
  for (const Wording& wording : kOracleWordings) {
    worded = ReplaceAllIgnoringCase(worded, wording.written, wording.shown);
  }
  return worded;
}

bool IsOracleTitle(std::string_view title) {
  return FindIgnoringCase(title, "Oracle") != std::string_view::npos;
}

std::string DescriptionLine(const RuntimeError& error) {
  return "Description: " + error.description;
}

std::string NumberLine(const RuntimeError& error) {
  return "Number: " + std::to_string(error.number);
}

std::string ReasonOf(const RuntimeError& error) {
  return error.description + " (" + std::to_string(error.number) + ")";
}

std::string ErrorText(std::string_view headline, const RuntimeError& error) {
  std::string text(headline);
  text += kLineBreak;
  text += DescriptionLine(error);
  text += kLineBreak;
  text += NumberLine(error);
  return text;
}

}  // namespace zent
