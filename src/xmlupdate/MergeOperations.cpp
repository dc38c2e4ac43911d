#include "xmlupdate/MergeOperations.h"

#include <optional>

#include "base/Text.h"
#include "lib/FuncLib.h"
#include "xmlupdate/XmlFiles.h"

namespace zent {
namespace {

constexpr std::string_view kVersionElement = "Version";

/// How a copied element goes to its target.
enum class Way { Before, AtEnd, InPlaceOf };

/// One operation at work. It remembers what it is told of: the step that the run's events show.
class Operation {
 public:
  Operation(UpdateRun& run, const MergePair& pair, xml::Node element, XmlAction action)
      : run_(run), pair_(pair), element_(element), step_{.file = pair.path, .action = action} {}

  Status Run() {
    Status done = Act();
    return TellStep(run_, step_, done);
  }

 private:
  Status Act() {
    const xml::Node node = ChildElement(element_, "Node");
    if (!node) return StandardError(kObjectNotSet, "Node of " + element_.name() + " is missing");
    step_.node = node.Text();
    if (step_.action == XmlAction::Delete) return Delete();

    const Result<xml::Node> source = SelectElement(pair_.system.node(), step_.node);
    if (!source.ok()) return source.error();
    if (!source.value()) return NotFound(step_.node);
    const bool inserts = step_.action == XmlAction::Insert;
    return Place(source.value(), inserts ? "Before" : "This",
                 inserts ? Way::Before : Way::InPlaceOf);
  }

  /// The text of the option, if the operation has it. It counts as it stands.
  std::optional<std::string> Option(std::string_view name) const {
    const xml::Node option = ChildElement(element_, name);
    return option ? std::optional(option.Text()) : std::nullopt;
  }

  /// Puts a copy of `source` where the option called `place` says, or else where a fallback does.
  Status Place(xml::Node source, std::string_view place, Way way) {
    const std::optional<std::string> wanted = Option(place);
    if (wanted && !IsBlank(*wanted)) {
      const Result<xml::Node> target = Target(*wanted);
      if (!target.ok()) return target.error();
      if (target.value()) return Put(source, target.value(), way);
    }
    if (const std::optional<std::string> parent = Option("IfNotFoundAppendTo")) {
      const Result<xml::Node> target = Target(*parent);
      if (!target.ok()) return target.error();
      return target.value() ? Put(source, target.value(), Way::AtEnd) : NotFound(*parent);
    }
    const std::optional<std::string> next = Option("IfNotFoundInsertBefore");
    if (step_.action == XmlAction::Replace && next) return PutBefore(source, *next);
    return NoPlace();
  }

  /// The last fallback has no test of its own: without its target the merge ends.
  Status PutBefore(xml::Node source, const std::string& next) {
    const Result<xml::Node> target = Target(next);
    if (!target.ok()) return target.error();
    if (target.value()) return Put(source, target.value(), Way::Before);
    return StandardError(kObjectNotSet, "IfNotFoundInsertBefore selects nothing: " + next);
  }

  /// Selects in the customised copy, and keeps the expression as the one that counted.
  Result<xml::Node> Target(const std::string& xpath) {
    step_.place = xpath;
    return SelectElement(pair_.customised.node(), xpath);
  }

  Status Put(xml::Node source, xml::Node target, Way way) {
    const Result<xml::Node> copy = pair_.customised.Copy(source);
    if (!copy.ok()) return copy.error();
    switch (way) {
      case Way::Before:
        step_.outcome = XmlOutcome::InsertedBefore;
        return pair_.customised.InsertBefore(copy.value(), target);
      case Way::AtEnd:
        step_.outcome = XmlOutcome::Appended;
        return pair_.customised.Append(target, copy.value());
      case Way::InPlaceOf:
        step_.outcome = XmlOutcome::Replaced;
        return pair_.customised.Replace(target, copy.value());
    }
    return {};
  }

  Status Delete() {
    const Result<xml::Node> target = SelectElement(pair_.customised.node(), step_.node);
    if (!target.ok()) return target.error();
    if (target.value()) return pair_.customised.Remove(target.value());
    // Gone already: nobody is told but the record.
    step_.outcome = XmlOutcome::Nothing;
    run_.Note("nothing to delete: " + step_.node);
    return {};
  }

  Status NotFound(const std::string& xpath) {
    step_.outcome = XmlOutcome::NotFound;
    run_.ShowMsg("Not found - " + xpath + " - Ignoring this update.");
    run_.Warn("not found: " + xpath);
    return {};
  }

  /// The description names no place that counts: nothing is shown, so the record has to tell.
  Status NoPlace() {
    step_.outcome = XmlOutcome::Nothing;
    run_.Warn("no place for " + step_.node);
    return {};
  }

  UpdateRun& run_;
  const MergePair& pair_;
  xml::Node element_;
  XmlOperation step_;
};

std::optional<XmlAction> ActionOf(std::string_view name) {
  if (name == "Insert") return XmlAction::Insert;
  if (name == "Replace") return XmlAction::Replace;
  if (name == "Delete") return XmlAction::Delete;
  return std::nullopt;
}

Status PutVersion(xml::Document& document, xml::Node version, XmlOperation& step) {
  const xml::Node root = document.root();
  if (!root) return StandardError(kObjectNotSet, "the document element is gone");
  if (const xml::Node old = ChildElement(root, kVersionElement)) {
    step.outcome = XmlOutcome::Replaced;
    return document.Replace(old, version);
  }
  step.outcome = XmlOutcome::InsertedBefore;
  if (const xml::Node first = root.FirstChild()) return document.InsertBefore(version, first);
  return document.Append(root, version);
}

}  // namespace

Status CarryOut(UpdateRun& run, const MergePair& pair, xml::Node operation) {
  if (!operation.IsElement()) return {};
  const std::string name = operation.name();
  const std::optional<XmlAction> action = ActionOf(name);
  if (action) return Operation(run, pair, operation, *action).Run();
  run.Warn("unknown operation: " + name);
  return {};
}

Status StampVersion(UpdateRun& run, const MergePair& pair) {
  xml::Document& customised = pair.customised;
  const xml::Node version = ChildElement(pair.system.root(), kVersionElement);
  if (!version) return {};
  XmlOperation step = {.file = pair.path, .action = XmlAction::Stamp, .node = version.Text()};

  const Result<xml::Node> copy = customised.Copy(version);
  const Status stamped = copy.ok() ? PutVersion(customised, copy.value(), step) : copy.status();
  return TellStep(run, step, stamped);
}

bool HasVersionOf(const xml::Document& customised, const xml::Document& system) {
  const xml::Node present = ChildElement(customised.root(), kVersionElement);
  const xml::Node wanted = ChildElement(system.root(), kVersionElement);
  if (!present || !wanted) return false;
  return TrimBlanks(present.Text()) == TrimBlanks(wanted.Text());
}

}  // namespace zent
