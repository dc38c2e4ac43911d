#include "jet/readers/Readers.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

namespace zent::jet::testing {
namespace {

constexpr const char* kNullMark = "<null>";

std::string OutputOf(const std::string& command) {
  std::string output;
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  if (pipe == nullptr) return output;
  char buffer[4096];
  while (const std::size_t count = fread(buffer, 1, sizeof buffer, pipe.get())) {
    output.append(buffer, count);
  }
  return output;
}

std::vector<std::string> SplitAt(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find(separator, begin)) != std::string::npos;
       begin = end + 1) {
    parts.push_back(text.substr(begin, end - begin));
  }
  parts.push_back(text.substr(begin));
  return parts;
}

}  // namespace

std::vector<ReaderRow> RowsOfMdbTools(const std::string& path, const std::string& table) {
  const std::string output =
      OutputOf(std::string(ZENT_MDB_EXPORT) + " -H -Q -d '\t' -0 '" + kNullMark +
               "' -T '%Y-%m-%d %H:%M:%S' '" + path + "' '" + table + "'");
  std::vector<ReaderRow> rows;
  for (const std::string& line : SplitAt(output, '\n')) {
    if (line.empty()) continue;
    ReaderRow& row = rows.emplace_back();
    for (std::string& field : SplitAt(line, '\t')) {
      if (field == kNullMark) {
        row.emplace_back();
      } else {
        row.emplace_back(std::move(field));
      }
    }
  }
  return rows;
}

std::vector<ReaderRow> RowsOfMdbReader(const std::string& path, const std::string& table) {
  const std::string output =
      OutputOf("cd '" ZENT_READER_FOLDER "' && '" ZENT_NODE "' '" ZENT_READER_SCRIPT "' '" + path +
               "' '" + table + "'");
  std::vector<ReaderRow> rows;
  for (const std::string& line : SplitAt(output, '\n')) {
    if (line.empty()) continue;
    ReaderRow& row = rows.emplace_back();
    for (const nlohmann::json& field : nlohmann::json::parse(line)) {
      if (field.is_null()) {
        row.emplace_back();
      } else {
        row.emplace_back(field.get<std::string>());
      }
    }
  }
  return rows;
}

void ExpectRows(const std::vector<ReaderRow>& found, const std::vector<ReaderRow>& expected) {
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    SCOPED_TRACE(i);
    ASSERT_EQ(found[i].size(), expected[i].size());
    for (std::size_t k = 0; k < found[i].size(); ++k) {
      ASSERT_EQ(found[i][k].value_or(kNullMark), expected[i][k].value_or(kNullMark)) << k;
    }
  }
}

}  // namespace zent::jet::testing
