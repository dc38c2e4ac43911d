#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/samples/SamplePaths.h"
#include "jet/tools/Dump.h"
#include "support/TempFolder.h"

namespace zent::jet::testing {
namespace {

using Json = nlohmann::json;

/// Singles are numbers of fewer digits: both sides as singles.
bool SameValue(const Json& a, const Json& b) {
  if (a == b) return true;
  if (!a.is_number() || !b.is_number()) return false;
  return static_cast<float>(a.get<double>()) == static_cast<float>(b.get<double>());
}

/// The paths of what differs, the first few.
void Compare(const Json& got, const Json& expected, const std::string& place,
             std::vector<std::string>& differences) {
  if (differences.size() >= 5) return;
  const bool same_kind = got.is_object() == expected.is_object() &&
                         got.is_array() == expected.is_array() && got.size() == expected.size();
  if (!same_kind || (!got.is_structured() && !SameValue(got, expected))) {
    differences.push_back(place + ": " + got.dump().substr(0, 300) + " is not " +
                          expected.dump().substr(0, 300));
    return;
  }
  if (got.is_array()) {
    for (std::size_t i = 0; i < got.size(); ++i) {
      Compare(got[i], expected[i], fmt::format("{}/{}", place, i), differences);
    }
  } else if (got.is_object()) {
    for (const auto& [key, value] : expected.items()) {
      Compare(got.contains(key) ? got[key] : Json(), value, fmt::format("{}/{}", place, key),
              differences);
    }
  }
}

std::string DumpOf(const std::filesystem::path& path) {
  MemoryStorage storage;
  storage.Put(kPath, zent::testing::ReadHostFile(path));
  const Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage, kPath, Opened(Sharing::ReadOnly));
  EXPECT_TRUE(pager.ok());
  const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager.value());
  EXPECT_TRUE(catalog.ok());
  std::string text;
  const Status dumped = DumpDatabase(*catalog.value(), {.file_name = path.filename().string()},
                                     [&](std::string_view piece) { text += piece; });
  EXPECT_TRUE(dumped.ok()) << dumped.error().description;
  return text;
}

TEST(SampleDump, EqualsWhatAnotherReaderFound) {
  std::size_t files = 0;
  for (const std::filesystem::path& path : SamplePaths()) {
    SCOPED_TRACE(path.filename().string());
    const std::filesystem::path expected = ExpectedDumpOf(path);
    ASSERT_TRUE(std::filesystem::exists(expected));
    std::vector<std::string> differences;
    Compare(Json::parse(DumpOf(path)), Json::parse(zent::testing::ReadHostFile(expected)), "",
            differences);
    EXPECT_EQ(differences, std::vector<std::string>());
    ++files;
  }
  EXPECT_GT(files, 20U);
}

}  // namespace
}  // namespace zent::jet::testing
