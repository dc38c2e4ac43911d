#include "database/UpdateDocument.h"

#include <cstdint>
#include <limits>

#include "base/Text.h"
#include "database/FieldTypeNames.h"
#include "driver/run/Messages.h"
#include "driver/run/PathBounds.h"
#include "lib/FuncLib.h"
#include "xml/Document.h"

namespace zent {
namespace {

std::optional<xml::Document> Load(UpdateRun& run, const std::string& path) {
  if (LeadsOffTheMachine(run, path)) {
    run.Fail("not on this machine: " + path);
    return std::nullopt;
  }
  const xml::LoadLimits limits;
  const Result<std::string> bytes = ReadWholeFile(run.platform.files, path, limits.bytes);
  if (!bytes.ok()) {
    run.Fail(path + ": " + ReasonOf(bytes.error()));
    return std::nullopt;
  }
  xml::LoadResult loaded = xml::Document::Load(bytes.value(), path, limits);
  if (loaded.ok()) return std::move(loaded.value());
  run.Fail(ReasonOf(xml::ToRuntimeError(loaded.error())));
  return std::nullopt;
}

/// The text of the element that `xpath` selects, nothing when there is none.
Result<std::optional<std::string>> TextAt(xml::Node from, const char* xpath) {
  const Result<xml::Node> node = from.SelectFirst(xpath);
  if (!node.ok()) return node.error();
  if (!node.value()) return std::optional<std::string>();
  return std::optional(node.value().Text());
}

/// `text` without the white space around it, as markup that is broken into lines brings it.
std::string Trimmed(std::string_view text) {
  constexpr std::string_view kWhiteSpace = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1));
}

/// As TextAt, trimmed; a missing one is kObjectNotSet.
Result<std::string> RequiredText(xml::Node from, const char* xpath) {
  const Result<std::optional<std::string>> text = TextAt(from, xpath);
  if (!text.ok()) return text.error();
  if (!text.value()) return StandardError(kObjectNotSet, xpath);
  return Trimmed(*text.value());
}

/// XML has but one line end; the message box has another.
std::string WithLineBreaks(const std::string& text) {
  std::string lines;
  for (const char c : text) {
    if (c == '\r') continue;
    if (c == '\n') {
      lines += kLineBreak;
    } else {
      lines += c;
    }
  }
  return lines;
}

std::int32_t SizeOf(const std::string& text) {
  constexpr double kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(MinOf(MaxOf(LeadingNumber(text), 0.0), kMost));
}

Result<NewField> ReadField(xml::Node element) {
  const Result<std::string> name = RequiredText(element, "Name");
  if (!name.ok()) return name.error();
  const Result<std::string> type = RequiredText(element, "Type");
  if (!type.ok()) return type.error();
  NewField field{.name = name.value(), .type = FieldTypeFromName(type.value())};
  if (field.type != FieldType::Text) return field;
  const Result<std::string> size = RequiredText(element, "Size");
  if (!size.ok()) return size.error();
  field.size = SizeOf(size.value());
  return field;
}

}  // namespace

std::string ComparableVersion(std::string_view version) {
  const std::string_view three = FirstCharacters(version, 3);
  const bool is_cut = version.substr(three.size()).starts_with('-');
  return std::string(is_cut ? three : version);
}

Result<std::optional<UpdateDocument>> ReadUpdateDocument(UpdateRun& run, const std::string& path) {
  const std::optional<xml::Document> loaded = Load(run, path);
  if (!loaded) return std::optional<UpdateDocument>();
  const xml::Node root = loaded->node();

  const Result<std::string> version = RequiredText(root, "/UpdateDB/Version");
  if (!version.ok()) return version.error();
  const Result<std::optional<std::string>> script = TextAt(root, "/UpdateDB/SQLServerScript");
  if (!script.ok()) return script.error();
  const Result<std::optional<std::string>> table = TextAt(root, "/UpdateDB/Table/Name");
  if (!table.ok()) return table.error();
  const Result<std::vector<xml::Node>> elements = root.SelectAll("/UpdateDB/Table/AddField");
  if (!elements.ok()) return elements.error();

  UpdateDocument document{.version = ComparableVersion(version.value()),
                          .server_script = WithLineBreaks(script.value().value_or("")),
                          .table = Trimmed(table.value().value_or("")),
                          .fields = {}};
  for (const xml::Node element : elements.value()) {
    Result<NewField> field = ReadField(element);
    if (!field.ok()) {
      document.fields_read = field.status();
      break;
    }
    document.fields.push_back(std::move(field.value()));
  }
  return std::optional(std::move(document));
}

}  // namespace zent
