#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "app/HostFile.h"
#include "app/TraceFile.h"
#include "app/Translate.h"
#include "support/TempFolder.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A system whose standard input is `input`; records what it is to show. It has no machine.
class WordsHost final : public ProgramHost {
 public:
  ProgramTexts Texts() override { return {}; }
  std::optional<Refusal> OpenMachine(const CommandLine& /*line*/) override {
    return Refusal{ExitCode::Failed, "no machine"};
  }
  const Platform& platform() override { throw std::logic_error("no machine"); }
  const std::string& package() override { throw std::logic_error("no machine"); }
  std::string ShownPackage() override { return {}; }
  jet::Storage& databases() override { throw std::logic_error("no machine"); }
  std::string ComputerName() override { return {}; }
  std::unique_ptr<UpdateWindow> MakeScreen(WindowChoice /*choice*/, bool /*scripted*/) override {
    return nullptr;
  }
  Result<std::string> ReadInput() override { return input; }
  void Show(const std::string& text) override { shown += text; }
  void Complain(const std::string& text) override { complaints.push_back(text); }
  std::ostream* Notes() override { return nullptr; }

  Result<std::string> input = std::string();
  std::string shown;
  std::vector<std::string> complaints;
};

ExitCode RunLine(WordsHost& host, std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "zentupdate");
  return RunProgram(host, static_cast<int>(arguments.size()), arguments.data());
}

struct DialectCase {
  const char* to;
  const char* shown;
};

constexpr DialectCase kDialectCases[] = {{"sqlserver", "SELECT SubString(A,1,2) FROM T\n"},
                                         {"oracle", "SELECT Substr(A,1,2) FROM T\n"},
                                         {"access", "SELECT Mid(A,1,2) FROM T\n"}};

TEST(Translate, ShowsTheStatementAsEachKindGetsIt) {
  for (const DialectCase& row : kDialectCases) {
    WordsHost host;
    EXPECT_EQ(RunLine(host, {"translate", "--to", row.to, "SELECT Mid(A,1,2) FROM T"}),
              ExitCode::Success);
    EXPECT_EQ(host.shown, row.shown);
    EXPECT_THAT(host.complaints, IsEmpty());
  }
}

struct InputCase {
  const char* what;
  const char* input;
  const char* shown;
};

constexpr InputCase kInputCases[] = {
    {"a line", "SELECT 1\n", "SELECT 1\n"},
    {"no line break", "SELECT 1", "SELECT 1\n"},
    {"a line of Windows", "SELECT 1\r\n", "SELECT 1\n"},
    {"one final line break alone", "SELECT 1\n\n", "SELECT 1\n\n"},
    {"blanks", "  SELECT 1  \n", "  SELECT 1  \n"},
    {"several lines", "SELECT\n 1\n", "SELECT\n 1\n"},
    {"nothing", "", "\n"},
};

TEST(Translate, ReadsStandardInputAndTrimsOneFinalLineBreak) {
  for (const InputCase& row : kInputCases) {
    SCOPED_TRACE(row.what);
    WordsHost host;
    host.input = std::string(row.input);
    EXPECT_EQ(RunLine(host, {"translate", "--to", "sqlserver", "-"}), ExitCode::Success);
    EXPECT_EQ(host.shown, row.shown);
  }
}

struct ArgumentCase {
  const char* argument;
  const char* shown;
};

constexpr ArgumentCase kArgumentCases[] = {{" WHERE X =Null ", " WHERE X  Is Null \n"},
                                           {"SELECT 1\n", "SELECT 1\n\n"},
                                           {"SELECT 1\r\n", "SELECT 1\r\n\n"}};

TEST(Translate, KeepsTheBlanksOfAnArgument) {
  for (const ArgumentCase& row : kArgumentCases) {
    SCOPED_TRACE(row.argument);
    WordsHost host;
    RunLine(host, {"translate", "--to", "sqlserver", row.argument});
    EXPECT_EQ(host.shown, row.shown);
  }
}

TEST(Translate, WarnsOfKnownTrapsApartFromTheStatement) {
  WordsHost host;
  EXPECT_EQ(RunLine(host, {"translate", "--to", "sqlserver", "LTrim(A)"}), ExitCode::Success);
  EXPECT_EQ(host.shown, "Ldbo.TrimVBA(A)\n");
  EXPECT_THAT(host.complaints, ElementsAre(HasSubstr("warning: the name LTrim()")));
  host.complaints.clear();
  RunLine(host, {"translate", "--to", "access", "LTrim(A)"});
  EXPECT_THAT(host.complaints, IsEmpty());
}

TEST(Translate, RefusesInputThatCannotBeTaken) {
  WordsHost host;
  host.input = StandardError(kOutOfStringSpace);
  EXPECT_EQ(RunLine(host, {"translate", "--to", "oracle"}), ExitCode::WrongCommandLine);
  EXPECT_EQ(host.shown, "");
  EXPECT_EQ(host.complaints.size(), 1U);
}

TEST(ReadAll, TakesEveryByteUpToItsLimit) {
  std::istringstream some(std::string("a\0\r\n\xFF", 5));
  EXPECT_EQ(ReadAll(some).value_or(""), std::string("a\0\r\n\xFF", 5));
  std::istringstream none;
  EXPECT_EQ(ReadAll(none).value_or("?"), "");
  std::istringstream huge(std::string((16U << 20U) + 1, 'x'));
  EXPECT_EQ(ReadAll(huge).number(), kOutOfStringSpace);
}

TEST(TraceFile, AppendsToWhatTheFileHolds) {
  const testing::TempFolder folder;
  const std::string path = folder.Put("trace.txt", "before\r\n").string();
  TraceFile trace(path);
  EXPECT_TRUE(trace.CanAppend());
  trace.Append("one\r\n");
  trace.Append("two\r\n");
  EXPECT_EQ(folder.Get("trace.txt"), "before\r\none\r\ntwo\r\n");
}

TEST(TraceFile, ThatCannotBeWrittenIsSaidBeforehand) {
  const testing::TempFolder folder;
  EXPECT_FALSE(TraceFile((folder.path() / "missing/trace.txt").string()).CanAppend());
}

}  // namespace
}  // namespace zent
