#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "app/CommandLine.h"
#include "app/ExitCode.h"
#include "driver/run/Product.h"

namespace zent {
namespace {

using ::testing::HasSubstr;

ParsedLine Parse(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "zentupdate");
  return ParseCommandLine(static_cast<int>(arguments.size()), arguments.data(),
                          {.parts = "window: none", .default_package = "the current folder"});
}

CommandLine ParseRun(const std::vector<const char*>& arguments) {
  const auto parsed = Parse(arguments);
  EXPECT_TRUE(std::holds_alternative<CommandLine>(parsed));
  return std::holds_alternative<CommandLine>(parsed) ? std::get<CommandLine>(parsed)
                                                     : CommandLine();
}

TEST(CommandLine, WithoutArgumentsIsAPlainRun) {
  const CommandLine line = ParseRun({});
  EXPECT_EQ(line.package, "");
  EXPECT_EQ(line.machine, "");
  EXPECT_EQ(line.window, WindowChoice::Default);
  EXPECT_FALSE(line.unattended);
  EXPECT_FALSE(line.strict);
  EXPECT_EQ(line.retries, 0);
}

TEST(CommandLine, TakesEveryOption) {
  const CommandLine line =
      ParseRun({"pkg", "--machine", "m", "--console", "--unattended", "--answers", "a", "--retries",
                "3", "--log", "l", "--events", "e", "--trace", "t", "--strict",
                "--detailed-exitcode", "--follow-profile-links"});
  EXPECT_EQ(line.package, "pkg");
  EXPECT_EQ(line.machine, "m");
  EXPECT_EQ(line.window, WindowChoice::Console);
  EXPECT_TRUE(line.unattended);
  EXPECT_EQ(line.answers, "a");
  EXPECT_EQ(line.retries, 3);
  EXPECT_EQ(line.log, "l");
  EXPECT_EQ(line.events, "e");
  EXPECT_EQ(line.trace, "t");
  EXPECT_TRUE(line.strict);
  EXPECT_TRUE(line.detailed_exitcode);
  EXPECT_TRUE(line.follow_profile_links);
}

TEST(CommandLine, TheWordRunMayStandBeforeThePackage) {
  EXPECT_EQ(ParseRun({"run", "pkg"}).package, "pkg");
  EXPECT_EQ(ParseRun({"run", "pkg", "--machine", "m"}).machine, "m");
  EXPECT_EQ(ParseRun({"--machine", "m", "run", "pkg"}).package, "pkg");
  EXPECT_EQ(ParseRun({"run"}).package, "");
}

TEST(CommandLine, ChoosesTheWindow) {
  EXPECT_EQ(ParseRun({"--window"}).window, WindowChoice::Window);
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
  for (const std::vector<const char*>& arguments :
       std::vector<std::vector<const char*>>{{"--nosuch"},
                                             {"a", "b"},
                                             {"--machine"},
                                             {"--window", "--console"},
                                             {"--retries", "-1"},
                                             {"--retries", "many"},
                                             {"check", "pkg"},
                                             {"translate", "SELECT"},
                                             {"translate", "--to"},
                                             {"translate", "--to", "dbase", "SELECT"},
                                             {"translate", "--to", "oracle", "A", "B"}}) {
    const auto parsed = Parse(arguments);
    ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed)) << arguments.front();
    EXPECT_TRUE(std::get<CommandLineEnd>(parsed).wrong);
    EXPECT_THAT(std::get<CommandLineEnd>(parsed).text, HasSubstr("--help"));
  }
}

TEST(CommandLine, HelpNamesEveryOptionAndExitCode) {
  const auto parsed = Parse({"--help"});
  ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed));
  const CommandLineEnd& end = std::get<CommandLineEnd>(parsed);
  EXPECT_FALSE(end.wrong);
  for (const char* word :
       {"PACKAGE", "--machine", "--window", "--console", "--unattended", "--answers", "--retries",
        "--log", "--events", "--trace", "translate", "convert", "--strict", "--detailed-exitcode",
        "--follow-profile-links", "--version", "Exit codes", "the current folder"}) {
    EXPECT_THAT(end.text, HasSubstr(word));
  }
}

struct TranslateCase {
  std::vector<const char*> arguments;
  SqlDialect to;
  const char* statement;
  bool from_input;
};

TEST(CommandLine, TakesAStatementToTranslate) {
  for (const TranslateCase& row : std::vector<TranslateCase>{
           {{"translate", "--to", "sqlserver", "SELECT 1"},
            SqlDialect::SqlServer,
            "SELECT 1",
            false},
           {{"translate", "--to", "Oracle", "  A  "}, SqlDialect::Oracle, "  A  ", false},
           {{"translate", "A", "--to=access"}, SqlDialect::Access, "A", false},
           {{"translate", "--to", "oracle", "-"}, SqlDialect::Oracle, "-", true},
           {{"translate", "--to", "oracle"}, SqlDialect::Oracle, "", true}}) {
    const auto parsed = Parse(row.arguments);
    ASSERT_TRUE(std::holds_alternative<TranslateLine>(parsed));
    const TranslateLine& line = std::get<TranslateLine>(parsed);
    EXPECT_EQ(line.to, row.to);
    EXPECT_EQ(line.statement, row.statement);
    EXPECT_EQ(line.from_input, row.from_input);
  }
}

TEST(CommandLine, TakesTwoDatabasesToConvertAndTheOptionsOfARun) {
  const CommandLine line =
      ParseRun({"convert", "T.mdb", "DSN=Korvo;", "--machine", "m", "--log", "l", "--unattended"});
  ASSERT_TRUE(line.conversion);
  EXPECT_EQ(line.conversion->source, "T.mdb");
  EXPECT_EQ(line.conversion->database, "DSN=Korvo;");
  EXPECT_EQ(line.machine, "m");
  EXPECT_EQ(line.log, "l");
  EXPECT_TRUE(line.unattended);
  EXPECT_FALSE(ParseRun({"pkg"}).conversion);
}

TEST(CommandLine, ConvertsNoLessAndNoMoreThanTwoDatabases) {
  for (const auto& arguments : std::vector<std::vector<const char*>>{
           {"convert"}, {"convert", "a.mdb"}, {"convert", "a.mdb", "b.mdb", "c"}}) {
    const auto parsed = Parse(arguments);
    ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed)) << arguments.size();
    EXPECT_TRUE(std::get<CommandLineEnd>(parsed).wrong);
  }
}

TEST(CommandLine, HelpOfConvertNamesItsDatabases) {
  const auto parsed = Parse({"convert", "--help"});
  ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed));
  for (const char* word : {"SOURCE", "DATABASE", "DSN="}) {
    EXPECT_THAT(std::get<CommandLineEnd>(parsed).text, HasSubstr(word));
  }
}

TEST(CommandLine, HelpOfTranslateNamesItsKinds) {
  const auto parsed = Parse({"translate", "--help"});
  ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed));
  for (const char* word : {"--to", "sqlserver, oracle or access", "STATEMENT"}) {
    EXPECT_THAT(std::get<CommandLineEnd>(parsed).text, HasSubstr(word));
  }
}

TEST(CommandLine, HelpTellsTheExitCodesOfTheSystem) {
  const auto parsed = Parse({"--help"});
  ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed));
  for (const ExitCode code : {ExitCode::RestartNeeded, ExitCode::Failed, ExitCode::NoPackage,
                              ExitCode::MachineInUse, ExitCode::RefusedByStrict}) {
    EXPECT_THAT(std::get<CommandLineEnd>(parsed).text,
                HasSubstr(" " + std::to_string(NativeExitCode(code)) + " "));
  }
}

TEST(CommandLine, RefusesAMachineWhereItIsTheSystemItself) {
  for (const std::vector<const char*>& arguments : std::vector<std::vector<const char*>>{
           {"zentupdate", "--machine", "m"}, {"zentupdate", "--follow-profile-links"}}) {
    const auto parsed =
        ParseCommandLine(static_cast<int>(arguments.size()), arguments.data(),
                         {.parts = "", .default_package = "", .takes_machine = false});
    ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed));
    EXPECT_TRUE(std::get<CommandLineEnd>(parsed).wrong);
    EXPECT_THAT(std::get<CommandLineEnd>(parsed).text, HasSubstr("the machine is the one"));
  }
  const char* const help[] = {"zentupdate", "--help"};
  const auto parsed =
      ParseCommandLine(2, help, {.parts = "", .default_package = "", .takes_machine = false});
  EXPECT_THAT(std::get<CommandLineEnd>(parsed).text, ::testing::Not(HasSubstr("--machine")));
}

TEST(CommandLine, VersionTellsWhatTheBuildIsMadeOf) {
  const auto parsed = Parse({"--version"});
  ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed));
  const std::string& text = std::get<CommandLineEnd>(parsed).text;
  EXPECT_THAT(text, ::testing::StartsWith("ZentUpdate " + std::to_string(kVersionMajor) + "."));
  EXPECT_THAT(text, ::testing::EndsWith("\nwindow: none\n"));
}

}  // namespace
}  // namespace zent
