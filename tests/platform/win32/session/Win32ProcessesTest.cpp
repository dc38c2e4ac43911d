#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/win32/session/StartedProgram.h"
#include "platform/win32/session/Win32Processes.h"

namespace zent {
namespace {

using ::testing::Optional;
using testing::PutOtherProgram;
using testing::RecordOf;
using ::testing::StartsWith;
using testing::TempFolder;
using testing::WaitForExit;

constexpr std::uint32_t kExitOfOtherProgram = 7;

Result<std::uint32_t> Start(const std::string& program, const std::string& arguments = "") {
  return Win32Processes().Start({program, arguments, program + " " + arguments});
}

/// What the program records when it was started with these arguments.
std::string ExpectedRecord(const std::string& program, const std::string& arguments) {
  const std::string folder = program.substr(0, program.rfind('\\'));
  const std::string rest = arguments.empty() ? "" : " " + arguments;
  return "\"" + program + "\"" + rest + "\n" + folder + "\n2\n";  // 2: minimised with the focus
}

struct StartCase {
  const char* what;
  const char* file;
  const char* named;  ///< as the file, or without its extension
  const char* arguments;
};

constexpr StartCase kStartCases[] = {
    {"without arguments", "Korvo.exe", "Korvo.exe", ""},
    {"blanks in folder and name", R"(Korvo Files\run me.exe)", R"(Korvo Files\run me.exe)", "/s"},
    {"arguments reach it uncut", "a.exe", "a.exe", R"(/s "C:\a b\c.dll" PROP="x y" \"z  )"},
    {"only the name with .exe exists", "regsvr32.exe", "regsvr32", "/s /u \"x\""},
    {"a name with a dot", "setup 1.2.exe", "setup 1.2", ""},
    {"no extension at all", "program", "program", "a"},
    {"another extension", "program.tool", "program.tool", "a"},
    {"an umlaut", "M\xFCller.exe", "M\xFCller.exe", "M\xFCller"},
};

TEST(Win32Processes, StartsAProgramInItsOwnFolder) {
  for (const StartCase& row : kStartCases) {
    SCOPED_TRACE(row.what);
    const TempFolder folder;
    const auto utf8 = [](std::string text) {
      const std::size_t at = text.find('\xFC');
      return at == std::string::npos ? text : text.replace(at, 1, "\xC3\xBC");
    };
    // The folder's path holds no other letters than those of every code page.
    const std::string named = folder.path().string() + "\\" + utf8(row.named);
    const std::string file = PutOtherProgram(folder, utf8(row.file));

    const auto started = Start(named, utf8(row.arguments));

    ASSERT_TRUE(started.ok()) << started.error().description;
    EXPECT_THAT(WaitForExit(started.value()), Optional(kExitOfOtherProgram));
    const std::string ansi = folder.path().string() + "\\" + row.file;
    EXPECT_THAT(RecordOf(file), StartsWith(ExpectedRecord(ansi, row.arguments)));
  }
}

TEST(Win32Processes, AFolderOfTheNameDoesNotHideTheProgram) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.path() / "tool");
  const std::string file = PutOtherProgram(folder, "tool.exe");

  const auto started = Start(folder.path().string() + "\\tool");

  ASSERT_TRUE(started.ok());
  EXPECT_THAT(WaitForExit(started.value()), Optional(kExitOfOtherProgram));
  EXPECT_THAT(RecordOf(file), StartsWith(ExpectedRecord(file, "")));
}

struct RefusedCase {
  const char* what;
  const char* program;  ///< below the test's folder, unless it has a drive
  int number;
};

constexpr RefusedCase kRefusedCases[] = {
    {"a missing file", R"(\missing.exe)", kFileNotFound},
    {"a missing folder", R"(\missing\a.exe)", kPathNotFound},
    {"a folder", R"(\folder)", kFileNotFound},
    {"a path that ends in a backslash", R"(\program.exe\)", kFileNotFound},
    {"a path that ends in a slash", R"(\folder/)", kFileNotFound},
    {"a quote", R"(\program.exe" /x)", kFileNotFound},
    {"a text", R"(\text.txt)", kInvalidProcedureCall},
    {"an empty file", R"(\empty.exe)", kInvalidProcedureCall},
    {"a damaged program", R"(\damaged.exe)", kInvalidProcedureCall},
    {"a name that the code page lacks", "\\\xE4\xB8\xAD.exe", kBadFileName},
};

TEST(Win32Processes, RefusesWhatIsNoProgram) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.path() / "folder");
  folder.Put("text.txt", "Hello");
  folder.Put("empty.exe", "");
  folder.Put("damaged.exe", "MZ, and nothing that could follow it");
  PutOtherProgram(folder, "program.exe");
  for (const RefusedCase& row : kRefusedCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Start(folder.path().string() + row.program).number(), row.number);
  }
  EXPECT_EQ(Start("").number(), kFileNotFound);
  EXPECT_EQ(Start(R"(C:\)" + std::string(300, 'a')).number(), kFileNotFound);
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "program.exe.record"));
}

TEST(Win32Processes, NeverSearchesForAProgram) {
  // In the Windows folder, where a search would look.
  EXPECT_EQ(Start("notepad.exe").number(), kFileNotFound);
  const TempFolder folder;
  EXPECT_EQ(Start(folder.path().string() + R"(\notepad.exe)").number(), kFileNotFound);
}

TEST(Win32Processes, TakesARelativePathFromTheCurrentFolder) {
  const TempFolder folder;
  const std::string file = PutOtherProgram(folder, R"(tools\a.exe)");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());

  const auto started = Start(R"(tools\a.exe)", "x");

  std::filesystem::current_path(before);
  ASSERT_TRUE(started.ok());
  EXPECT_THAT(WaitForExit(started.value()), Optional(kExitOfOtherProgram));
  EXPECT_THAT(RecordOf(file), StartsWith(ExpectedRecord(file, "x")));
}

}  // namespace
}  // namespace zent
