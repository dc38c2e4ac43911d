#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dataupdate/customisation/CustomisationProgram.h"
#include "dataupdate/customisation/Customize.h"
#include "fakes/run/RunBuilder.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::RunBuilder;
using ::testing::SizeIs;

constexpr const char* kProgram = R"(C:\Korvo\ZentCustomize.exe)";
constexpr const char* kRecorded = R"(D:\Data\Customize\Customize.ini)";

using Handler = Status (*)(UpdateRun&, const TokenList&);

struct CommandCase {
  const char* what;
  Handler handler;
  bool has_file;  ///< "Customize\Customize.ini"
  std::size_t starts;
  Outcome outcome;
};

constexpr CommandCase kCommandCases[] = {
    {"rcw always customises", RunCustomisation, true, 1, Outcome::Done},
    {"also where nothing is recorded", RunCustomisation, false, 1, Outcome::Done},
    {"crcw leaves a customised installation alone", RunCustomisationOnce, true, 0,
     Outcome::Skipped},
    {"and customises any other", RunCustomisationOnce, false, 1, Outcome::Done},
};

TEST(CustomizeCommands, DifferInTheirFlag) {
  for (const CommandCase& row : kCommandCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    if (row.has_file) given.machine.files.PutFile(kRecorded, "");

    const CommandRecord record = given.Call(row.handler, {"x", "Korvo.mdb"});

    EXPECT_EQ(record.outcome, row.outcome);
    EXPECT_THAT(given.machine.processes.launches, SizeIs(row.starts));
    EXPECT_THAT(given.messages(), IsEmpty());
    EXPECT_FALSE(given.run.state.ErrorOccurred);
  }
}

TEST(CustomizeCommands, StartTheProgramOfTheInstallation) {
  RunBuilder given;
  EXPECT_EQ(given.Call(RunCustomisation, {"rcw", "Korvo.mdb"}).outcome, Outcome::Done);
  ASSERT_THAT(given.machine.processes.launches, SizeIs(1));
  EXPECT_EQ(given.machine.processes.launches[0].program, kProgram);
  EXPECT_EQ(given.machine.processes.launches[0].arguments,
            R"("D:\Data\Korvo.mdb" "D:\Data\Customize" "C:\Korvo\Temp")");
}

/// How the program ends, what the user reads and what is recorded.
struct FailureCase {
  const char* what;
  ProgramEnd end;
  const char* message;
  const char* reason;
};

const FailureCase kFailureCases[] = {
    {"an error of its own",
     {3044, "The path is not valid.\n"},
     "Error customizing Korvo \r\nDescription: The path is not valid.\r\nNumber: 3044",
     "The path is not valid. (3044)"},
    {"one without a word",
     {1, ""},
     "Error customizing Korvo \r\nDescription: ZentCustomize.exe has ended with an error\r\n"
     "Number: 1",
     "ZentCustomize.exe has ended with an error (1)"},
    {"a database that it cannot open",
     {2, "in use by Anna"},
     R"(Error Customizing Korvo - could not open database D:\Data\Korvo.mdb)",
     R"(in use by Anna; could not open database D:\Data\Korvo.mdb)"},
};

TEST(CustomizeCommands, FailWithTheProgram) {
  for (const FailureCase& row : kFailureCases) {
    for (const Handler handler : {RunCustomisation, RunCustomisationOnce}) {
      SCOPED_TRACE(row.what);
      RunBuilder given;
      given.machine.processes.EndWith(kProgram, row.end);

      const CommandRecord record = given.Call(handler, {"rcw", "Korvo.mdb"});

      EXPECT_EQ(record.outcome, Outcome::Failed);
      EXPECT_EQ(record.reason, row.reason);
      EXPECT_THAT(given.messages(), ElementsAre(row.message));
      EXPECT_THAT(given.window.boxes, IsEmpty());
      EXPECT_TRUE(given.run.state.ErrorOccurred);
    }
  }
}

TEST(CustomizeCommands, ReportAProgramThatIsMissingOrCannotRunHere) {
  for (const int number : {kFileNotFound, kPathNotFound, kInvalidProcedureCall}) {
    SCOPED_TRACE(number);
    RunBuilder given;
    given.machine.processes.Fail(kProgram, StandardError(number));

    EXPECT_EQ(given.Call(RunCustomisation, {"rcw", "Korvo.mdb"}).outcome, Outcome::Failed);

    EXPECT_THAT(given.messages(),
                ElementsAre("Error customizing Korvo \r\nDescription: ActiveX component can't "
                            "create object: C:\\Korvo\\ZentCustomize.exe\r\nNumber: 429"));
    EXPECT_TRUE(given.run.state.ErrorOccurred);
  }
}

TEST(CustomizeCommands, ReportAProgramThatDoesNotStart) {
  RunBuilder given;
  given.machine.processes.Fail(kProgram, StandardError(kPermissionDenied));
  EXPECT_EQ(given.Call(RunCustomisation, {"rcw", "Korvo.mdb"}).outcome, Outcome::Failed);
  EXPECT_THAT(given.messages(),
              ElementsAre("Error customizing Korvo \r\nDescription: Permission denied: "
                          "C:\\Korvo\\ZentCustomize.exe\r\nNumber: 70"));
}

TEST(CustomizeCommands, NeedADatabase) {
  for (const Handler handler : {RunCustomisation, RunCustomisationOnce}) {
    RunBuilder given;
    given.machine.files.PutFile(kRecorded, "");

    EXPECT_EQ(given.Call(handler, {"rcw"}).outcome, Outcome::Failed);

    EXPECT_THAT(given.messages(), ElementsAre("Error customizing Korvo \r\n"
                                              "Description: Subscript out of range\r\nNumber: 9"));
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_THAT(given.machine.processes.launches, IsEmpty());
  }
}

struct BoundsCase {
  const char* what;
  const char* argument;
  bool is_inside;
};

constexpr BoundsCase kBoundsCases[] = {
    {"the data folder", "Korvo.mdb", true},
    {"the application's folder", R"($(apppath)\ZentData\Korvo.mdb)", true},
    {"a server", "DSN=Korvo;", true},
    {"elsewhere", R"(E:\Korvo.mdb)", false},
    {"above the data folder", R"(..\Korvo.mdb)", false},
    {"another computer", R"(\\server\data\Korvo.mdb)", false},
};

TEST(CustomizeCommands, WarnOfADatabaseElsewhereAndRefuseItWhenStrict) {
  for (const BoundsCase& row : kBoundsCases) {
    SCOPED_TRACE(row.what);
    RunBuilder plain;
    EXPECT_EQ(plain.Call(RunCustomisation, {"rcw", row.argument}).outcome,
              row.is_inside ? Outcome::Done : Outcome::Warned);
    EXPECT_THAT(plain.machine.processes.launches, SizeIs(1));

    RunBuilder strict({.strict = true});
    EXPECT_EQ(strict.Call(RunCustomisation, {"rcw", row.argument}).outcome,
              row.is_inside ? Outcome::Done : Outcome::Failed);
    EXPECT_THAT(strict.machine.processes.launches, SizeIs(row.is_inside ? 1 : 0));
    EXPECT_EQ(strict.run.Refused(), !row.is_inside);
  }
}

TEST(CustomizeCommands, SkipACustomisedInstallationWhateverTheDatabase) {
  for (const BoundsCase& row : kBoundsCases) {
    SCOPED_TRACE(row.what);
    for (const bool strict : {false, true}) {
      RunBuilder given({.strict = strict});
      given.machine.files.PutFile(kRecorded, "");
      EXPECT_EQ(given.Call(RunCustomisationOnce, {"crcw", row.argument}).outcome, Outcome::Skipped);
      EXPECT_THAT(given.machine.processes.launches, IsEmpty());
      EXPECT_THAT(given.messages(), IsEmpty());
      EXPECT_THAT(given.window.boxes, IsEmpty());
      EXPECT_FALSE(given.run.Refused());
    }
  }
}

TEST(CustomizeCommands, TellOfTheLaunchWithoutAPassword) {
  RunBuilder given;
  EXPECT_EQ(given.Call(RunCustomisation, {"rcw", "DSN=Korvo;PWD=secret;"}).outcome, Outcome::Done);
  ASSERT_THAT(given.observer.launches, SizeIs(1));
  EXPECT_THAT(given.observer.launches[0], HasSubstr(R"("C:\Korvo\ZentCustomize.exe" "DSN=Korvo;)"));
  EXPECT_EQ(given.observer.launches[0].find("secret"), std::string::npos);
  EXPECT_THAT(given.machine.processes.launches[0].arguments, HasSubstr("PWD=secret;"));
}

}  // namespace
}  // namespace zent
