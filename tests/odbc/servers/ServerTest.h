#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "odbc/OdbcConnection.h"
#include "odbc/OdbcEnvironment.h"
#include "odbc/OdbcStatement.h"

/// What the tests on a real server share.
namespace zent::odbc {

inline constexpr int kLoginSeconds = 20;

/// The account of the tests, for a data source of scripts/servers/odbc.ini.
std::string ConnectTextFor(std::string_view data_source);

std::unique_ptr<OdbcEnvironment> MakeEnvironment();

/// A row as text: values with "|" between them; null is "null", a date "2005-01-02
/// 03:04:05.123456".
std::string RowText(OdbcStatement& statement);
std::string ValueText(const OdbcValue& value);

/// A connection to the server as one of its two kinds, by the name of the data source.
class ServerTest : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override;

  std::unique_ptr<OdbcConnection> Connect();
  OdbcConnection& server() { return *connection_; }
  OdbcEnvironment& environment() { return *environment_; }

  /// Runs a statement that must work; the rows affected.
  std::int64_t Run(std::string_view sql, std::span<const OdbcParameter> values = {});
  /// All rows of a query as text.
  std::vector<std::string> Rows(std::string_view sql, std::span<const OdbcParameter> values = {});
  /// Makes the table anew: its name, and its columns in parentheses.
  void MakeTable(const std::string& name, const std::string& columns);

 private:
  std::unique_ptr<OdbcEnvironment> environment_;
  std::unique_ptr<OdbcConnection> connection_;
};

inline constexpr const char* kBothKinds[] = {"KorvoServer", "KorvoOracle"};

#define ZENT_ON_BOTH_KINDS(suite)                  \
  INSTANTIATE_TEST_SUITE_P(                        \
      Kinds, suite, testing::ValuesIn(kBothKinds), \
      [](const testing::TestParamInfo<const char*>& kind) { return std::string(kind.param); })

}  // namespace zent::odbc
