#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/run/RunBuilder.h"
#include "fileops/Registration.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::RunBuilder;

using CommandHandler = Status (*)(UpdateRun&, const TokenList&);
using ComponentHandler = Status (*)(UpdateRun&, const std::string&, bool&);

constexpr const char* kSystemTool = R"(C:\windows\system32\regsvr32.exe)";

/// Starts of `program` fail, and find no file.
void MissFile(RunBuilder& given, const std::string& program) {
  given.machine.processes.Fail(program, StandardError(kFileNotFound));
}

struct StartCase {
  const char* what;
  const char* file;          ///< the argument
  const char* present;       ///< a tool that is there
  const char* message;       ///< the path in the first line shown
  const char* program;       ///< what is started
  const char* arguments;     ///< with these arguments
  const char* command_line;  ///< recorded as this line
};

/// Runs the rows through `handler` and looks at what was started.
void ExpectStarts(ComponentHandler handler, const std::vector<StartCase>& rows,
                  const std::string& verb) {
  for (const StartCase& row : rows) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    if (*row.present != '\0') given.machine.files.PutFile(row.present, "MZ");
    bool quiet = false;
    EXPECT_TRUE(handler(given.run, row.file, quiet).ok());
    ASSERT_EQ(given.machine.processes.launches.size(), 1U);
    const Launch& launch = given.machine.processes.launches.front();
    EXPECT_EQ(launch.program, row.program);
    EXPECT_EQ(launch.arguments, row.arguments);
    EXPECT_EQ(launch.command_line, row.command_line);
    EXPECT_THAT(given.observer.launches, ElementsAre(row.command_line));
    ASSERT_FALSE(given.messages().empty());
    EXPECT_EQ(given.messages().front(), verb + row.message);
    EXPECT_FALSE(given.run.state.ErrorOccurred);
    EXPECT_THAT(given.window.boxes, IsEmpty());
  }
}

const std::vector<StartCase> kRegisterCases = {
    {"a library goes to regsvr32 of the system folder", R"($(apppath)\mail.dll)", kSystemTool,
     R"(C:\Korvo\mail.dll)", kSystemTool, R"(/s "C:\Korvo\mail.dll")",
     R"(C:\windows\system32\regsvr32.exe /s "C:\Korvo\mail.dll")"},
    {"without it there, to that of the Windows folder", R"($(apppath)\mail.dll)",
     R"(C:\windows\regsvr32.exe)", R"(C:\Korvo\mail.dll)", R"(C:\windows\regsvr32.exe)",
     R"(/s "C:\Korvo\mail.dll")", R"(C:\windows\regsvr32.exe /s "C:\Korvo\mail.dll")"},
    {"without any, the Windows folder is tried", R"($(apppath)\mail.dll)", "",
     R"(C:\Korvo\mail.dll)", R"(C:\windows\regsvr32.exe)", R"(/s "C:\Korvo\mail.dll")",
     R"(C:\windows\regsvr32.exe /s "C:\Korvo\mail.dll")"},
    {"blanks in a library's path stand in quotes", R"(C:\Program Files\Korvo\mail.ocx)",
     kSystemTool, R"(C:\Program Files\Korvo\mail.ocx)", kSystemTool,
     R"(/s "C:\Program Files\Korvo\mail.ocx")",
     R"(C:\windows\system32\regsvr32.exe /s "C:\Program Files\Korvo\mail.ocx")"},
    {"a type library goes to regtlib of the system folder", R"($(apppath)\Korvo.tlb)",
     R"(C:\windows\system32\regtlib.exe)", R"(C:\Korvo\Korvo.tlb)",
     R"(C:\windows\system32\regtlib.exe)", R"(-q "C:\Korvo\Korvo.tlb")",
     R"(C:\windows\system32\regtlib.exe -q "C:\Korvo\Korvo.tlb")"},
    {"else of the Windows folder, whatever else is there", R"($(apppath)\Korvo.TLB)", kSystemTool,
     R"(C:\Korvo\Korvo.TLB)", R"(C:\windows\regtlib.exe)", R"(-q "C:\Korvo\Korvo.TLB")",
     R"(C:\windows\regtlib.exe -q "C:\Korvo\Korvo.TLB")"},
    {"the application registers itself, its path without quotes",
     R"(C:\Program Files\Korvo\KORVO.exe)", kSystemTool, R"(C:\Program Files\Korvo\KORVO.exe)",
     R"(C:\Program Files\Korvo\KORVO.exe)", "/RegServer",
     R"(C:\Program Files\Korvo\KORVO.exe /RegServer)"},
    {"so does the search program", R"($(apppath)\ZentSearch.exe)", "", R"(C:\Korvo\ZentSearch.exe)",
     R"(C:\Korvo\ZentSearch.exe)", "/RegServer", R"(C:\Korvo\ZentSearch.exe /RegServer)"},
    {"a program of another name is started without a switch", R"($(apppath)\MyKorvo.EXE)", "",
     R"(C:\Korvo\MyKorvo.EXE)", R"(C:\Korvo\MyKorvo.EXE)", "", R"(C:\Korvo\MyKorvo.EXE)"},
    {"a dot in a folder's name begins an extension", R"(C:\korvo.exe\mail)", kSystemTool,
     R"(C:\korvo.exe\mail)", kSystemTool, R"(/s "C:\korvo.exe\mail")",
     R"(C:\windows\system32\regsvr32.exe /s "C:\korvo.exe\mail")"},
    {"a relative path is shown as written and means the package", R"(Files\mail.dll)", kSystemTool,
     R"(Files\mail.dll)", kSystemTool, R"(/s "D:\Package\Files\mail.dll")",
     R"(C:\windows\system32\regsvr32.exe /s "Files\mail.dll")"},
    {"slashes are shown as written", "C:/Korvo/Setup.exe", "", "C:/Korvo/Setup.exe",
     R"(C:\Korvo\Setup.exe)", "", "C:/Korvo/Setup.exe"},
};

TEST(RegisterComponent, StartsWhatRegistersAComponent) {
  ExpectStarts(RegisterComponent, kRegisterCases, "Registering ");
}

TEST(RegisterComponent, SaysNothingMore) {
  RunBuilder given;
  given.machine.files.PutFile(R"(C:\Korvo\mail.dll)", "library");
  given.machine.files.PutFile(kSystemTool, "MZ");
  const CommandRecord record = given.Call(RegisterCommand, {"reg", R"( $(apppath)\mail.dll )"});
  EXPECT_THAT(given.messages(), ElementsAre(R"(Registering C:\Korvo\mail.dll)"));
  EXPECT_EQ(record.outcome, Outcome::Done);
  EXPECT_EQ(record.reason, "");
}

TEST(RegisterComponent, StartsAnOrdinaryProgramOnceWithoutArguments) {
  RunBuilder given;
  given.Call(RegisterCommand, {"reg", R"($(apppath)\Setup.exe)"});
  ASSERT_EQ(given.machine.processes.launches.size(), 1U);
  EXPECT_EQ(given.machine.processes.launches.front().arguments, "");
}

const std::vector<StartCase> kUnregisterCases = {
    {"a library goes to regsvr32, its name without an extension", R"($(apppath)\mail.dll)",
     kSystemTool, R"(C:\Korvo\mail.dll)", kSystemTool, R"(/s /u "C:\Korvo\mail.dll")",
     R"(C:\windows\system32\regsvr32 /s /u "C:\Korvo\mail.dll")"},
    {"so does a type library", R"($(apppath)\Korvo.tlb)", R"(C:\windows\system32\regtlib.exe)",
     R"(C:\Korvo\Korvo.tlb)", R"(C:\windows\regsvr32.exe)", R"(/s /u "C:\Korvo\Korvo.tlb")",
     R"(C:\windows\regsvr32 /s /u "C:\Korvo\Korvo.tlb")"},
    {"the application's registration is refreshed", R"($(apppath)\Korvo.exe)", kSystemTool,
     R"(C:\Korvo\Korvo.exe)", R"(C:\Korvo\Korvo.exe)", "/RegServer",
     R"(C:\Korvo\Korvo.exe /RegServer)"},
    {"so is the search program's", R"($(apppath)\zentsearch.exe)", kSystemTool,
     R"(C:\Korvo\zentsearch.exe)", R"(C:\Korvo\zentsearch.exe)", "/RegServer",
     R"(C:\Korvo\zentsearch.exe /RegServer)"},
    {"any other program is started", R"($(apppath)\Setup.exe)", kSystemTool,
     R"(C:\Korvo\Setup.exe)", R"(C:\Korvo\Setup.exe)", "", R"(C:\Korvo\Setup.exe)"},
};

TEST(UnregisterComponent, StartsWhatUnregistersAComponent) {
  ExpectStarts(UnregisterComponent, kUnregisterCases, "Unregistering ");
}

TEST(UnregisterComponent, NamesTheToolOfTheWindowsFolderWhateverWasStarted) {
  for (const StartCase& row : kUnregisterCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    given.machine.files.PutFile(kSystemTool, "MZ");
    given.machine.processes.next_task = 4711;
    given.Call(UnregisterCommand, {"ureg", std::string(" ") + row.file + " "});
    const std::string path = row.message;
    EXPECT_THAT(given.messages(),
                ElementsAre("Unregistering " + path,
                            R"(C:\windows\regsvr32 /s /u ")" + path + "\" (RetVal=4711)"));
  }
}

struct RunCase {
  const char* what;
  const char* program;
  const char* arguments;
  const char* shown;    ///< the program in the lines shown
  const char* started;  ///< the program started
};

constexpr RunCase kRunCases[] = {
    {"arguments stay as written, macros too", R"($(apppath)\Tool.exe)", R"(/f $(apppath)\a.txt)",
     R"(C:\Korvo\Tool.exe)", R"(C:\Korvo\Tool.exe)"},
    {"without arguments the line ends in a blank", R"($(apppath)\Tool.exe)", "",
     R"(C:\Korvo\Tool.exe)", R"(C:\Korvo\Tool.exe)"},
    {"blanks in the path are part of it", R"(C:\Program Files\Tool.exe)", "/x",
     R"(C:\Program Files\Tool.exe)", R"(C:\Program Files\Tool.exe)"},
    {"a bare name is shown so, and is searched for nowhere", "calc.exe", "/x", "calc.exe",
     R"(D:\Package\calc.exe)"},
};

TEST(RunProgram, StartsTheProgramAndSaysSoTwice) {
  for (const RunCase& row : kRunCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    const CommandRecord record = given.Call(RunCommand, {"run", row.program, row.arguments});
    const std::string line = row.shown + std::string(" ") + row.arguments;
    EXPECT_THAT(given.messages(), ElementsAre(std::string("Running ") + row.shown,
                                              "Running " + line + " (RetVal=4711)"));
    ASSERT_EQ(given.machine.processes.launches.size(), 1U);
    EXPECT_EQ(given.machine.processes.launches.front().program, row.started);
    EXPECT_EQ(given.machine.processes.launches.front().arguments, row.arguments);
    EXPECT_THAT(given.observer.launches, ElementsAre(line));
    EXPECT_EQ(record.outcome, Outcome::Done);
  }
}

TEST(RunProgram, HidesAPasswordInTheArguments) {
  RunBuilder given;
  given.Call(RunCommand, {"run", R"(C:\Tool.exe)", "/c DSN=Korvo;PWD=secret;"});
  EXPECT_EQ(given.machine.processes.launches.front().arguments, "/c DSN=Korvo;PWD=secret;");
  EXPECT_THAT(given.messages().back(), ::testing::Not(HasSubstr("secret")));
  EXPECT_THAT(given.observer.launches.front(), ::testing::Not(HasSubstr("secret")));
}

TEST(RunProgram, OfAMissingProgramShowsItsLineThenTheBox) {
  RunBuilder given;
  MissFile(given, R"(C:\Korvo\Tool.exe)");
  const CommandRecord record = given.Call(RunCommand, {"run", R"($(apppath)\Tool.exe)", "/x"});
  EXPECT_THAT(given.messages(), ElementsAre(R"(Running C:\Korvo\Tool.exe)"));
  EXPECT_THAT(given.window.boxes, ElementsAre("Error Running $(apppath)\\Tool.exe\r\n"
                                              "Description: File not found\r\nNumber: 53"));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_EQ(record.reason, "File not found (53)");
}

struct FailureCase {
  const char* what;
  CommandHandler handler;
  const char* missing;  ///< what cannot be started
  TokenList tokens;
  const char* box;
};

TEST(Registration, ShowsAFailureInABox) {
  const std::vector<FailureCase> rows = {
      {"reg",
       RegisterCommand,
       R"(C:\windows\regsvr32.exe)",
       {"reg", R"( $(apppath)\mail.dll)"},
       "Error Registering $(apppath)\\mail.dll\r\nDescription: File not found\r\nNumber: 53"},
      {"ureg",
       UnregisterCommand,
       R"(C:\windows\regsvr32.exe)",
       {"ureg", R"($(apppath)\mail.dll )"},
       "Error Unregistering $(apppath)\\mail.dll\r\nDescription: File not found\r\nNumber: 53"},
      {"a program that registers itself",
       RegisterCommand,
       R"(C:\Korvo\Korvo.exe)",
       {"reg", R"($(apppath)\Korvo.exe)"},
       "Error Registering $(apppath)\\Korvo.exe\r\nDescription: File not found\r\nNumber: 53"},
      {"no file",
       RegisterCommand,
       "",
       {"reg"},
       "Error Registering \r\nDescription: Subscript out of range\r\nNumber: 9"},
      {"no file to unregister",
       UnregisterCommand,
       "",
       {"ureg"},
       "Error Unregistering \r\nDescription: Subscript out of range\r\nNumber: 9"},
      {"no program",
       RunCommand,
       "",
       {"run"},
       "Error Running \r\nDescription: Subscript out of range\r\nNumber: 9"},
      {"no arguments",
       RunCommand,
       "",
       {"run", "Tool.exe"},
       "Error Running Tool.exe\r\nDescription: Subscript out of range\r\nNumber: 9"},
  };
  for (const FailureCase& row : rows) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    MissFile(given, row.missing);
    const CommandRecord record = given.Call(row.handler, row.tokens);
    EXPECT_THAT(given.window.boxes, ElementsAre(row.box));
    ASSERT_EQ(given.window.questions.size(), 1U);
    EXPECT_EQ(given.window.questions[0].title, "ZentUpdate");
    EXPECT_EQ(given.window.questions[0].buttons, BoxButtons::Ok);
    EXPECT_EQ(given.window.questions[0].icon, BoxIcon::Information);
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_EQ(record.outcome, Outcome::Failed);
    EXPECT_LE(given.messages().size(), 1U) << "no line follows a failed start";
  }
}

TEST(Registration, QuietShowsNoBoxAndIsAnErrorAllTheSame) {
  for (const ComponentHandler handler : {RegisterComponent, UnregisterComponent}) {
    RunBuilder given;
    MissFile(given, R"(C:\windows\regsvr32.exe)");
    given.run.BeginCommand({.line = 1, .keyword = "crie"});
    bool quiet = true;
    EXPECT_TRUE(handler(given.run, R"(C:\Korvo\mail.dll)", quiet).ok());
    given.run.EndCommand();
    EXPECT_THAT(given.window.boxes, IsEmpty());
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_EQ(given.messages().size(), 1U);
    EXPECT_EQ(given.observer.records.back().outcome, Outcome::Failed);
    EXPECT_EQ(given.observer.records.back().reason,
              "the registration tool is missing: C:\\windows\\regsvr32.exe; File not found (53)");
  }
}

TEST(Registration, RecordsAComponentThatTheSilentToolWillNotFind) {
  for (const CommandHandler handler : {RegisterCommand, UnregisterCommand}) {
    RunBuilder given;
    given.machine.files.PutFile(kSystemTool, "MZ");
    const CommandRecord record = given.Call(handler, {"reg", R"(C:\Korvo\none.dll)"});
    EXPECT_EQ(record.outcome, Outcome::Failed);
    EXPECT_EQ(record.reason, R"(the component is missing: C:\Korvo\none.dll)");
    EXPECT_THAT(given.window.boxes, IsEmpty());
    EXPECT_FALSE(given.run.state.ErrorOccurred);
  }
}

TEST(Registration, ALibraryMayBeNamedWithoutItsExtension) {
  RunBuilder given;
  given.machine.files.PutFile(kSystemTool, "MZ");
  given.machine.files.PutFile(R"(C:\Korvo\mail.dll)", "library");
  EXPECT_EQ(given.Call(RegisterCommand, {"reg", R"(C:\Korvo\mail)"}).outcome, Outcome::Done);
}

}  // namespace
}  // namespace zent
