#include "app/jetdb/OpenedDatabase.h"

#include "jet/format/JetErrors.h"
#include "jet/sql/execution/ValidationRules.h"
#include "jet/tools/DatabaseFacts.h"

namespace zent {

Result<std::string> PasswordOf(JetdbHost& host, const PasswordSource& source) {
  if (source.text) return *source.text;
  if (!source.environment.empty()) {
    std::optional<std::string> value = host.Variable(source.environment);
    if (value) return *value;
    return jet::JetErrorBecause(jet::kInvalidPassword,
                                "there is no variable " + source.environment);
  }
  if (source.file.empty()) return std::string();
  Result<std::string> text = host.ReadText(source.file);
  if (!text.ok()) return text;
  return text.value().substr(0, text.value().find_first_of("\r\n"));
}

Result<std::unique_ptr<jet::Pager>> OpenPages(JetdbHost& host, const std::string& path,
                                              const std::string& password, jet::Sharing sharing) {
  jet::PagerOptions options;
  options.sharing = sharing;
  options.user = host.user();
  Result<std::unique_ptr<jet::Pager>> pager = jet::Pager::Open(host.storage(), path, options);
  if (!pager.ok()) return pager;
  const Result<jet::FileHeader> header = jet::HeaderOf(*pager.value());
  if (!header.ok()) return header.error();
  if (Status checked = jet::CheckPassword(header.value(), password); !checked.ok()) {
    return checked.error();
  }
  return pager;
}

Result<OpenedDatabase> OpenDatabase(JetdbHost& host, const std::string& path,
                                    const std::string& password, jet::Sharing sharing) {
  Result<std::unique_ptr<jet::Pager>> pager = OpenPages(host, path, password, sharing);
  if (!pager.ok()) return pager.error();
  Result<std::unique_ptr<jet::Catalog>> catalog = jet::Catalog::Open(*pager.value());
  if (!catalog.ok()) return catalog.error();
  // Rows of other tables that a change cascades to are held to their rules as well.
  catalog.value()->SetTableHook([&host](jet::Table& table) {
    jet::EvaluationContext context;
    context.now = host.Now();
    jet::AddValidationRules(table, context);
    return Status();
  });
  return OpenedDatabase{.pager = std::move(pager.value()), .catalog = std::move(catalog.value())};
}

Result<OpenedDatabase> OpenToRead(JetdbHost& host, const JetdbLine& line) {
  const Result<std::string> password = PasswordOf(host, line.password);
  if (!password.ok()) return password.error();
  return OpenDatabase(host, line.file, password.value(),
                      line.exclusive ? jet::Sharing::Exclusive : jet::Sharing::ReadOnly);
}

}  // namespace zent
