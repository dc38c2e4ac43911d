#include <array>
#include <string>

#include "platform/win32/UniqueHandle.h"
#include "ui/win32/OtherProgram.h"
#include "ui/win32/WindowTest.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;

/// Reads the log and goes on.
bool PressContinue() {
  WaitFor([] { return FindMain() != nullptr; });
  const HWND log = Control(MainWindow::Log);
  const bool read = TextOf(log) ==
                        "  Stra\xDF"
                        "e\r\n" &&
                    TextOf(FindMain()) == "Korvo Update";
  Click(Control(MainWindow::Continue));
  return read;
}

bool AnswerRetry() {
  const HWND box = WaitForBox();
  const bool read = TextOf(box) == "Korvo" && TextOf(BoxItem(box, kBoxText)) == "Permission denied";
  Click(BoxItem(box, IDRETRY));
  return read;
}

bool TypePassword() {
  const HWND box = WaitForBox();
  const HWND edit = EditOf(FindWindowA("#32770", "Enter Password"));
  Type(edit, "secret");
  const bool stars = SendMessageA(edit, EM_GETPASSWORDCHAR, 0, 0) == '*';
  Click(BoxItem(box, IDOK));
  return stars;
}

/// This program started once more, with a part to play.
class StartedProgram {
 public:
  explicit StartedProgram(const char* part) {
    std::array<char, MAX_PATH> path{};
    GetModuleFileNameA(nullptr, path.data(), MAX_PATH);
    std::string command = "\"" + std::string(path.data()) + "\" " + part;
    STARTUPINFOA start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION started{};
    CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                   &started);
    process_ = UniqueHandle(started.hProcess);
    CloseHandle(started.hThread);
  }

  DWORD ExitCode() {
    WaitForSingleObject(process_.get(), 30000);
    DWORD code = ~DWORD{0};
    GetExitCodeProcess(process_.get(), &code);
    return code;
  }

 private:
  UniqueHandle process_;
};

using OtherProgramTest = Win32WindowTest;

TEST_F(OtherProgramTest, ReadsTheLogAndPressesContinue) {
  bool continued = false;
  const auto raised = RunAndClose([&] {
    window.SetTitle("Korvo Update");
    window.AppendMessage("  Stra\u00dfe\r\n", 0);
    window.EnableButton(WindowButton::Continue, true);
    StartedProgram other("press-continue");
    continued = WhilePerson([&] { return other.ExitCode() == 0; });
  });
  EXPECT_TRUE(continued);
  EXPECT_THAT(raised, ElementsAre("Form_Load", "cmdContinue_Click"));
}

TEST_F(OtherProgramTest, AnswersABox) {
  RunAndClose([&] {
    StartedProgram other("answer-retry");
    EXPECT_EQ(window.Ask({.title = "Korvo",
                          .text = "Permission denied",
                          .buttons = BoxButtons::RetryCancel,
                          .icon = BoxIcon::Critical}),
              Answer::Retry);
    EXPECT_EQ(other.ExitCode(), 0U);
  });
}

TEST_F(OtherProgramTest, TypesAPasswordAndSeesStars) {
  RunAndClose([&] {
    StartedProgram other("type-password");
    EXPECT_EQ(window.AskText({.title = "Enter Password", .prompt = "Password", .hidden = true}),
              "secret");
    EXPECT_EQ(other.ExitCode(), 0U);
  });
}

}  // namespace

int PlayPart(std::string_view part) {
  if (part == "press-continue") return PressContinue() ? 0 : 1;
  if (part == "answer-retry") return AnswerRetry() ? 0 : 1;
  if (part == "type-password") return TypePassword() ? 0 : 1;
  return 2;
}

}  // namespace zent::testing
