#include "jet/store/PeopleFile.h"

#include "jet/fakes/TableBuilder.h"

namespace zent::jet::bench {
namespace {

using testing::StoreFile;
using testing::TableBuilder;

constexpr std::int16_t kTableType = 1;

/// MSysObjects, with the columns that readers of other makes look at, and a row for `table`.
void WriteCatalog(StoreFile& file, const TableStore& table) {
  const std::unique_ptr<TableStore> objects = TableBuilder(file)
                                                  .Column("Id", ColumnType::Long)
                                                  .Column("Name", ColumnType::Text, 128)
                                                  .Column("Type", ColumnType::Int)
                                                  .Column("Flags", ColumnType::Long)
                                                  .Column("LvProp", ColumnType::Ole)
                                                  .At(kObjectsPage)
                                                  .Build();
  std::vector<Value> row = {static_cast<std::int32_t>(table.page()), "People", kTableType,
                            std::int32_t{0}, Null()};
  static_cast<void>(objects->Insert(row));
}

}  // namespace

PeopleFile::PeopleFile(Position key)
    : path_(folder_.Put("People.mdb", testing::EmptyStoreFile()).string()),
      file_(std::make_unique<StoreFile>(storage_, path_, 16384)),
      table_(TableBuilder(*file_)
                 .AutoNumber("Id")
                 .Column("Code", ColumnType::Text, 100)
                 .Compressed()
                 .Column("Name", ColumnType::Text, 200)
                 .Compressed()
                 .Column("Born", ColumnType::Date)
                 .Column("Amount", ColumnType::Currency)
                 .Index({key}, kUniqueIndex | kRequiredIndex, true)
                 .Build()),
      page_(table_->page()) {
  WriteCatalog(*file_, *table_);
  file_->Commit();
}

bool PeopleFile::Fill(std::int32_t rows) {
  for (std::int32_t number = 0; number < rows; ++number) {
    std::vector<Value> row = Person(number);
    if (!table_->Insert(row).ok()) return false;
  }
  return true;
}

void PeopleFile::Close() {
  file_->Commit();
  table_.reset();
  file_.reset();
}

std::string CodeOf(std::int32_t number) {
  // A step that has no divisor in common with the number of rows visits each code once.
  constexpr std::int64_t kStep = 61'803;
  const std::int64_t code = (number * kStep) % kRows;
  return "CM" + std::to_string(10'000'000 + code);
}

std::vector<Value> Person(std::int32_t number) {
  return {Null(), CodeOf(number), "Contact number " + std::to_string(number) + " of the list",
          Date{static_cast<double>(number % 36'500) + 0.25},
          Currency{std::int64_t{number} * 12'345}};
}

}  // namespace zent::jet::bench
