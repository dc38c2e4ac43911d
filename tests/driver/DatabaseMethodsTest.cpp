#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/DBFuncs.h"
#include "database/fakes/FakeEngines.h"
#include "driver/FormRun.h"

namespace zent {
namespace {

using testing::FakeAccessEngine;
using testing::FormRun;

constexpr const char* kPath = R"(D:\Data\Korvo.mdb)";

TEST(FormDatabaseMethods, DrawKeysOfRecords) {
  FormRun given("");
  FakeAccessEngine access;
  access.Put(kPath).Add("Counters", {"TableName", "CurCount"}, {{"Contacts", "CN00000007"}});
  given.form.run().database.access = &access;
  const DatabasePtr database = std::move(OpenDatabase(given.form.run(), kPath).value());
  std::string key;
  bool success = false;

  given.form.GetNextNumber(*database, "Contacts", key, success);
  EXPECT_TRUE(success);
  EXPECT_EQ(key, "CN00000008");

  given.form.GetNextNumber(*database, "Lookup", key, success);
  EXPECT_FALSE(success);
  EXPECT_EQ(frmZentUpdate::KeyFieldPrefix("Contacts"), "CN");
}

TEST(FormDatabaseMethods, TellWhetherSomebodyHasTheDatabaseOpen) {
  FormRun given("");
  FakeAccessEngine access;
  access.Put(kPath);
  given.form.run().database.access = &access;
  EXPECT_FALSE(given.form.IsDataBaseOpen(kPath));
  access.failures = {{.number = 3356, .description = "in use"}};
  EXPECT_TRUE(given.form.IsDataBaseOpen(kPath));
}

}  // namespace
}  // namespace zent
