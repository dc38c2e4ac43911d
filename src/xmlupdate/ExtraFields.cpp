#include "xmlupdate/ExtraFields.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "base/Text.h"
#include "xmlupdate/ExtraFieldsVersion.h"
#include "xmlupdate/MergeTargets.h"
#include "xmlupdate/XmlFiles.h"

namespace zent {
namespace {

constexpr std::string_view kTabNumbers[] = {"Control/TabNumber", "Label/TabNumber"};

/// What a description says of itself.
struct Update {
  std::string layout;  ///< full path of the layout file
  std::string table;   ///< its document element
  std::string version;
};

Result<Update> ReadUpdate(const UpdateRun& run, const xml::Document& description) {
  const Result<xml::Node> root =
      RequireElement(description.node(), "/UpdateXFields", "UpdateXFields");
  if (!root.ok()) return root.error();
  const Result<std::string> file_name = RequireAttribute(root.value(), "FileName");
  if (!file_name.ok()) return file_name.error();
  const Result<std::string> table = RequireAttribute(root.value(), "TableName");
  if (!table.ok()) return table.error();
  const Result<xml::Node> version = RequireElement(root.value(), "Version", "Version");
  if (!version.ok()) return version.error();
  // The blanks of the description must not count: those of the layout do not when both are
  // compared.
  return Update{.layout = run.state.DataPath + "Customize\\" + file_name.value(),
                .table = table.value(),
                .version = std::string(TrimBlanks(version.value().Text()))};
}

/// Number of the captions in a list of tabs, parted by "|".
std::ptrdiff_t CountTabs(const std::string& captions) {
  return captions.empty() ? 0 : std::count(captions.begin(), captions.end(), '|') + 1;
}

/// The work on a layout that was found to need it.
class LayoutUpdate {
 public:
  LayoutUpdate(UpdateRun& run, const Update& update, xml::Document& description,
               xml::Document& layout)
      : run_(run),
        update_(update),
        description_(description),
        layout_(layout),
        fields_path_("/" + update.table + "/XFields") {}

  Status Run() {
    Status done = AddTab();
    if (done.ok()) done = AddFields();
    if (done.ok()) done = Stamp();
    if (done.ok()) done = SaveXmlFile(run_, layout_, update_.layout);
    return done;
  }

 private:
  Status AddTab() {
    const Result<xml::Node> tab = SelectElement(description_.node(), "/UpdateXFields/Add/XTab");
    if (!tab.ok()) return tab.error();
    if (!tab.value()) return {};
    const std::string caption = tab.value().Text();
    const std::string place = fields_path_ + "/XField[ID='MainTab']/Control/Caption";
    return TellStep(run_,
                    {.file = update_.layout,
                     .action = XmlAction::Tab,
                     .node = caption,
                     .place = place,
                     .outcome = XmlOutcome::Appended},
                    AddCaption(place, caption));
  }

  Status AddCaption(const std::string& place, const std::string& caption) {
    const Result<xml::Node> list = RequireElement(layout_.node(), place, "the caption of MainTab");
    if (!list.ok()) return list.error();
    const std::string captions = list.value().Text();
    new_tab_ = CountTabs(captions) + 1;
    return layout_.SetText(list.value(), captions + " | " + caption);
  }

  Status AddFields() {
    const Result<std::vector<xml::Node>> fields =
        description_.SelectAll("/UpdateXFields/Add/XField");
    if (!fields.ok()) return fields.error();
    if (fields.value().empty()) return {};
    const Result<xml::Node> target = RequireElement(layout_.node(), fields_path_, fields_path_);
    for (const xml::Node& field : fields.value()) {
      const XmlOperation step = {.file = update_.layout,
                                 .action = XmlAction::Field,
                                 .node = ChildElement(field, "ID").Text(),
                                 .place = fields_path_,
                                 .outcome = XmlOutcome::Appended};
      Status added =
          TellStep(run_, step, target.ok() ? AddField(field, target.value()) : target.status());
      if (!added.ok()) return added;
    }
    return {};
  }

  Status AddField(xml::Node field, xml::Node target) {
    for (const std::string_view path : kTabNumbers) {
      const Result<xml::Node> number = SelectElement(field, path);
      if (!number.ok()) return number.error();
      if (!number.value() || number.value().Text() != "NewTab") continue;
      Status numbered = description_.SetText(number.value(), std::to_string(new_tab_));
      if (!numbered.ok()) return numbered;
    }
    const Result<xml::Node> copy = layout_.Copy(field);
    return copy.ok() ? layout_.Append(target, copy.value()) : copy.status();
  }

  Status Stamp() {
    return TellStep(run_,
                    {.file = update_.layout,
                     .action = XmlAction::Stamp,
                     .node = update_.version,
                     .place = XFieldsVersionElement(update_.version)},
                    StampXFieldsVersion(layout_, update_.version));
  }

  UpdateRun& run_;
  const Update& update_;
  xml::Document& description_;
  xml::Document& layout_;
  std::string fields_path_;
  std::ptrdiff_t new_tab_ = 0;  ///< 0 without a new tab
};

}  // namespace

Status UpdateXFields(UpdateRun& run, const std::string& description) {
  std::optional<xml::Document> document = LoadXmlFile(run, description);
  if (!document) return {};
  const Result<Update> update = ReadUpdate(run, *document);
  if (!update.ok()) return update.error();
  const std::string& path = update.value().layout;
  if (!TolerateXmlFile(run, path)) return {};

  std::optional<xml::Document> layout = LoadXmlFile(run, path);
  if (!layout) return {};
  if (HasXFieldsVersion(*layout, update.value().version)) {
    run.Tell({.file = path,
              .action = XmlAction::Skip,
              .node = update.value().version,
              .outcome = XmlOutcome::Nothing});
    run.Skip("up to date already: " + path);
    return {};
  }
  run.ShowMsg("Updating XFields - " + path);
  const Status done = LayoutUpdate(run, update.value(), *document, *layout).Run();
  return done.ok() ? done : run.ReportError("Error updating XFields ", done.error());
}

}  // namespace zent
