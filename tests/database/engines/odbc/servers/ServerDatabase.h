#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "database/engines/odbc/OdbcEngine.h"

/// What the tests of the adapter on a real server share.
namespace zent::testing {

inline constexpr int kLoginSeconds = 20;
inline constexpr const char* kServerUser = "korvo";
inline constexpr const char* kServerPassword = "Geheim-Wort7";

/// The data sources of the server's two kinds.
inline constexpr const char* kServerKinds[] = {"KorvoServer", "KorvoOracle"};

#define ZENT_ON_SERVER_KINDS(suite)                                     \
  INSTANTIATE_TEST_SUITE_P(                                             \
      Kinds, suite, ::testing::ValuesIn(::zent::testing::kServerKinds), \
      [](const ::testing::TestParamInfo<const char*>& kind) { return std::string(kind.param); })

/// An engine over the driver manager of this system.
std::unique_ptr<OdbcEngine> MakeOdbcEngine();

/// "UID=...;PWD=...;" of the account of the tests.
std::string LoginText();

/// The rows of a query as text: values with "|" between them, a null is "null".
std::vector<std::string> RowTexts(OpenedDatabase& database, const std::string& query);

/// A database of one test alone on the server, dropped at the end.
class ServerDatabase {
 public:
  /// `data_source` is one of kServerKinds.
  explicit ServerDatabase(std::string_view data_source);
  ~ServerDatabase();
  ServerDatabase(const ServerDatabase&) = delete;
  ServerDatabase& operator=(const ServerDatabase&) = delete;

  /// Leads to it, without a login and with one.
  const std::string& place() const { return place_; }
  std::string connect_text() const { return place_ + LoginText(); }

  OdbcEngine& engine() { return *engine_; }
  std::unique_ptr<OpenedDatabase> Open();
  /// Runs a statement that must work, on a connection that stays.
  void Run(const std::string& statement);

 private:
  std::unique_ptr<OdbcEngine> engine_;
  std::unique_ptr<OpenedDatabase> keeper_;
  std::string name_;
  std::string place_;
};

}  // namespace zent::testing
