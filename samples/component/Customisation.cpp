#include "component/Customisation.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "app/jetdb/StatementRunner.h"
#include "base/Text.h"

namespace zent {
namespace {

namespace fs = std::filesystem;

fs::path PathOf(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }

std::string Utf8Of(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

/// A folder that is missing or cannot be read records nothing.
std::vector<fs::path> RecordedFiles(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code failed;
  for (fs::directory_iterator at(folder, failed), end; !failed && at != end; at.increment(failed)) {
    if (EqualsIgnoringCase(Utf8Of(at->path().extension()), ".sql")) files.push_back(at->path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

Status RunFile(JetdbHost& host, StatementRunner& runner, const fs::path& file) {
  const Result<std::string> script = host.ReadText(Utf8Of(file));
  if (!script.ok()) return script.status();
  for (const ScriptStatement& statement : SplitScript(script.value())) {
    if (Status done = runner.Run(statement); !done.ok()) {
      RuntimeError error = done.error();
      error.description += " of " + Utf8Of(file.filename());
      return error;
    }
  }
  return {};
}

int Complain(JetdbHost& host, const RuntimeError& error, int exit_code) {
  host.errors() << fmt::format("{}: {}\n", error.number, error.description) << std::flush;
  return exit_code;
}

}  // namespace

int ApplyCustomisations(JetdbHost& host, const std::string& database, const std::string& folder) {
  Result<OpenedDatabase> opened = OpenDatabase(host, database, {}, jet::Sharing::Shared);
  if (!opened.ok()) return Complain(host, opened.error(), kComponentNotOpened);

  // As CSV, a change prints nothing.
  StatementRunner runner(host, opened.value(), RowFormat::Csv, /*single=*/true);
  for (const fs::path& file : RecordedFiles(PathOf(folder))) {
    if (const Status done = RunFile(host, runner, file); !done.ok()) {
      return Complain(host, done.error(), kComponentFailed);
    }
  }
  const Status finished = runner.Finish();
  return finished.ok() ? kComponentDone : Complain(host, finished.error(), kComponentFailed);
}

}  // namespace zent
