#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "database/port/EngineErrors.h"
#include "database/port/OpenedDatabase.h"

/// What the contracts of the port OpenedDatabase share.
namespace zent::testing {

/// A database that a test has for itself, empty at first. It outlives what is opened.
class ContractHost {
 public:
  virtual ~ContractHost() = default;
  /// Opens it, as another program would when it is open already.
  virtual std::unique_ptr<OpenedDatabase> Open() = 0;
  /// Makes a table with its fields and indexes.
  virtual void MakeTable(OpenedDatabase& database, const TableDefinition& definition) = 0;
};

struct DatabaseAdapter {
  std::string name;
  std::function<std::unique_ptr<ContractHost>()> make;
  std::set<FieldType> types;      ///< of fields whose values come back as they were stored
  bool changes_structure = true;  ///< else each change is kActionNotSupported
  bool has_null_booleans = true;  ///< else a boolean without a value is false
};

inline void PrintTo(const DatabaseAdapter& adapter, std::ostream* out) { *out << adapter.name; }

/// The fields of a row as text with "|" between; a null is "null".
inline std::string RowText(Recordset& rows) {
  std::string text;
  for (const RecordsetField& field : rows.Fields()) {
    const Result<FieldValue> value = rows.Get(field.name);
    if (&field != &rows.Fields().front()) text += "|";
    text += !value.ok()              ? "error: " + value.error().description
            : value.value().IsNull() ? "null"
                                     : value.value().AsText();
  }
  return text;
}

/// An error that an engine raised, by its number; nothing for success.
inline void ExpectFault(const Status& status, int number) {
  ASSERT_FALSE(status.ok());
  EXPECT_EQ(status.number(), number) << status.error().description;
  EXPECT_EQ(status.error().source, kEngineSource);
  EXPECT_NE(status.error().description, "");
}

class DatabaseContract : public ::testing::TestWithParam<DatabaseAdapter> {
 protected:
  void SetUp() override {
    ASSERT_NE(host_, nullptr);
    database_ = host_->Open();
    ASSERT_NE(database_, nullptr);
  }

  OpenedDatabase& database() { return *database_; }
  std::unique_ptr<OpenedDatabase> OpenAnother() { return host_->Open(); }
  Status CloseDatabase() { return database_->Close(); }
  void MakeTable(const TableDefinition& definition) { host_->MakeTable(*database_, definition); }

  static TableDefinition PeopleTable() {
    return {.name = "People",
            .fields = {{.name = "Name", .type = FieldType::Text, .size = 20, .required = true},
                       {.name = "City", .type = FieldType::Text, .size = 10},
                       {.name = "Age", .type = FieldType::Long}},
            .indexes = {{.name = "PrimaryKey",
                         .fields = {{.name = "Name"}},
                         .primary = true,
                         .unique = true,
                         .required = true},
                        {.name = "ByCity", .fields = {{.name = "City"}}}}};
  }

  /// A table of four people with a key.
  void MakePeople() {
    MakeTable(PeopleTable());
    Add("Ann", "Ulm", 1);
    Add("Bob", "Bonn", 2);
    Add("Cid", "Ulm", 3);
    Add("Dee", "K\xC3\xB6ln", 4);
  }

  void Add(const char* name, const char* city, std::int32_t age) {
    const auto rows = OpenToChange("People");
    ASSERT_TRUE(rows->AddNew().ok());
    Set(*rows, "Name", name);
    Set(*rows, "City", city);
    Set(*rows, "Age", age);
    const Status added = rows->Update();
    ASSERT_TRUE(added.ok()) << added.error().description;
  }

  std::unique_ptr<Recordset> OpenToChange(std::string_view source) {
    return Opened(source, RecordsetUse::Change);
  }
  std::unique_ptr<Recordset> OpenToRead(std::string_view source) {
    return Opened(source, RecordsetUse::Read);
  }

  static void Set(Recordset& rows, std::string_view field, const FieldValue& value) {
    const Status set = rows.Set(field, value);
    EXPECT_TRUE(set.ok()) << field << ": " << set.error().description;
  }
  static std::string Text(Recordset& rows, std::string_view field) {
    const Result<FieldValue> value = rows.Get(field);
    return value.ok() ? value.value().AsText() : "error: " + value.error().description;
  }

  /// All rows of a table or SELECT as text.
  std::vector<std::string> Rows(std::string_view source) { return RowsOf(*database_, source); }
  static std::vector<std::string> RowsOf(OpenedDatabase& database, std::string_view source) {
    const auto opened = database.OpenRecordset(source, RecordsetUse::Read);
    if (!opened.ok()) return {"error: " + opened.error().description};
    std::vector<std::string> texts;
    while (!opened.value()->AtEnd()) {
      texts.push_back(RowText(*opened.value()));
      if (!opened.value()->MoveNext().ok()) return {"error: MoveNext"};
    }
    return texts;
  }

 private:
  std::unique_ptr<Recordset> Opened(std::string_view source, RecordsetUse use) {
    Result<std::unique_ptr<Recordset>> rows = database_->OpenRecordset(source, use);
    if (rows.ok()) return std::move(rows.value());
    ADD_FAILURE() << source << ": " << rows.error().description;
    return nullptr;
  }

  std::unique_ptr<ContractHost> host_ = GetParam().make();
  std::unique_ptr<OpenedDatabase> database_;
};

}  // namespace zent::testing
