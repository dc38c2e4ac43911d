#include "xmlupdate/XmlFiles.h"

#include <utility>

#include "base/Text.h"
#include "driver/run/Messages.h"
#include "driver/run/PathBounds.h"
#include "lib/FuncLib.h"
#include "xml/LoadError.h"

namespace zent {
namespace {

/// Keeps the failure for the rest of the run and for the records.
std::nullopt_t NotLoaded(UpdateRun& run, const std::string& path, const std::string& reason) {
  run.state.xml_load_failed = true;
  run.Fail("not loaded: " + path + ": " + reason);
  run.Tell(
      {.file = path, .action = XmlAction::Load, .outcome = XmlOutcome::Failed, .reason = reason});
  return std::nullopt;
}

/// Shows the five lines of a file that is there and could not be loaded.
std::nullopt_t NotParsed(UpdateRun& run, const std::string& path, const xml::LoadError& error) {
  std::string text = "Error Parsing: " + error.url;
  text += std::string(kLineBreak) + "Error Number: " + std::to_string(error.code);
  text += std::string(kLineBreak) + "Error Description: " + error.reason;
  text += std::string(kLineBreak) + "Line: " + std::to_string(error.line);
  text += std::string(kLineBreak) + "Column: " + std::to_string(error.column);
  run.ShowMsg(text);
  return NotLoaded(run, path, error.reason);
}

}  // namespace

std::optional<xml::Document> LoadXmlFile(UpdateRun& run, const std::string& path) {
  FileSystem& files = run.platform.files;
  if (LeadsOffTheMachine(run, path) || !FileExists(files, path)) {
    run.ShowMsg("File not found - " + path);
    return NotLoaded(run, path, StandardError(kFileNotFound).description);
  }
  const xml::LoadLimits limits;
  const Result<std::string> bytes = ReadWholeFile(files, path, limits.bytes);
  if (!bytes.ok()) {
    const bool is_too_large = bytes.number() == kOutOfStringSpace;
    return NotParsed(run, path,
                     {.url = path,
                      .code = bytes.number(),
                      .reason = bytes.error().description +
                                (is_too_large ? ": the file is larger than 256 MB" : "")});
  }
  xml::LoadResult loaded = xml::Document::Load(bytes.value(), path, limits);
  if (!loaded.ok()) return NotParsed(run, path, loaded.error());
  return std::move(loaded.value());
}

Status SaveXmlFile(UpdateRun& run, const xml::Document& document, const std::string& path) {
  const Result<std::string> bytes = document.Serialize();
  Status saved = bytes.ok() ? run.platform.files.Write(path, bytes.value()) : Status(bytes.error());
  if (!saved.ok()) {
    RuntimeError error = saved.error();
    error.description += ": " + path;
    saved = error;
  }
  return TellStep(run, {.file = path, .action = XmlAction::Save}, saved);
}

Status TellStep(UpdateRun& run, XmlOperation operation, Status status) {
  if (!status.ok()) {
    operation.outcome = XmlOutcome::Failed;
    operation.reason = ReasonOf(status.error());
  }
  run.Tell(operation);
  return status;
}

xml::Node ChildElement(xml::Node parent, std::string_view name) {
  xml::Node child = parent.FirstChild();
  while (child && !(child.IsElement() && child.name() == name)) child = child.NextSibling();
  return child;
}

Result<xml::Node> SelectElement(xml::Node from, std::string_view xpath) {
  Result<xml::Node> found = from.SelectFirst(xpath);
  if (!found.ok() || !found.value() || found.value().IsElement()) return found;
  return StandardError(kTypeMismatch, "no element: " + std::string(xpath));
}

Result<xml::Node> RequireElement(xml::Node from, std::string_view xpath, const std::string& what) {
  Result<xml::Node> found = SelectElement(from, xpath);
  if (!found.ok() || found.value()) return found;
  return StandardError(kObjectNotSet, what + " is missing");
}

Result<std::string> RequireAttribute(xml::Node element, std::string_view name) {
  std::optional<std::string> value = element.Attribute(name);
  if (value) return std::move(*value);
  return StandardError(kObjectNotSet,
                       "attribute " + std::string(name) + " of " + element.name() + " is missing");
}

}  // namespace zent
