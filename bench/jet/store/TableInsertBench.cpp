// 100,000 rows inserted one by one into a table with a text primary key, in one transaction with a
// flushed commit, against SQLite with the same rows and the same durability.
#include <sqlite3.h>

#include <filesystem>

#include "Ratio.h"
#include "jet/store/PeopleFile.h"

namespace {

using zent::jet::Value;
using zent::jet::bench::kRows;
using zent::jet::bench::PeopleFile;

bool Run(sqlite3* database, const char* sql) {
  return sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

/// Binds the values of Person to an INSERT statement and runs it.
bool InsertRow(sqlite3_stmt* insert, std::int32_t number) {
  const std::vector<Value> row = zent::jet::bench::Person(number);
  const std::string& code = std::get<std::string>(row[PeopleFile::Code]);
  const std::string& name = std::get<std::string>(row[PeopleFile::Name]);
  sqlite3_bind_int(insert, 1, number);
  sqlite3_bind_text(insert, 2, code.c_str(), static_cast<int>(code.size()), SQLITE_STATIC);
  sqlite3_bind_text(insert, 3, name.c_str(), static_cast<int>(name.size()), SQLITE_STATIC);
  sqlite3_bind_double(insert, 4, std::get<zent::jet::Date>(row[PeopleFile::Born]).days);
  sqlite3_bind_int64(insert, 5,
                     std::get<zent::jet::Currency>(row[PeopleFile::Amount]).ten_thousandths);
  const bool done = sqlite3_step(insert) == SQLITE_DONE;
  sqlite3_reset(insert);
  return done;
}

/// SQLite's table of the same rows, its cache as large as ours.
class SqlitePeople {
 public:
  SqlitePeople() {
    const std::string path = (folder_.path() / "people.sqlite").string();
    ok_ = sqlite3_open(path.c_str(), &database_) == SQLITE_OK &&
          Run(database_, "PRAGMA synchronous=FULL; PRAGMA cache_size=-65536;") &&
          Run(database_,
              "CREATE TABLE People (Id INTEGER, Code TEXT PRIMARY KEY, Name TEXT, Born REAL,"
              " Amount INTEGER)");
  }
  ~SqlitePeople() { sqlite3_close(database_); }
  SqlitePeople(const SqlitePeople&) = delete;
  SqlitePeople& operator=(const SqlitePeople&) = delete;

  bool Fill() {
    sqlite3_stmt* insert = nullptr;
    bool ok = ok_ && Run(database_, "BEGIN") &&
              sqlite3_prepare_v2(database_, "INSERT INTO People VALUES (?, ?, ?, ?, ?)", -1,
                                 &insert, nullptr) == SQLITE_OK;
    for (std::int32_t number = 0; ok && number < kRows; ++number) ok = InsertRow(insert, number);
    sqlite3_finalize(insert);
    return ok && Run(database_, "COMMIT");
  }

 private:
  zent::testing::TempFolder folder_;
  sqlite3* database_ = nullptr;
  bool ok_ = false;
};

/// The best of three tables, made anew each; making them is not timed.
template <typename Make, typename Fill>
double BestFill(const Make& make, const Fill& fill) {
  double best = 1e9;
  for (int i = 0; i < 3; ++i) {
    auto people = make();
    best = std::min(best, zent::bench::TimeOf([&] { fill(*people); }));
  }
  return best;
}

}  // namespace

int main() {
  bool whole = true;
  const double ours = BestFill([] { return std::make_unique<PeopleFile>(PeopleFile::Code); },
                               [&](PeopleFile& people) {
                                 whole = whole && people.Fill(kRows);
                                 people.file().Commit();
                               });
  const double theirs = BestFill([] { return std::make_unique<SqlitePeople>(); },
                                 [&](SqlitePeople& people) { whole = whole && people.Fill(); });
  zent::bench::PrintRatio("100,000 inserts, text primary key: time against SQLite", ours / theirs,
                          "at most 3");
  return whole ? 0 : 1;
}
