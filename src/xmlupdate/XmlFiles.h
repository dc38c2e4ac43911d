#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "driver/run/UpdateRun.h"
#include "xml/Document.h"

/// XML files of a run: read, looked at and saved, always as a whole and through the machine's
/// files.
namespace zent {

/// Loads an XML file. A missing one, and a path that leads off the machine, is shown as
/// "File not found - PATH", one that cannot be read or
/// parsed in five lines; either sets RunState::xml_load_failed for the rest of the run, the command
/// is recorded as failed, and the result is nothing. A file above 256 MB is not parsed.
std::optional<xml::Document> LoadXmlFile(UpdateRun& run, const std::string& path);

/// Saves over the file, which holds its old contents or the new ones at every instant. The step is
/// told; a failure names the file.
Status SaveXmlFile(UpdateRun& run, const xml::Document& document, const std::string& path);

/// Tells a step and hands its status on: one that failed is told as Failed, with the reason.
Status TellStep(UpdateRun& run, XmlOperation operation, Status status);

/// The first child element of `parent` of that name, as it is spelled; none when there is none.
xml::Node ChildElement(xml::Node parent, std::string_view name);

/// The first element that `xpath` selects; no node when it selects nothing. Errors: an expression
/// that selects no nodes, and kTypeMismatch when what it selects first is no element.
Result<xml::Node> SelectElement(xml::Node from, std::string_view xpath);

/// As SelectElement, but kObjectNotSet, with `what` missing, when nothing is selected.
Result<xml::Node> RequireElement(xml::Node from, std::string_view xpath, const std::string& what);

/// The attribute of `element`, or kObjectNotSet when it has none.
Result<std::string> RequireAttribute(xml::Node element, std::string_view name);

}  // namespace zent
