#include "contracts/DatabaseContract.h"
#include "database/engines/jet/HostStorage.h"
#include "database/engines/jet/JetEngine.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

/// An Access file on disk.
class FileHost final : public ContractHost {
 public:
  FileHost() {
    jet::Workspace workspace(*storage_);
    const auto created = workspace.CreateDatabase(path_);
    EXPECT_TRUE(created.ok()) << created.error().description;
  }

  std::unique_ptr<OpenedDatabase> Open() override {
    Result<std::unique_ptr<OpenedDatabase>> opened = engine_.Open({.path = path_});
    if (opened.ok()) return std::move(opened.value());
    ADD_FAILURE() << opened.error().description;
    return nullptr;
  }
  void MakeTable(OpenedDatabase& database, const TableDefinition& definition) override {
    const Status made = database.CreateTable(definition);
    ASSERT_TRUE(made.ok()) << made.error().description;
  }

 private:
  TempFolder folder_;
  std::unique_ptr<jet::Storage> storage_ = HostStorage();
  std::string path_ = (folder_.path() / "Contract.mdb").string();
  JetEngine engine_{*storage_, {}};
};

const DatabaseAdapter kFile = {
    .name = "File",
    .make = [] { return std::make_unique<FileHost>(); },
    .types = {FieldType::Boolean, FieldType::Byte, FieldType::Integer, FieldType::Long,
              FieldType::Currency, FieldType::Single, FieldType::Double, FieldType::Decimal,
              FieldType::Date, FieldType::Text, FieldType::Memo, FieldType::Binary,
              FieldType::LongBinary, FieldType::Guid},
    .has_null_booleans = false};

INSTANTIATE_TEST_SUITE_P(Jet, DatabaseContract, ::testing::Values(kFile),
                         [](const ::testing::TestParamInfo<DatabaseAdapter>& adapter) {
                           return adapter.param.name;
                         });

}  // namespace
}  // namespace zent::testing
