#include "xmlupdate/MergeTargets.h"

#include "driver/run/PathBounds.h"
#include "driver/run/PathMacros.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

/// Everything before the last "\" of `path`, or before its last "/" when it has no "\".
std::string_view DirectoryPart(std::string_view path) {
  std::size_t end = path.rfind('\\');
  if (end == std::string_view::npos) end = path.rfind('/');
  return end == std::string_view::npos ? std::string_view() : path.substr(0, end);
}

}  // namespace

bool CountsOtherFileName(std::string_view file_name,
                         const std::optional<std::string>& other_file_name) {
  return DirectoryPart(file_name) == "." && other_file_name && !IsBlank(*other_file_name);
}

MergeTargets ResolveTargets(const UpdateRun& run, std::string_view base_path,
                            const std::string& file_name,
                            const std::optional<std::string>& other_file_name) {
  const std::string base(base_path);
  if (DirectoryPart(file_name) != ".") {
    return {base + "Sys\\" + file_name, base + "Customize\\" + file_name};
  }
  const std::string system = run.state.CurrDir + file_name;
  if (!CountsOtherFileName(file_name, other_file_name)) {
    return {system, base + "Customize\\" + GetFileName(file_name)};
  }
  return {system, ExpandPath(run, *other_file_name)};
}

bool TolerateXmlFile(UpdateRun& run, const std::string& path) {
  return LiesInKnownFolder(run, path) ||
         run.Tolerate("XML file outside the known folders: " + path);
}

}  // namespace zent
