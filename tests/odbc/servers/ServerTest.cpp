#include "odbc/servers/ServerTest.h"

#include <fmt/format.h>

#include <utility>

#include "odbc/LoadOdbc.h"

namespace zent::odbc {
namespace {

struct ToText {
  std::string operator()(std::monostate) const { return "null"; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return fmt::format("{}", value); }
  std::string operator()(const Decimal& value) const { return value.digits; }
  std::string operator()(const std::string& value) const { return value; }
  std::string operator()(const Bytes& value) const {
    std::string hex;
    for (const char c : value.bytes) hex += fmt::format("{:02x}", static_cast<unsigned char>(c));
    return hex;
  }
  std::string operator()(const DateTime& value) const {
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:06}", value.year, value.month,
                       value.day, value.hour, value.minute, value.second, value.nanoseconds / 1000);
  }
};

}  // namespace

std::string ConnectTextFor(std::string_view data_source) {
  return fmt::format("DSN={};UID=korvo;PWD=Geheim-Wort7;", data_source);
}

std::unique_ptr<OdbcEnvironment> MakeEnvironment() {
  Result<std::unique_ptr<OdbcCalls>> calls = LoadOdbc();
  if (!calls.ok()) {
    ADD_FAILURE() << calls.error().description;
    return nullptr;
  }
  Result<std::unique_ptr<OdbcEnvironment>> made = OdbcEnvironment::Create(std::move(calls.value()));
  if (made.ok()) return std::move(made.value());
  ADD_FAILURE() << made.error().description;
  return nullptr;
}

std::string ValueText(const OdbcValue& value) { return std::visit(ToText(), value); }

std::string RowText(OdbcStatement& statement) {
  std::string text;
  for (std::size_t at = 0; at < statement.columns().size(); ++at) {
    const Result<OdbcValue> value = statement.Value(at);
    if (at > 0) text += "|";
    text += value.ok() ? ValueText(value.value()) : "error: " + value.error().description;
  }
  return text;
}

void ServerTest::SetUp() {
  environment_ = MakeEnvironment();
  ASSERT_NE(environment_, nullptr);
  connection_ = Connect();
  ASSERT_NE(connection_, nullptr);
}

std::unique_ptr<OdbcConnection> ServerTest::Connect() {
  Result<std::unique_ptr<OdbcConnection>> connected =
      environment_->Connect(ConnectTextFor(GetParam()), kLoginSeconds);
  if (connected.ok()) return std::move(connected.value());
  ADD_FAILURE() << connected.error().description;
  return nullptr;
}

std::int64_t ServerTest::Run(std::string_view sql, std::span<const OdbcParameter> values) {
  const Result<std::int64_t> rows = server().Execute(sql, values);
  if (!rows.ok()) ADD_FAILURE() << sql.substr(0, 200) << ": " << rows.error().description;
  return rows.value_or(-1);
}

std::vector<std::string> ServerTest::Rows(std::string_view sql,
                                          std::span<const OdbcParameter> values) {
  std::vector<std::string> rows;
  Result<OdbcStatement> query = server().Query(sql, values);
  if (!query.ok()) return {"error: " + query.error().description};
  while (true) {
    const Result<bool> there = query.value().Next();
    if (!there.ok()) return {"error: " + there.error().description};
    if (!there.value()) return rows;
    rows.push_back(RowText(query.value()));
  }
}

void ServerTest::MakeTable(const std::string& name, const std::string& columns) {
  Run("DROP TABLE IF EXISTS " + name);
  Run("CREATE TABLE " + name + " " + columns);
}

}  // namespace zent::odbc
