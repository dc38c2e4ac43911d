#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "jet/format/ValueText.h"
#include "jet/host/posix/PosixStorage.h"
#include "jet/random/RandomDatabase.h"
#include "jet/readers/Readers.h"
#include "jet/transfer/Compaction.h"

/// Files after random changes of structure and rows, read by the two readers.
namespace zent::jet::testing {
namespace {

constexpr int kSteps = 1000;

std::string PathOf(const std::string& name) {
  const std::filesystem::path path = std::filesystem::path(ZENT_READER_FOLDER) / name;
  std::filesystem::remove(path);
  return path.string();
}

/// Without zeros at the end.
std::string NumberText(double value) {
  std::string text = std::to_string(value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text == "-0" ? "0" : text;
}

struct TextOf {
  std::optional<std::string> operator()(const Null& /*null*/) const { return {}; }
  std::optional<std::string> operator()(bool value) const { return value ? "1" : "0"; }
  std::optional<std::string> operator()(double value) const { return NumberText(value); }
  std::optional<std::string> operator()(const Text& value) const { return value; }
  std::optional<std::string> operator()(const Date& value) const {
    std::string text = DateText(value);
    std::replace(text.begin(), text.end(), 'T', ' ');
    return text;
  }
  template <typename Number>
  std::optional<std::string> operator()(const Number& value) const {
    if constexpr (std::is_integral_v<Number>) return std::to_string(value);
    ADD_FAILURE() << "a value that the readers write in different ways";
    return {};
  }
};

std::vector<ReaderRow> Sorted(std::vector<ReaderRow> rows) {
  std::sort(rows.begin(), rows.end());
  return rows;
}

std::vector<ReaderRow> RowsOf(const ModelTable& table) {
  std::vector<ReaderRow> rows;
  for (const auto& [at, values] : table.rows) {
    ReaderRow& row = rows.emplace_back();
    for (const Value& value : values) row.push_back(std::visit(TextOf(), value));
  }
  return Sorted(std::move(rows));
}

/// Both readers see the rows of the model; how many those are.
std::size_t ExpectRead(const std::string& path, const DatabaseModel& model) {
  std::size_t rows = 0;
  for (const ModelTable& table : model.tables) {
    SCOPED_TRACE(path + " " + table.name);
    const std::vector<ReaderRow> expected = RowsOf(table);
    ExpectRows(Sorted(RowsOfMdbTools(path, table.name)), expected);
    ExpectRows(Sorted(RowsOfMdbReader(path, table.name)), expected);
    rows += expected.size();
  }
  return rows;
}

TEST(IndependentReaders, SeeTheRowsOfTheModelAfterRandomChanges) {
  std::size_t rows = 0;
  for (const unsigned seed : {21U, 22U, 23U, 24U}) {
    SCOPED_TRACE(seed);
    const std::string path = PathOf("random.mdb");
    const std::string compacted = PathOf("compacted.mdb");
    PosixStorage storage;
    RandomDatabase database(storage, path, seed, Palette::Portable);
    for (int step = 0; step < kSteps; ++step) database.Step();
    database.Check();
    ASSERT_FALSE(HasFailure());
    database.Close();
    rows += ExpectRead(path, database.model());
    ASSERT_TRUE(CompactDatabase(storage, {.source = path, .target = compacted}).ok());
    ExpectRead(compacted, database.model());
  }
  EXPECT_GT(rows, 100U);
}

}  // namespace
}  // namespace zent::jet::testing
