#include <gtest/gtest.h>

#include "database/Structure.h"
#include "database/engines/jet/HostStorage.h"
#include "database/engines/jet/JetEngine.h"
#include "database/fakes/DatabaseRun.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

/// Names that need brackets: words of the language, and what is no plain name.
constexpr const char* kNames[] = {
    "Add",    "Alter", "Constraint", "Distinct", "DistinctRow", "Eqv",     "False",
    "Imp",    "Inner", "Left",       "Mod",      "Outer",       "Primary", "Parameters",
    "Right",  "Set",   "Top",        "True",     "Update",      "Values",  "Xor",
    "Select", "Table", "Index",      "My Table", "2005",        "O'Neil",  "a-b"};

TEST(FieldExists, FindsTheFieldOfATableWhoseNameIsAWordOfTheLanguage) {
  const TempFolder folder;
  const std::string path = (folder.path() / "Korvo.mdb").string();
  const std::unique_ptr<jet::Storage> storage = HostStorage();
  {
    jet::Workspace workspace(*storage);
    ASSERT_TRUE(workspace.CreateDatabase(path, "").ok());
  }
  JetEngine engine(*storage, {});
  const auto opened = engine.Open({.path = path});
  ASSERT_TRUE(opened.ok()) << opened.error().description;
  DatabaseRun given;
  for (const char* name : kNames) {
    SCOPED_TRACE(name);
    const Status made = opened.value()->CreateTable(
        {.name = name, .fields = {{.name = "City", .type = FieldType::Text, .size = 10}}});
    ASSERT_TRUE(made.ok()) << made.error().description;
    EXPECT_TRUE(FieldExists(given.run, *opened.value(), name, "City"));
    EXPECT_FALSE(FieldExists(given.run, *opened.value(), name, "Street"));
  }
}

}  // namespace
}  // namespace zent::testing
