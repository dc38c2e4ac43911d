#include "database/engines/odbc/servers/ServerDatabase.h"

#include <fmt/format.h>

#include <random>

#include "contracts/ContractDatabase.h"
#include "odbc/LoadOdbc.h"

namespace zent::testing {

std::unique_ptr<OdbcEngine> MakeOdbcEngine() {
  return std::make_unique<OdbcEngine>([]() -> Result<std::unique_ptr<odbc::OdbcEnvironment>> {
    Result<std::unique_ptr<odbc::OdbcCalls>> calls = odbc::LoadOdbc();
    if (!calls.ok()) return calls.error();
    return odbc::OdbcEnvironment::Create(std::move(calls.value()));
  });
}

std::string LoginText() { return fmt::format("UID={};PWD={};", kServerUser, kServerPassword); }

std::vector<std::string> RowTexts(OpenedDatabase& database, const std::string& query) {
  const auto opened = database.OpenRecordset(query, RecordsetUse::Read);
  if (!opened.ok()) return {"error: " + opened.error().description};
  std::vector<std::string> texts;
  while (!opened.value()->AtEnd()) {
    texts.push_back(RowText(*opened.value()));
    if (const Status moved = opened.value()->MoveNext(); !moved.ok()) {
      return {"error: " + moved.error().description};
    }
  }
  return texts;
}

ServerDatabase::ServerDatabase(std::string_view data_source) : engine_(MakeOdbcEngine()) {
  std::random_device random;
  name_ = fmt::format("test_{:08x}{:08x}", random(), random());
  Result<std::unique_ptr<OpenedDatabase>> opened =
      engine_->Connect(fmt::format("DSN={};{}", data_source, LoginText()), kLoginSeconds);
  if (!opened.ok()) {
    ADD_FAILURE() << opened.error().description;
    return;
  }
  keeper_ = std::move(opened.value());
  Run("CREATE DATABASE " + name_);
  Run("USE " + name_);
  place_ = fmt::format("DSN={};DATABASE={};", data_source, name_);
}

ServerDatabase::~ServerDatabase() {
  if (keeper_ != nullptr) Run("DROP DATABASE " + name_);
}

std::unique_ptr<OpenedDatabase> ServerDatabase::Open() {
  Result<std::unique_ptr<OpenedDatabase>> opened = engine_->Connect(connect_text(), kLoginSeconds);
  if (opened.ok()) return std::move(opened.value());
  ADD_FAILURE() << opened.error().description;
  return nullptr;
}

void ServerDatabase::Run(const std::string& statement) {
  ASSERT_NE(keeper_, nullptr);
  const Result<std::int64_t> done = keeper_->Execute(statement);
  EXPECT_TRUE(done.ok()) << statement << ": " << done.error().description;
}

}  // namespace zent::testing
