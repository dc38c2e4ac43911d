#include "dataupdate/DatabaseMachine.h"

#include <gtest/gtest.h>

namespace zent::testing {
namespace {

void Create(jet::Storage& storage, const char* path) {
  jet::Workspace workspace(storage);
  const auto created = workspace.CreateDatabase(path);
  ASSERT_TRUE(created.ok()) << created.error().description;
}

}  // namespace

DatabaseMachine::DatabaseMachine() : engine(storage, {}) {
  Create(storage, kKorvo);
  Create(storage, kSource);
  korvo = std::move(engine.Open({.path = kKorvo}).value());
  source = std::move(engine.Open({.path = kSource}).value());
  run.database.access = &engine;
  run.database.kind = "MSAccess";
  run.state.KorvoDataBaseName = kKorvo;
}

void DatabaseMachine::Execute(OpenedDatabase& database,
                              const std::vector<std::string>& statements) {
  for (const std::string& statement : statements) {
    const auto done = database.Execute(statement);
    ASSERT_TRUE(done.ok()) << statement << ": " << done.error().description;
  }
}

std::vector<std::string> DatabaseMachine::Rows(OpenedDatabase& database, std::string_view query) {
  const auto opened = database.OpenRecordset(query, RecordsetUse::Read);
  if (!opened.ok()) return {opened.error().description};
  Recordset& rows = *opened.value();
  std::vector<std::string> texts;
  while (!rows.AtEnd()) {
    std::string text;
    for (const RecordsetField& field : rows.Fields()) {
      const auto value = rows.Get(field.name);
      EXPECT_TRUE(value.ok());
      if (!text.empty() || &field != &rows.Fields().front()) text += "|";
      text += value.value().IsNull() ? "null" : value.value().AsText();
    }
    texts.push_back(text);
    EXPECT_TRUE(rows.MoveNext().ok());
  }
  return texts;
}

}  // namespace zent::testing
