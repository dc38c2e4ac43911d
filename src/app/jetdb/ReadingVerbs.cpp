#include <fmt/format.h>

#include <algorithm>

#include "app/jetdb/OpenedDatabase.h"
#include "app/jetdb/RowPrinter.h"
#include "app/jetdb/Verbs.h"
#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/format/ValueText.h"
#include "jet/tools/DatabaseFacts.h"
#include "jet/tools/Dump.h"
#include "jet/tools/Info.h"
#include "jet/tools/Verify.h"

namespace zent {
namespace {

/// "C:\Data\Korvo.mdb" and "/data/Korvo.mdb" are named Korvo.mdb.
std::string NameOfFile(const std::string& path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

void PrintFact(JetdbHost& host, std::string_view name, const std::string& value) {
  host.output() << fmt::format("{:<14}{}\n", fmt::format("{}:", name), OneLine(value));
}

void PrintHeader(JetdbHost& host, const jet::FileHeader& header, const std::string& format) {
  const bool jet3 = header.version == jet::JetVersion::Jet3;
  PrintFact(host, "version", jet3 ? "Jet 3 (Access 97)" : "Jet 4 (Access 2000 to 2003)");
  if (!format.empty()) PrintFact(host, "format", format);
  PrintFact(host, "collation",
            jet3 ? fmt::format("{}", header.collation.lcid)
                 : fmt::format("{} version {}", header.collation.lcid, header.collation.version));
  PrintFact(host, "code page", fmt::format("{}", header.code_page));
  if (!jet3) PrintFact(host, "created", jet::DateText(header.creation_date));
  PrintFact(host, "password", header.password.empty() ? "no" : "yes");
  PrintFact(host, "encrypted", header.database_key == 0 ? "no" : "yes");
}

void PrintCounts(JetdbHost& host, const jet::DatabaseInfo& info) {
  PrintFact(host, "pages", fmt::format("{} of {} bytes", info.pages, info.page_size));
  PrintFact(host, "tables",
            fmt::format("{} ({} more of the system, {} linked)", info.tables, info.system_tables,
                        info.linked_tables));
  PrintFact(host, "rows", fmt::format("{}", info.rows));
  PrintFact(host, "queries", fmt::format("{}", info.queries));
  PrintFact(host, "relationships", fmt::format("{}", info.relationships));
}

/// Those that had the file open before we had.
void PrintUsers(JetdbHost& host, const std::string& path) {
  const Result<std::vector<jet::User>> users = jet::LockFile::UsersOf(host.storage(), path);
  if (!users.ok()) return PrintFact(host, "open by", "unknown: " + users.error().description);
  if (users.value().empty()) return PrintFact(host, "open by", "nobody");
  for (const jet::User& user : users.value()) {
    PrintFact(host, "open by",
              fmt::format("{} on {}{}", user.name, user.computer,
                          user.foreign ? " (a program that does not take part in our locks)" : ""));
  }
}

}  // namespace

Result<bool> RunInfo(JetdbHost& host, const JetdbLine& line) {
  PrintFact(host, "file", line.file);
  PrintUsers(host, line.file);
  const Result<OpenedDatabase> opened = OpenToRead(host, line);
  if (!opened.ok()) return opened.error();
  const Result<jet::DatabaseInfo> info = jet::ReadInfo(*opened.value().catalog);
  if (!info.ok()) return info.error();
  PrintHeader(host, info.value().header, info.value().format);
  PrintCounts(host, info.value());
  return true;
}

Result<bool> RunTables(JetdbHost& host, const JetdbLine& line) {
  const Result<OpenedDatabase> opened = OpenToRead(host, line);
  if (!opened.ok()) return opened.error();
  const Result<std::vector<jet::TableInfo>> tables =
      jet::ListTables(*opened.value().catalog, line.all);
  if (!tables.ok()) return tables.error();
  RowPrinter printer(host.output(), line.format);
  printer.Begin({"name", "kind", "columns", "indexes", "rows", "source", "problem"});
  bool readable = true;
  for (const jet::TableInfo& table : tables.value()) {
    // Beyond what a file can hold there is no number.
    const auto count = [](std::uint64_t number) {
      return jet::Value(static_cast<std::int32_t>(std::min<std::uint64_t>(number, INT32_MAX)));
    };
    const auto text = [](const std::string& one) {
      return one.empty() ? jet::Value(jet::Null()) : jet::Value(one);
    };
    printer.Add({jet::Value(table.name), jet::Value(table.kind), count(table.columns),
                 count(table.indexes), count(table.rows), text(table.source), text(table.problem)});
    readable = readable && table.problem.empty();
  }
  printer.End();
  return readable;
}

Result<bool> RunDump(JetdbHost& host, const JetdbLine& line) {
  const Result<OpenedDatabase> opened = OpenToRead(host, line);
  if (!opened.ok()) return opened.error();
  const Status dumped = jet::DumpDatabase(*opened.value().catalog,
                                          {.file_name = NameOfFile(line.file),
                                           .table = line.table,
                                           .rows = !line.no_rows,
                                           .whole_values = line.whole_values},
                                          [&](std::string_view text) { host.output() << text; });
  if (!dumped.ok()) return dumped.error();
  return true;
}

Result<bool> RunVerify(JetdbHost& host, const JetdbLine& line) {
  const Result<std::string> password = PasswordOf(host, line.password);
  if (!password.ok()) return password.error();
  const Result<std::unique_ptr<jet::Pager>> pager =
      OpenPages(host, line.file, password.value(),
                line.exclusive ? jet::Sharing::Exclusive : jet::Sharing::ReadOnly);
  if (!pager.ok()) return pager.error();
  const Result<jet::VerifySummary> summary = jet::VerifyDatabase(
      *pager.value(), [&](const std::string& fault) { host.output() << fault << "\n"; });
  if (!summary.ok()) return summary.error();
  const jet::VerifySummary& seen = summary.value();
  if (!line.quiet) {
    host.output() << fmt::format(
        "{} pages ({} free, {} used by nothing), {} tables, {} rows, {} index entries: {}\n",
        seen.pages, seen.free_pages, seen.lost_pages, seen.tables, seen.rows, seen.index_entries,
        seen.faults == 0 ? std::string("no faults") : fmt::format("{} faults", seen.faults));
  }
  return seen.faults == 0;
}

}  // namespace zent
