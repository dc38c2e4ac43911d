#include "app/Convert.h"

#include <exception>
#include <utility>

#include "base/Text.h"
#include "database/DBFuncs.h"
#include "database/InUseCheck.h"
#include "database/SQLFuncs.h"
#include "dataupdate/DataConversion.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

bool IsFile(const std::string& name) { return ToLower(GetFileExtension(name)) == "mdb"; }

Result<DatabasePtr> OpenOrFail(UpdateRun& run, const std::string& name, OpenRequest request) {
  Result<DatabasePtr> opened = OpenDatabase(run, name, request);
  if (opened.ok() && opened.value() == nullptr) return StandardError(kObjectNotSet);
  return opened;
}

}  // namespace

ConversionRun::ConversionRun(const Platform& platform, UpdateWindow& window, RunObserver& observer,
                             ConversionLine line)
    : run_(platform, window, observer, {}), observer_(observer), line_(std::move(line)) {}

void ConversionRun::Form_Load() {
  run_.SetTitle("ZentUpdate");
  run_.BeginCommand(
      {.keyword = "convert",
       .tokens = {"convert", MaskPasswords(line_.source), MaskPasswords(line_.database)}});
  try {
    if (const Status converted = Convert(); !converted.ok()) {
      run_.Report("Error converting " + MaskPasswords(line_.database), converted.error());
    }
  } catch (const std::exception& defect) {
    run_.Report("Error during conversion",
                {.number = kInvalidProcedureCall, .description = defect.what()});
  }
  run_.EndCommand();
  run_.ShowMsg("");
  run_.ShowMsg(result_ == RunResult::Success ? "Conversion completed." : "Conversion failed.");
  run_.ShowMsg("Click on 'Close' to exit.");
  observer_.OnEnd(result_, false);
}

Status ConversionRun::Convert() {
  run_.ShowMsg("Converting " + MaskPasswords(line_.database));
  if (IsFile(line_.database) && !ClaimDatabase(run_, line_.database)) return {};
  const Result<DatabasePtr> source = OpenOrFail(run_, line_.source, {.read_only = true});
  if (!source.ok()) return source.error();
  // Last, since it tells the dialect of what is then executed.
  const Result<DatabasePtr> korvo = OpenOrFail(run_, line_.database, {.exclusive = true});
  if (!korvo.ok()) return korvo.error();
  ConvertData(run_, *source.value(), *korvo.value());
  if (Status closed = korvo.value()->Close(); !closed.ok()) return closed;
  result_ = RunResult::Success;
  return {};
}

}  // namespace zent
