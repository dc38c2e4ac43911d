#include "xmlupdate/modMergeXMLs.h"

#include <cstddef>
#include <optional>
#include <vector>

#include "driver/run/PathMacros.h"
#include "xmlupdate/MergeOperations.h"
#include "xmlupdate/MergeTargets.h"
#include "xmlupdate/XmlFiles.h"

namespace zent {
namespace {

/// The merge of one description.
class Merge {
 public:
  Merge(UpdateRun& run, std::string_view base_path) : run_(run), base_path_(base_path) {}

  Status Run(const std::vector<xml::Node>& entries) {
    for (const xml::Node& entry : entries) {
      Status applied = Apply(entry);
      if (!applied.ok()) return applied;
      if (run_.Refused()) return {};
    }
    if (saved_ == 0) run_.Skip("no file was changed");
    return {};
  }

 private:
  Status Apply(xml::Node entry) {
    const Result<std::string> file_name = RequireAttribute(entry, "FileName");
    if (!file_name.ok()) return file_name.error();
    const std::optional<std::string> other_file_name = entry.Attribute("OFileName");
    if (CountsOtherFileName(file_name.value(), other_file_name)) {
      const std::optional<std::string> problem = MacroProblem(*other_file_name);
      if (problem && !run_.Tolerate(*problem)) return {};
    }
    const MergeTargets targets =
        ResolveTargets(run_, base_path_, file_name.value(), other_file_name);
    for (const std::string* path : {&targets.system, &targets.customised}) {
      if (!TolerateXmlFile(run_, *path)) return {};
    }
    const std::optional<xml::Document> system = LoadXmlFile(run_, targets.system);
    if (!system) return {};
    std::optional<xml::Document> customised = LoadXmlFile(run_, targets.customised);
    if (!customised) return {};
    if (HasVersionOf(*customised, *system)) {
      LeaveAlone(targets.customised);
      return {};
    }
    run_.ShowMsg("Updating " + targets.customised);
    return ApplyTo({*system, *customised, targets.customised}, entry);
  }

  void LeaveAlone(const std::string& path) {
    run_.Note("up to date already: " + path);
    run_.Tell({.file = path, .action = XmlAction::Skip, .outcome = XmlOutcome::Nothing});
  }

  /// Nothing reaches the file unless every step of the entry went well.
  Status ApplyTo(const MergePair& pair, xml::Node entry) {
    for (xml::Node child = entry.FirstChild(); child; child = child.NextSibling()) {
      Status done = CarryOut(run_, pair, child);
      if (!done.ok()) return done;
    }
    Status done = StampVersion(run_, pair);
    if (done.ok()) done = SaveXmlFile(run_, pair.customised, pair.path);
    if (done.ok()) ++saved_;
    return done;
  }

  UpdateRun& run_;
  std::string_view base_path_;
  std::size_t saved_ = 0;
};

}  // namespace

Status MergeXMLs(UpdateRun& run, std::string_view base_path, const std::string& description) {
  const std::optional<xml::Document> document = LoadXmlFile(run, description);
  if (!document) return {};
  const Result<std::vector<xml::Node>> entries = document->SelectAll("/XMLUpdates/XMLUpdate");
  if (!entries.ok()) return entries.error();
  return Merge(run, base_path).Run(entries.value());
}

}  // namespace zent
