#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "jet/dao/Workspace.h"
#include "jet/host/posix/PosixStorage.h"
#include "scenarios/database/KorvoMachine.h"
#include "support/posix/ChildProcess.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// A database that cannot be updated, and what is said of it. It stays as it is.
struct HinderedCase {
  const char* what;
  void (*hinder)(const KorvoMachine&);
  const char* starts;  ///< of exit code and output; with --detailed-exitcode
  const char* says;
};

const HinderedCase kHinderedCases[] = {
    {"missing", [](const KorvoMachine& given) { fs::remove(given.Korvo()); }, "10\n",
     "Warning - Could not check the database.\n  Database "
     "C:\\users\\anna\\Documents\\Korvo\\Korvo.mdb not found.\n"},
    {"no database at all",
     [](const KorvoMachine& given) {
       given.machine().Put("machine/drive_c/users/anna/Documents/Korvo/Korvo.mdb",
                           std::string(10'000, 'x'));
     },
     "1\n", "Number: 3343"},
    {"empty",
     [](const KorvoMachine& given) {
       given.machine().Put("machine/drive_c/users/anna/Documents/Korvo/Korvo.mdb", "");
     },
     "1\n", "Number: 3343"},
    {"cut off", [](const KorvoMachine& given) { fs::resize_file(given.Korvo(), 8192); }, "1\n",
     "Number: 3049"},
    {"with a password that nobody knows",
     [](const KorvoMachine& given) {
       given.MakeDatabase("machine/drive_c/users/anna/Documents/Korvo/Korvo.mdb", OldDatabase(),
                          "secret");
     },
     "1\n", "Number: 3031"},
    {"read-only",
     [](const KorvoMachine& given) {
       fs::permissions(given.Korvo(), fs::perms::owner_read, fs::perm_options::replace);
     },
     "10\n", "Could not open database C:\\users\\anna\\Documents\\Korvo\\Korvo.mdb\n"},
    {"without its template",
     [](const KorvoMachine& given) {
       fs::remove(given.machine().folder() / KorvoMachine::kTemplate);
     },
     "1\n", "Number: 3024"},
};

TEST(HinderedDatabase, IsToldAndLeftAlone) {
  for (const HinderedCase& row : kHinderedCases) {
    SCOPED_TRACE(row.what);
    const KorvoMachine given({KorvoMachine::kSynchronise});
    row.hinder(given);
    const MachineTree before = given.machine().Tree();
    EXPECT_THAT(given.Run({"--detailed-exitcode"}),
                AllOf(StartsWith(row.starts), HasSubstr(row.says)));
    EXPECT_EQ(CompareTrees(before, given.machine().Tree()), "");
  }
}

/// Another process that has the database open: this one.
struct Holder {
  Holder(const fs::path& file, bool exclusive)
      : database(workspace.OpenDatabase(file.string(), exclusive)) {
    EXPECT_TRUE(database.ok());
  }
  jet::PosixStorage storage;
  jet::Workspace workspace{storage, {.user = {.computer = "DESK7", .name = "bert"}}};
  Result<std::unique_ptr<jet::Database>> database;
};

TEST(DatabaseInUse, NamesWhoHasItAndEndsWithoutAChange) {
  const KorvoMachine given({KorvoMachine::kSynchronise, "upddb,Fields.xml"});
  given.machine().Put(
      "package/Fields.xml",
      "<UpdateDB><Version>3.7</Version><Table><Name>Companies</Name></Table></UpdateDB>");
  const std::string bytes = ReadHostFile(given.Korvo());
  std::string end;
  {
    const Holder holder(given.Korvo(), false);
    end = given.Run({"--retries", "1", "--detailed-exitcode"});
  }
  EXPECT_THAT(end,
              AllOf(StartsWith("10\n"), HasSubstr("  The database is opened by DESK7 (bert)\n"),
                    HasSubstr("The database cannot be updated because it is opened by you or"),
                    HasSubstr("  Could not open database C:")));
  EXPECT_EQ(ReadHostFile(given.Korvo()), bytes);
  EXPECT_THAT(given.Backups(), IsEmpty());
  EXPECT_THAT(given.Run(), StartsWith("0\n"));
  EXPECT_EQ(given.Rows("SELECT * FROM [version]"), "3.6\n");
}

TEST(DatabaseInUse, AsksAlsoForOneThatCannotEvenBeRead) {
  const KorvoMachine given({KorvoMachine::kSynchronise});
  const Holder holder(given.Korvo(), true);
  EXPECT_THAT(given.Run({"--detailed-exitcode"}),
              AllOf(StartsWith("10\n"), HasSubstr("  Could not open database C:")));
}

/// A package whose template has numbers where one row has words.
class ValueThatDoesNotFit : public ::testing::Test {
 protected:
  ValueThatDoesNotFit() {
    given.MakeDatabase("machine/drive_c/users/anna/Documents/Korvo/Korvo.mdb",
                       OldDatabase() + ";UPDATE Companies SET Staff = 'many' WHERE Name = 'Anvil'");
  }
  std::string RunAnswering(const char* answer) const {
    given.machine().Put("answers", answer);
    return given.Run(
        {"--answers", (given.machine().folder() / "answers").string(), "--detailed-exitcode"});
  }
  KorvoMachine given{{KorvoMachine::kSynchronise}};
};

TEST_F(ValueThatDoesNotFit, IsLeftOutWhenTheUserGoesOn) {
  EXPECT_THAT(RunAnswering("yes\n"),
              AllOf(StartsWith("10\n"), HasSubstr("Error copying field."), HasSubstr("many")));
  EXPECT_EQ(given.Rows("SELECT Name, Staff FROM Companies ORDER BY Name"),
            "Anvil,\nBr\xC3\xBC"
            "cke,12\nO'Neil,\n");
}

TEST_F(ValueThatDoesNotFit, EndsWithTheBackupsNameWhenTheUserStops) {
  const std::string end = RunAnswering("no\n");
  ASSERT_THAT(given.Backups(), SizeIs(1));
  EXPECT_THAT(end, AllOf(HasSubstr("WARNING!"), HasSubstr(given.Backups()[0].filename().string()),
                         Not(HasSubstr("Compacting"))));
  EXPECT_EQ(given.Rows("SELECT Staff FROM Companies WHERE Name = 'Anvil'"), "many\n");
  EXPECT_EQ(given.Faults(given.Korvo()), "");
}

TEST(ImportedValue, ThatDoesNotFitEndsTheImportAndKeepsTheLinesBefore) {
  const KorvoMachine given({"importlookup,Items.txt", "msg,never"});
  given.machine().Put("package/Items.txt",
                      "City,Bern\r\nCity," + std::string(21, 'x') + "\r\nCity,Graz\r\n");
  EXPECT_THAT(given.Run(), AllOf(StartsWith("1\n"), HasSubstr("Error importing Lookup"),
                                 HasSubstr("Number: 3163"), Not(HasSubstr("never"))));
  EXPECT_EQ(given.Rows("SELECT LookupValue FROM Lookup"), "Ulm\nBern\n");
}

/// The output of a run in which no file can grow beyond `bytes`, as on a full disk.
std::string RunLimited(const KorvoMachine& given, rlim_t bytes) {
  return RunInChild([&] {
    const struct rlimit limit = {.rlim_cur = bytes, .rlim_max = bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
    return given.Run({"--detailed-exitcode"});
  });
}

TEST(FullDisk, AtAnySizeLeavesTheDatabaseWholeAndSaysWhereTheBackupIs) {
  const KorvoMachine sizes({KorvoMachine::kSynchronise});
  constexpr std::uintmax_t kPage = 4096;
  const std::uintmax_t old_size = fs::file_size(sizes.Korvo());
  int stopped_after_the_backup = 0;
  for (std::uintmax_t limit = old_size - kPage; limit <= old_size + 8 * kPage; limit += kPage) {
    SCOPED_TRACE(limit);
    const KorvoMachine given({KorvoMachine::kSynchronise});

    const std::string end = RunLimited(given, limit);

    EXPECT_EQ(given.Faults(given.Korvo()), "");
    EXPECT_EQ(given.Rows("SELECT Name, Staff FROM Companies ORDER BY Name"), kOldCompanies);
    if (end.rfind("0\n", 0) == 0) continue;
    const std::size_t error_at = end.find("Error synchronizing DataBase C:");
    ASSERT_NE(error_at, std::string::npos) << end;
    const std::string told = end.substr(error_at);
    // The tables that could not be changed do not end the list, what comes around them does.
    const bool in_tables = told.find("WARNING!") != std::string::npos;
    EXPECT_THAT(end, StartsWith(in_tables ? "10\n" : "1\n"));
    if (limit <= old_size) {  // the system refuses a copy that ends right at the limit, too
      EXPECT_THAT(told, AllOf(HasSubstr("Backup C:"), HasSubstr("Number: 61")));
      EXPECT_THAT(given.Backups(), IsEmpty());
      continue;
    }
    ++stopped_after_the_backup;
    EXPECT_THAT(told, HasSubstr("Number: 3026"));
    ASSERT_THAT(given.Backups(), SizeIs(1));
    EXPECT_THAT(told, HasSubstr(given.Backups()[0].filename().string()));
    EXPECT_EQ(given.RowsOf(given.Backups()[0], "SELECT * FROM [version]"), "3.5\n");
  }
  EXPECT_GT(stopped_after_the_backup, 2);
}

}  // namespace
}  // namespace zent::testing
