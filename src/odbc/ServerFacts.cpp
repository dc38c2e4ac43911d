#include "odbc/ServerFacts.h"

#include <algorithm>
#include <vector>

#include "base/Text.h"
#include "odbc/OdbcSession.h"
#include "odbc/WideText.h"

namespace zent::odbc {
namespace {

constexpr std::size_t kTextUnits = 512;

Status ReadText(OdbcSession& session, const OdbcHandle& connection, SQLUSMALLINT fact,
                std::string& text) {
  std::vector<SQLWCHAR> buffer(kTextUnits);
  SQLSMALLINT bytes = 0;
  const SQLRETURN code =
      session.calls.get_info(connection.get(), fact, buffer.data(),
                             static_cast<SQLSMALLINT>(buffer.size() * sizeof(SQLWCHAR)), &bytes);
  if (Status read = session.Check(connection, code); !read.ok()) return read;
  const auto end = std::find(buffer.begin(), buffer.end(), 0);
  text = FromWide(buffer, static_cast<std::size_t>(end - buffer.begin()));
  return {};
}

Status ReadNumber(OdbcSession& session, const OdbcHandle& connection, SQLUSMALLINT fact,
                  unsigned& number) {
  // Some of these facts have 16 bits and some 32: the machines it runs on put the low ones first.
  SQLUINTEGER value = 0;
  const SQLRETURN code =
      session.calls.get_info(connection.get(), fact, &value, sizeof(value), nullptr);
  if (Status read = session.Check(connection, code); !read.ok()) return read;
  number = value;
  return {};
}

}  // namespace

Result<ServerFacts> ReadServerFacts(OdbcSession& session, const OdbcHandle& connection) {
  ServerFacts facts;
  const struct {
    SQLUSMALLINT fact;
    std::string& text;
  } texts[] = {
      {SQL_DBMS_NAME, facts.dbms_name},
      {SQL_DBMS_VER, facts.dbms_version},
      {SQL_DRIVER_NAME, facts.driver_name},
      {SQL_DATABASE_NAME, facts.database},
      {SQL_USER_NAME, facts.user},
      {SQL_DATA_SOURCE_NAME, facts.data_source},
      {SQL_IDENTIFIER_QUOTE_CHAR, facts.identifier_quote},
      {SQL_SEARCH_PATTERN_ESCAPE, facts.pattern_escape},
  };
  for (const auto& row : texts) {
    if (Status read = ReadText(session, connection, row.fact, row.text); !read.ok()) {
      return read.error();
    }
  }
  // A blank says that names cannot be quoted.
  facts.identifier_quote = TrimBlanks(facts.identifier_quote);

  unsigned transactions = 0;
  Status read = ReadNumber(session, connection, SQL_TXN_CAPABLE, transactions);
  if (read.ok()) {
    read =
        ReadNumber(session, connection, SQL_MAX_CONCURRENT_ACTIVITIES, facts.concurrent_statements);
  }
  unsigned schemas = 0;
  if (read.ok()) read = ReadNumber(session, connection, SQL_SCHEMA_USAGE, schemas);
  if (!read.ok()) return read.error();
  facts.has_schemas = schemas != 0;
  facts.has_transactions = transactions != SQL_TC_NONE;
  return facts;
}

}  // namespace zent::odbc
