#include <fmt/format.h>

#include "app/jetdb/Verbs.h"
#include "base/Text.h"

namespace zent {
namespace {

Result<bool> RunVerb(JetdbHost& host, const JetdbLine& line) {
  switch (line.verb) {
    case JetdbVerb::Info:
      return RunInfo(host, line);
    case JetdbVerb::Tables:
      return RunTables(host, line);
    case JetdbVerb::Dump:
      return RunDump(host, line);
    case JetdbVerb::Verify:
      return RunVerify(host, line);
    case JetdbVerb::Sql:
      return RunSql(host, line);
    case JetdbVerb::Create:
      return RunCreate(host, line);
    case JetdbVerb::Compact:
      return RunCompact(host, line);
  }
  return false;
}

}  // namespace

int RunJetdb(JetdbHost& host, int argc, const char* const* argv) {
  const std::variant<JetdbLine, JetdbLineEnd> parsed = ParseJetdbLine(argc, argv);
  if (const auto* const end = std::get_if<JetdbLineEnd>(&parsed)) {
    if (end->wrong) {
      host.errors() << "jetdb: " << end->text << "\n" << std::flush;
      return kJetdbWrongLine;
    }
    host.output() << end->text << std::flush;
    return kJetdbDone;
  }
  const Result<bool> done = RunVerb(host, std::get<JetdbLine>(parsed));
  host.output() << std::flush;
  if (!done.ok()) {
    host.errors() << fmt::format("jetdb: {}: {}\n", done.error().number,
                                 OneLine(done.error().description))
                  << std::flush;
    return kJetdbFailed;
  }
  if (!host.output().good()) {
    host.errors() << "jetdb: what it prints cannot be written\n" << std::flush;
    return kJetdbFailed;
  }
  return done.value() ? kJetdbDone : kJetdbFailed;
}

}  // namespace zent
