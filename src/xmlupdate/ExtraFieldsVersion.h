#pragma once

#include <string>
#include <string_view>

#include "base/Status.h"
#include "xml/Document.h"

/// The version that a layout file of extra fields carries. Updates of several makers are counted
/// apart: a version whose fourth character is "-" ("ABC-1.00.0000") has a version element of its
/// own, named by the first three.
namespace zent {

/// The name of the element that carries `version`: "Version", or "ABCVersion".
std::string XFieldsVersionElement(std::string_view version);

/// True when the layout carries exactly `version`; blanks around the text in the layout do not
/// count. A missing element is none.
bool HasXFieldsVersion(const xml::Document& layout, std::string_view version);

/// Makes `version` the text of its element. A missing element is put before the plain "Version";
/// without that one it is kObjectNotSet.
Status StampXFieldsVersion(xml::Document& layout, std::string_view version);

}  // namespace zent
