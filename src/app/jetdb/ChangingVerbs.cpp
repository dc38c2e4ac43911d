#include "app/jetdb/StatementRunner.h"
#include "app/jetdb/Verbs.h"
#include "jet/schema/NewDatabase.h"
#include "jet/transfer/Compaction.h"

namespace zent {
namespace {

Result<std::vector<ScriptStatement>> StatementsOf(JetdbHost& host, const JetdbLine& line) {
  std::string script;
  for (const std::string& statement : line.statements) script += statement + "\n;";
  if (line.statements.empty()) {
    Result<std::string> text = host.ReadText(line.script.empty() ? "-" : line.script);
    if (!text.ok()) return text.error();
    script = std::move(text.value());
  }
  return SplitScript(script);
}

jet::Sharing SharingOf(const JetdbLine& line) {
  if (line.exclusive) return jet::Sharing::Exclusive;
  return line.read_only ? jet::Sharing::ReadOnly : jet::Sharing::Shared;
}

}  // namespace

Result<bool> RunSql(JetdbHost& host, const JetdbLine& line) {
  const Result<std::vector<ScriptStatement>> statements = StatementsOf(host, line);
  if (!statements.ok()) return statements.error();
  const Result<std::string> password = PasswordOf(host, line.password);
  if (!password.ok()) return password.error();
  Result<OpenedDatabase> opened = OpenDatabase(host, line.file, password.value(), SharingOf(line));
  if (!opened.ok()) return opened.error();
  StatementRunner runner(host, opened.value(), line.format, line.single_transaction);
  for (const ScriptStatement& statement : statements.value()) {
    if (Status done = runner.Run(statement); !done.ok()) return done.error();
  }
  if (Status finished = runner.Finish(); !finished.ok()) return finished.error();
  return true;
}

Result<bool> RunCreate(JetdbHost& host, const JetdbLine& line) {
  const Result<std::string> password = PasswordOf(host, line.password);
  if (!password.ok()) return password.error();
  const Status created = jet::CreateDatabase(host.storage(), line.file,
                                             {.password = password.value(), .created = host.Now()});
  if (!created.ok()) return created.error();
  return true;
}

Result<bool> RunCompact(JetdbHost& host, const JetdbLine& line) {
  const Result<std::string> password = PasswordOf(host, line.password);
  if (!password.ok()) return password.error();
  jet::Compaction compaction = {
      .source = line.file, .target = line.target, .password = password.value()};
  if (line.no_password) compaction.new_password = "";
  if (line.new_password.given()) {
    const Result<std::string> next = PasswordOf(host, line.new_password);
    if (!next.ok()) return next.error();
    compaction.new_password = next.value();
  }
  if (Status done = jet::CompactDatabase(host.storage(), compaction); !done.ok()) {
    return done.error();
  }
  return true;
}

}  // namespace zent
