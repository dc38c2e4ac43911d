#include "contracts/DatabaseContract.h"
#include "database/fakes/MemoryDatabase.h"

namespace zent::testing {
namespace {

/// A database in memory, as a file or as a server.
class MemoryHost final : public ContractHost {
 public:
  explicit MemoryHost(DatabaseKind kind) : kind_(kind) {}
  std::unique_ptr<OpenedDatabase> Open() override {
    return std::make_unique<MemoryDatabase>(world_, "database", kind_);
  }
  void MakeTable(OpenedDatabase& database, const TableDefinition& definition) override {
    ASSERT_TRUE(database.CreateTable(definition).ok());
  }

 private:
  MemoryWorld world_;
  DatabaseKind kind_;
};

DatabaseAdapter InMemory(const char* name, DatabaseKind kind) {
  return {.name = name,
          .make = [kind] { return std::make_unique<MemoryHost>(kind); },
          .types = {FieldType::Boolean, FieldType::Byte, FieldType::Integer, FieldType::Long,
                    FieldType::BigInt, FieldType::Currency, FieldType::Single, FieldType::Double,
                    FieldType::Decimal, FieldType::Date, FieldType::Text, FieldType::Memo,
                    FieldType::Binary, FieldType::LongBinary, FieldType::Guid}};
}

INSTANTIATE_TEST_SUITE_P(Memory, DatabaseContract,
                         ::testing::Values(InMemory("File", DatabaseKind::Access),
                                           InMemory("Server", DatabaseKind::Server)),
                         [](const ::testing::TestParamInfo<DatabaseAdapter>& adapter) {
                           return adapter.param.name;
                         });

}  // namespace
}  // namespace zent::testing
