#include "base/RuntimeError.h"

#include <algorithm>
#include <array>

namespace zent {
namespace {

struct StandardText {
  int number;
  const char* text;
};

constexpr std::array kStandardTexts = {
    StandardText{kInvalidProcedureCall, "Invalid procedure call or argument"},
    StandardText{kSubscriptOutOfRange, "Subscript out of range"},
    StandardText{kTypeMismatch, "Type mismatch"},
    StandardText{kOutOfStringSpace, "Out of string space"},
    StandardText{kBadFileName, "Bad file name or number"},
    StandardText{kFileNotFound, "File not found"},
    StandardText{kBadFileMode, "Bad file mode"},
    StandardText{kFileAlreadyOpen, "File already open"},
    StandardText{kDeviceIoError, "Device I/O error"},
    StandardText{kFileAlreadyExists, "File already exists"},
    StandardText{kDiskFull, "Disk full"},
    StandardText{kInputPastEnd, "Input past end of file"},
    StandardText{kTooManyFiles, "Too many files"},
    StandardText{kDeviceUnavailable, "Device unavailable"},
    StandardText{kPermissionDenied, "Permission denied"},
    StandardText{kDiskNotReady, "Disk not ready"},
    StandardText{kCannotRenameAcrossDrives, "Can't rename with different drive"},
    StandardText{kPathFileAccess, "Path/File access error"},
    StandardText{kPathNotFound, "Path not found"},
    StandardText{kObjectNotSet, "Object variable or With block variable not set"},
    StandardText{kInvalidFileFormat, "Invalid file format"},
    StandardText{kCannotCreateObject, "ActiveX component can't create object"},
    StandardText{kAutomationError, "Automation error"},
    StandardText{kActionNotSupported, "Object doesn't support this action"},
};

}  // namespace

RuntimeError StandardError(int number) {
  const auto* const found =
      std::find_if(kStandardTexts.begin(), kStandardTexts.end(),
                   [&](const StandardText& row) { return row.number == number; });
  if (found == kStandardTexts.end()) {
    return {.number = number, .description = "Application-defined or object-defined error"};
  }
  return {.number = number, .description = found->text};
}

RuntimeError StandardError(int number, const std::string& detail) {
  RuntimeError error = StandardError(number);
  error.description += ": " + detail;
  return error;
}

}  // namespace zent
