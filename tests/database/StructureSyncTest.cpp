#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/SyncRun.h"

namespace zent {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::kSyncBackup;
using testing::kSyncDatabase;
using testing::kSyncTemplate;
using testing::MemoryTables;
using ::testing::Not;
using ::testing::StartsWith;
using testing::SyncRun;

constexpr const char* kWarning =
    "WARNING!\r\n"
    "Your Korvo database (D:\\Data\\Korvo.mdb) may be incomplete.\r\n"
    "You may have to restore the database from the backup "
    "(D:\\Data\\Korvo 2006-05-04 03-02-01.mdb) and re-run this Update";

constexpr const char* kLastRunKey = R"(Software\VB and VBA Program Settings\Korvo\Settings)";

/// Makes the run one of an application that was never started.
void ForgetLastRun(SyncRun& given) {
  given.machine.registry.PutText(KeyHandle::CurrentUser, kLastRunKey, "LastRunDateTime", "");
}

/// Gives the template's field "Name" room for more, so that rows are copied.
void WidenName(SyncRun& given) {
  given.pattern().Find("Companies")->definition.fields[0].size = 80;
}

TEST(SynchroniseStructure, TellsEachStepInItsOrder) {
  SyncRun given;

  const CommandRecord record = given.Sync();

  EXPECT_THAT(given.messages(),
              ElementsAre("Checking DB Version",
                          "Backing up D:\\Data\\Korvo.mdb\r\n"
                          "    as D:\\Data\\Korvo 2006-05-04 03-02-01.mdb",
                          " ", R"(Sync D:\Data\Korvo.mdb)", "Checking Companies (1 of 3)",
                          "Checking Added (2 of 3)", "Checking version (3 of 3)",
                          R"(Compacting D:\Data\Korvo.mdb)"));
  EXPECT_THAT(given.database().Describe(),
              ElementsAre("Companies: Name 10 50", "  Zent", "  Korvo", "Added: Name 10 50",
                          "version: Version 10 50", "  3.6"));
  EXPECT_EQ(record.outcome, Outcome::Done);
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_EQ(given.access.world.open, 0);
}

TEST(SynchroniseStructure, KeepsTheDatabaseAsItWasInTheBackup) {
  SyncRun given;
  const std::vector<std::string> before = given.database().Describe();
  given.Sync();
  EXPECT_EQ(given.machine.files.Contents(kSyncBackup), "database");
  EXPECT_EQ(given.access.Put(kSyncBackup).Describe(), before);
}

TEST(SynchroniseStructure, PutsTheCompactedFileInTheDatabasesPlace) {
  SyncRun given;
  given.machine.files.PutFile(R"(D:\Data\Korvo.mdb_tmp)", "stale");
  given.Sync();
  EXPECT_THAT(given.access.compactions,
              ElementsAre(R"(D:\Data\Korvo.mdb > D:\Data\Korvo.mdb_tmp ())"));
  EXPECT_EQ(given.machine.files.Contents(kSyncDatabase), "compacted");
  EXPECT_FALSE(given.machine.files.Exists(R"(D:\Data\Korvo.mdb_tmp)"));
}

TEST(SynchroniseStructure, CompactsWithThePasswordThatOpensTheFile) {
  SyncRun given;
  given.access.password = "Secret";
  given.window.texts = {"Secret"};
  given.Sync();
  EXPECT_THAT(given.access.compactions, ElementsAre(HasSubstr("(;pwd=Secret)")));
  EXPECT_EQ(given.window.inputs.size(), 1U) << "asked for once, then stored";
}

TEST(SynchroniseStructure, ADatabaseOfTheTemplatesVersionIsNotTouchedNotEvenBackedUp) {
  SyncRun given;
  given.database().Find("version")->rows = {{"3.6"}};
  given.machine.files.log().Forget();
  given.access.world.calls.clear();

  const CommandRecord record = given.Sync();

  EXPECT_THAT(given.messages(), ElementsAre("Checking DB Version"));
  EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
  EXPECT_THAT(given.access.world.calls, Not(Contains("BeginTransaction")));
  EXPECT_EQ(record.outcome, Outcome::Skipped);
}

TEST(SynchroniseStructure, TakesAwayWhatAKilledCompactionLeft) {
  constexpr const char* kTemporary = R"(D:\Data\Korvo.mdb_tmp)";
  for (const bool is_held : {false, true}) {
    SyncRun given;
    given.database().Find("version")->rows = {{"3.6"}};
    given.machine.files.PutFile(kTemporary, "left");
    if (is_held) given.machine.files.HoldOpen(kTemporary);

    const CommandRecord record = given.Sync();

    EXPECT_EQ(given.machine.files.Exists(kTemporary), is_held);
    EXPECT_EQ(record.outcome, Outcome::Skipped);
    EXPECT_EQ(record.reason.find("left behind") != std::string::npos, is_held);
    EXPECT_THAT(given.window.boxes, IsEmpty());
  }
}

TEST(SynchroniseStructure, ADatabaseWithoutAVersionDiffersFromEveryTemplate) {
  SyncRun given;
  std::erase_if(given.database().tables,
                [](const auto& table) { return table.definition.name == "version"; });
  EXPECT_EQ(given.Sync().outcome, Outcome::Done);
  EXPECT_EQ(given.database().Find("version")->Text(0, "Version"), "3.6");
}

TEST(SynchroniseStructure, AFreshInstallationIsNotSynchronisedUnlessForced) {
  struct Case {
    const char* what;
    TokenList tokens;
    bool is_synchronised;
  };
  const Case cases[] = {
      {"no options", {"stdf", kSyncTemplate, kSyncDatabase}, false},
      {"other options", {"stdf", kSyncTemplate, kSyncDatabase, "quick"}, false},
      {"force behind", {"stdf", kSyncTemplate, kSyncDatabase, "Force"}, true},
      {"force in front", {"stdf", "FORCED", kSyncTemplate, kSyncDatabase}, true},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    SyncRun given;
    ForgetLastRun(given);
    const CommandRecord record = given.Sync(row.tokens);
    EXPECT_EQ(given.database().Find("Added") != nullptr, row.is_synchronised);
    EXPECT_EQ(given.messages().empty(), !row.is_synchronised) << "silently";
    EXPECT_EQ(record.outcome, row.is_synchronised ? Outcome::Done : Outcome::Skipped);
  }
}

TEST(SynchroniseStructure, AMissingDatabaseIsAWarningAndErrorOccurredStaysClear) {
  SyncRun given;
  const CommandRecord record = given.Sync({"stdf", kSyncTemplate, R"($(datapath)\Other.mdb)"});
  EXPECT_THAT(given.messages(), ElementsAre("Warning - Could not check the database.",
                                            R"(Database D:\Data\Other.mdb not found.)"));
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST(SynchroniseStructure, ACancelledInUseCheckEndsItAndErrorOccurredStaysClear) {
  SyncRun given;
  const std::vector<std::string> before = given.database().Describe();
  given.access.failures = {{.number = 0, .description = {}},
                           {.number = 0, .description = {}},
                           {.number = 3356, .description = "in use"}};
  given.window.answers = {Answer::Cancel};

  const CommandRecord record = given.Sync();

  EXPECT_THAT(given.messages(),
              ElementsAre("Checking DB Version", R"(Could not open database D:\Data\Korvo.mdb)"));
  EXPECT_EQ(given.database().Describe(), before);
  EXPECT_FALSE(given.machine.files.Exists(kSyncBackup));
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_FALSE(given.run.state.ErrorOccurred);
}

TEST(SynchroniseStructure, AsksToCloseADatabaseThatCannotEvenBeRead) {
  SyncRun given;
  const RuntimeError held{.number = 3045, .description = "in use"};
  given.access.failures = {{.number = 0, .description = {}}, held, held};
  given.window.answers = {Answer::Retry};
  EXPECT_EQ(given.Sync().outcome, Outcome::Done);
  EXPECT_EQ(given.window.boxes.size(), 1U);
  EXPECT_NE(given.database().Find("Added"), nullptr);
}

TEST(SynchroniseStructure, ADatabaseThatCameUpToDateWhileItWasWaitedForIsNotTouched) {
  SyncRun given;
  const RuntimeError held{.number = 3045, .description = "in use"};
  given.access.failures = {{.number = 0, .description = {}}, held, held};
  given.window.answers = {Answer::Retry};
  given.window.on_ask = [&] { given.database().Find("version")->rows = {{"3.6"}}; };
  EXPECT_EQ(given.Sync().outcome, Outcome::Skipped);
  EXPECT_FALSE(given.machine.files.Exists(kSyncBackup));
}

TEST(SynchroniseStructure, NoToTheQuestionLeavesItUncompactedAndNamesTheBackup) {
  SyncRun given;
  WidenName(given);
  given.access.world.failures["Set Name=Korvo"] = {.number = 3421, .description = "type"};
  given.window.answers = {Answer::No};

  const CommandRecord record = given.Sync();

  EXPECT_THAT(given.window.boxes, ElementsAre(StartsWith("Error copying field."), kWarning));
  EXPECT_EQ(given.window.questions[1].icon, BoxIcon::Critical);
  EXPECT_EQ(given.window.questions[1].buttons, BoxButtons::Ok);
  EXPECT_THAT(given.access.compactions, IsEmpty());
  EXPECT_THAT(given.messages(), Not(Contains(HasSubstr("Compacting"))));
  EXPECT_EQ(given.database().Find("version")->Text(0, "Version"), "3.5")
      << "the next update tries again";
  EXPECT_EQ(given.database().Find("Companies")->rows.size(), 2U);
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(record.reason, HasSubstr(kSyncBackup));
  EXPECT_FALSE(given.run.state.ErrorOccurred);
}

TEST(SynchroniseStructure, AnErrorOfTheCoreIsShownAndTheBackupNamed) {
  SyncRun given;
  given.access.world.failures["CreateTable"] = {.number = 61, .description = "Disk full"};

  const CommandRecord record = given.Sync();

  EXPECT_THAT(given.window.boxes, ElementsAre("Error synchronizing DataBase D:\\Data\\Korvo.mdb\r\n"
                                              "Description: Disk full\r\nNumber: 61",
                                              kWarning));
  EXPECT_THAT(given.access.compactions, IsEmpty());
  EXPECT_FALSE(given.run.state.ErrorOccurred) << "the list of commands goes on";
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(record.reason, AllOf(HasSubstr("Disk full (61)"), HasSubstr(kSyncBackup)));
}

struct ErrorCase {
  const char* what;
  std::deque<RuntimeError>
      opens;  ///< template, database, in-use check, backup's two, the core's two
  const char* file_call;
  const char* world_call;
  bool is_changed;
  const char* shown = "Trouble\r\n";  ///< the end of the description
};

constexpr const char* kTroubleWithBackup =
    "Trouble. The backup is D:\\Data\\Korvo 2006-05-04 03-02-01.mdb.\r\n";

TEST(SynchroniseStructure, AnErrorOutsideTheCoreIsOneBoxAndTheDatabaseIsWhole) {
  const RuntimeError damaged{.number = 3049, .description = "Trouble"};
  const RuntimeError good{.number = 0, .description = {}};
  const ErrorCase cases[] = {
      {"no template", {damaged}, nullptr, nullptr, false},
      {"a damaged database", {good, damaged}, nullptr, nullptr, false},
      {"a disk that fills during the backup", {}, "Copy D:\\Data\\Korvo.mdb >", nullptr, false},
      {"a backup that does not open", {good, good, good, good, damaged}, nullptr, nullptr, false},
      {"somebody opens it again",
       {good, good, good, good, good, good, damaged},
       nullptr,
       nullptr,
       false,
       kTroubleWithBackup},
      {"a disk that fills during the compaction", {}, nullptr, "Compact", true, kTroubleWithBackup},
      {"a compacted file that cannot be put in place",
       {},
       "Replace D:\\Data\\Korvo.mdb_tmp",
       nullptr,
       true,
       kTroubleWithBackup},
  };
  for (const ErrorCase& row : cases) {
    SCOPED_TRACE(row.what);
    SyncRun given;
    given.access.failures = row.opens;
    if (row.file_call != nullptr) given.machine.files.log().FailWhere(row.file_call, damaged);
    if (row.world_call != nullptr) given.access.world.failures[row.world_call] = damaged;

    EXPECT_EQ(given.Sync().outcome, Outcome::Failed);

    ASSERT_EQ(given.window.boxes.size(), 1U);
    EXPECT_THAT(given.window.boxes[0],
                StartsWith("Error synchronizing DataBase D:\\Data\\Korvo.mdb\r\nDescription: "));
    EXPECT_THAT(given.window.boxes[0], HasSubstr(std::string(row.shown) + "Number: 3049"));
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_EQ(given.database().Find("Added") != nullptr, row.is_changed);
    EXPECT_EQ(given.machine.files.Contents(kSyncDatabase), "database");
    EXPECT_FALSE(given.machine.files.Exists(R"(D:\Data\Korvo.mdb_tmp)"));
    EXPECT_EQ(given.access.world.open, 0);
  }
}

TEST(SynchroniseStructure, AMissingArgumentIsReported) {
  for (const TokenList& tokens : {TokenList{"stdf"}, TokenList{"stdf", "a.mdb"}}) {
    SyncRun given;
    EXPECT_EQ(given.Sync(tokens).outcome, Outcome::Failed);
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_THAT(given.window.boxes, ElementsAre(HasSubstr("Number: 9")));
  }
}

// --- The installation's own database ---

constexpr const char* kOwnDatabase = R"(C:\Korvo\ZentData\Korvo.mdb)";
constexpr const char* kOwnTemplate = R"(C:\Korvo\ZentData\Customize\KorvoTPL.mdb)";

TEST(SynchroniseStructure, GoesOnWithTheInstallationsOwnDatabase) {
  SyncRun given;
  given.PutDatabase(kOwnTemplate).Add("Own", {"Name"});
  given.PutDatabase(kOwnDatabase);

  EXPECT_EQ(given.Sync().outcome, Outcome::Done);

  EXPECT_NE(given.access.Put(kOwnDatabase).Find("Own"), nullptr);
  EXPECT_THAT(given.messages(), Contains(R"(Sync C:\Korvo\ZentData\Korvo.mdb)"));
  EXPECT_EQ(given.access.compactions.size(), 2U);
}

TEST(SynchroniseStructure, WarnsWhenTheInstallationsOwnDatabaseIsMissing) {
  SyncRun given;
  given.PutDatabase(kOwnTemplate);
  EXPECT_EQ(given.Sync().outcome, Outcome::Failed);
  EXPECT_THAT(given.messages(), Contains("Warning - Could not check the database."));
  EXPECT_THAT(given.messages(), Contains(R"(Database C:\Korvo\ZentData\Korvo.mdb not found.)"));
  EXPECT_FALSE(given.run.state.ErrorOccurred);
}

TEST(SynchroniseStructure, GoesOnAlsoWhenTheFirstDatabaseIsUpToDateOrMissing) {
  for (const bool is_missing : {false, true}) {
    SyncRun given;
    given.PutDatabase(kOwnTemplate).Add("Own", {"Name"});
    given.PutDatabase(kOwnDatabase);
    given.database().Find("version")->rows = {{"3.6"}};
    given.Sync({"stdf", kSyncTemplate, is_missing ? R"(D:\Data\None.mdb)" : kSyncDatabase});
    EXPECT_NE(given.access.Put(kOwnDatabase).Find("Own"), nullptr);
  }
}

TEST(SynchroniseStructure, LeavesTheInstallationsOwnDatabaseAfterAnError) {
  SyncRun given;
  given.PutDatabase(kOwnTemplate).Add("Own", {"Name"});
  given.PutDatabase(kOwnDatabase);
  given.access.failures = {{.number = 3049, .description = "damaged"}};
  given.Sync();
  EXPECT_EQ(given.access.Put(kOwnDatabase).Find("Own"), nullptr);
}

TEST(SynchroniseStructure, IsDoneOnceWhereTheDatabaseNamedIsTheInstallationsOwn) {
  SyncRun given;
  given.PutDatabase(kOwnTemplate).Add("Own", {"Name"});
  given.PutDatabase(kOwnDatabase).Add("Companies", {"Name"});
  given.Sync({"stdf", kSyncTemplate, R"($(apppath)\ZentData\Korvo.mdb)"});
  EXPECT_EQ(given.access.compactions.size(), 1U);
}

// --- Arguments ---

struct ArgumentCase {
  const char* what;
  TokenList tokens;
  const char* options;
  const char* template_path;
  const char* database_path;
};

TEST(SyncArgumentsOf, TellsOptionsFromPaths) {
  const ArgumentCase cases[] = {
      {"three tokens", {"stdf", "t.mdb", "d.mdb"}, "", "t.mdb", "d.mdb"},
      {"options behind", {"stdf", "t.mdb", "d.mdb", "force"}, "force", "t.mdb", "d.mdb"},
      {"options in front", {"stdf", "force", "t.mdb", "d.mdb"}, "force", "t.mdb", "d.mdb"},
      {"a macro is a path", {"stdf", "", "$(x)", "$(datapath)"}, "", "$(x)", "$(datapath)"},
      {"a separator makes a path", {"stdf", "force", "t", "a/b"}, "force", "t", "a/b"},
      {"a backslash, too", {"stdf", "force", "t", R"(a\b)"}, "force", "t", R"(a\b)"},
      {"the extension in any case", {"stdf", "force", "t", "D.MDB"}, "force", "t", "D.MDB"},
      {"the last where both could be", {"stdf", "one", "two", "three"}, "three", "one", "two"},
      {"the last where neither could", {"stdf", "a.mdb", "b", "c.mdb"}, "c.mdb", "a.mdb", "b"},
      {"blanks do not count", {"stdf", " t.mdb", "d.mdb ", " force "}, "force", "t.mdb", "d.mdb"},
  };
  for (const ArgumentCase& row : cases) {
    SCOPED_TRACE(row.what);
    const Result<SyncArguments> arguments = SyncArgumentsOf(row.tokens);
    ASSERT_TRUE(arguments.ok());
    EXPECT_EQ(arguments.value().options, row.options);
    EXPECT_EQ(arguments.value().template_path, row.template_path);
    EXPECT_EQ(arguments.value().database_path, row.database_path);
  }
}

}  // namespace
}  // namespace zent
