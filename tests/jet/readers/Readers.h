#pragma once

#include <optional>
#include <string>
#include <vector>

/// Two programs that read databases and share nothing with the engine.
namespace zent::jet::testing {

/// The texts of a row; nothing for null.
using ReaderRow = std::vector<std::optional<std::string>>;

std::vector<ReaderRow> RowsOfMdbTools(const std::string& path, const std::string& table);
std::vector<ReaderRow> RowsOfMdbReader(const std::string& path, const std::string& table);

/// The same rows in the same order; what differs is a failed expectation.
void ExpectRows(const std::vector<ReaderRow>& found, const std::vector<ReaderRow>& expected);

}  // namespace zent::jet::testing
