// What the import of list values costs: 100,000 lines, one in ten of them new, into a `Lookup` of
// 100,000 rows, with an index over list and value and without. Linear when a line of 100,000 costs
// what one of 25,000 does.
#include <cstdlib>
#include <string>

#include "Ratio.h"
#include "database/engines/jet/JetEngine.h"
#include "dataupdate/LookupImport.h"
#include "fakes/run/RunBuilder.h"
#include "jet/fakes/MemoryStorage.h"

namespace {

constexpr int kRows = 100'000;
constexpr const char* kKorvo = R"(D:\Data\Korvo.mdb)";

void Must(bool done) {
  if (!done) std::abort();
}

std::string ItemOf(int number) {
  return "List " + std::to_string(number % 100) + ",Value " + std::to_string(number);
}

void FillLookup(zent::JetEngine& engine, bool indexed) {
  auto database = std::move(engine.Open({.path = kKorvo, .exclusive = true}).value());
  Must(database
           ->Execute("CREATE TABLE Lookup (LookupFieldName TEXT(60), LookupValue TEXT(80), "
                     "LookupDesc TEXT(100), DisplayOrder TEXT(10))")
           .ok());
  if (indexed) {
    Must(database->Execute("CREATE INDEX ByValue ON Lookup (LookupFieldName, LookupValue)").ok());
  }
  Must(database->BeginTransaction().ok());
  const auto rows =
      std::move(database->OpenRecordset("Lookup", zent::RecordsetUse::Change).value());
  for (int i = 0; i < kRows; ++i) {
    const std::string item = ItemOf(i);
    const std::size_t comma = item.find(',');
    Must(rows->AddNew().ok() && rows->Set("LookupFieldName", item.substr(0, comma)).ok() &&
         rows->Set("LookupValue", item.substr(comma + 1)).ok() && rows->Update().ok());
  }
  Must(database->Commit().ok());
}

/// Seconds for the import of `lines` lines.
double TimeOfImport(int lines, bool indexed) {
  zent::jet::testing::MemoryStorage storage;
  {
    zent::jet::Workspace workspace(storage);
    Must(workspace.CreateDatabase(kKorvo).ok());
  }
  zent::JetEngine engine(storage, {});
  FillLookup(engine, indexed);

  zent::testing::RunBuilder given;
  given.run.database.access = &engine;
  given.run.state.KorvoDataBaseName = kKorvo;
  std::string text;
  for (int i = 0; i < lines; ++i) text += ItemOf(i % 10 == 0 ? kRows + i : i) + "\r\n";
  given.machine.files.PutFile(R"(D:\Package\Items.txt)", text);
  const zent::TokenList tokens = {"importlookup", R"(D:\Package\Items.txt)"};
  return zent::bench::TimeOf([&] {
    Must(zent::ImportLookupItems(given.run, tokens).ok());
    Must(!given.run.state.ErrorOccurred);
  });
}

void Measure(const char* what, bool indexed) {
  const double few = TimeOfImport(25'000, indexed);
  const double many = TimeOfImport(100'000, indexed);
  std::printf("importlookup, %s: %.2f s for 100,000 lines into 100,000 rows\n", what, many);
  zent::bench::PrintRatio("  time of 100,000 lines against 25,000", many / few, "4 is linear");
}

}  // namespace

int main() {
  Measure("with an index", true);
  Measure("without one", false);
  return 0;
}
