#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "database/engines/jet/JetEngine.h"
#include "fakes/run/RunBuilder.h"
#include "jet/fakes/MemoryStorage.h"

namespace zent::testing {

/// A run with two Access files in memory: the application's database, which the run knows, and one
/// that new values come from.
struct DatabaseMachine : RunBuilder {
  DatabaseMachine();

  static constexpr const char* kKorvo = R"(D:\Data\Korvo.mdb)";
  static constexpr const char* kSource = R"(D:\Package\Source.mdb)";

  jet::testing::MemoryStorage storage;
  JetEngine engine;
  std::unique_ptr<OpenedDatabase> korvo;
  std::unique_ptr<OpenedDatabase> source;

  void Execute(OpenedDatabase& database, const std::vector<std::string>& statements);
  /// The rows of a query, each as its fields with "|" between; a null is "null".
  std::vector<std::string> Rows(OpenedDatabase& database, std::string_view query);
  std::vector<std::string> Rows(std::string_view query) { return Rows(*korvo, query); }
};

}  // namespace zent::testing
