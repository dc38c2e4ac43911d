#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "platform/prefix/session/HostScripts.h"
#include "platform/prefix/session/PrefixShell.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using testing::PutRecorder;
using testing::TempFolder;
using testing::WaitForFile;

class PrefixShellTest : public ::testing::Test {
 protected:
  std::string PathList() const { return (host_.path() / "bin").string(); }
  Wine TheWine() {
    return Wine(
        PathList(), host_.path() / "machine",
        [this]() -> Status {
          ++hand_overs_;
          return hand_over_;
        },
        host_.path() / "usual/wine64");
  }
  std::string Record() {
    const auto file = host_.path() / "record";
    std::string record = WaitForFile(file);
    std::filesystem::remove(file);
    return record;
  }

  TempFolder host_;
  Status hand_over_;
  int hand_overs_ = 0;
};

constexpr const char* kWebAddresses[] = {
    "http://www.zentware.example/download/KorvoSP%203.6.0.exe",
    "https://a.example/",
    "HTTPS://A.example/?a=b&c=$(id);'\"`#x",
    "http://\xC3\xA4.example/",
};

TEST_F(PrefixShellTest, OpensWebAddresses) {
  PutRecorder(host_, "bin/xdg-open", "record");
  const Wine wine = TheWine();
  PrefixShell shell(PathList(), wine);
  for (const char* address : kWebAddresses) {
    SCOPED_TRACE(address);
    EXPECT_TRUE(shell.OpenAddress(address).ok());
    EXPECT_THAT(Record(), EndsWith("\n<" + std::string(address) + ">\n"));
  }
  EXPECT_EQ(hand_overs_, 0);
}

struct AddressCase {
  const char* what;
  std::string address;
};

const AddressCase kRefusedAddresses[] = {
    {"nothing", ""},
    {"a script", "javascript:alert(1)"},
    {"a file", "file:///etc/passwd"},
    {"a path", "/etc/passwd"},
    {"an option", "-flag"},
    {"a longer option", "--help=http://a"},
    {"another scheme", "ftp://a.example/"},
    {"a scheme that begins like one", "httpx://a"},
    {"a blank before it", " http://a"},
    {"a blank within it", "http://a b"},
    {"a line break", "http://a\nb"},
    {"a carriage return behind it", "http://a\r"},
    {"a tab", "http://a\tb"},
    {"an escape character", "http://a\x1B[2J"},
    {"a NUL", std::string("http://a\0b", 10)},
    {"a delete character", "http://a\x7F"},
    {"a control of the upper range", "http://a\xC2\x9B"},
    {"a blank that does not break",
     "http://a\xC2\xA0"
     "b"},
    {"bytes that are no text", "http://a\xFF"},
    {"a scheme alone", "http://"},
    {"a scheme without slashes", "http:a.example"},
};

TEST_F(PrefixShellTest, RefusesEveryOtherAddress) {
  PutRecorder(host_, "bin/xdg-open", "record");
  const Wine wine = TheWine();
  PrefixShell shell(PathList(), wine);
  for (const AddressCase& row : kRefusedAddresses) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(shell.OpenAddress(row.address).number(), kInvalidProcedureCall);
  }
  EXPECT_FALSE(std::filesystem::exists(host_.path() / "record"));
}

TEST_F(PrefixShellTest, SaysWhenTheHostCannotOpenAddresses) {
  const Wine wine = TheWine();
  EXPECT_EQ(PrefixShell(PathList(), wine).OpenAddress("http://a.example/").number(),
            kDeviceUnavailable);
}

TEST_F(PrefixShellTest, WithoutADisplayThereAreNoWindows) {
  const Wine wine = TheWine();
  PrefixShell shell(PathList(), wine);
  EXPECT_EQ(shell.FindWindowByTitle("Korvo"), WindowHandle::None);
  EXPECT_EQ(shell.PostClose(WindowHandle{7}).number(), kDeviceUnavailable);
}

/// One window, called Korvo, that records who asks it to close.
class OneWindow : public DesktopWindows {
 public:
  WindowHandle FindWindowByTitle(std::string_view title) override {
    return title == "Korvo" ? WindowHandle{7} : WindowHandle::None;
  }
  Status PostClose(WindowHandle window) override {
    closed.push_back(window);
    return {};
  }
  std::vector<WindowHandle> closed;
};

TEST_F(PrefixShellTest, AsksTheWindowsOfADisplay) {
  const Wine wine = TheWine();
  OneWindow windows;
  PrefixShell shell(PathList(), wine, &windows);

  EXPECT_EQ(shell.FindWindowByTitle("Korvo"), WindowHandle{7});
  EXPECT_EQ(shell.FindWindowByTitle("other"), WindowHandle::None);
  EXPECT_TRUE(shell.PostClose(WindowHandle{7}).ok());

  EXPECT_THAT(windows.closed, ElementsAre(WindowHandle{7}));
}

TEST_F(PrefixShellTest, NeedsNoPrivilege) {
  const Wine wine = TheWine();
  EXPECT_TRUE(PrefixShell(PathList(), wine).AcquireShutdownPrivilege());
}

struct SessionCase {
  const char* what;
  std::uint32_t action;
  const char* arguments;
};

constexpr SessionCase kSessionCases[] = {
    {"restart", kRestart, "<wineboot>\n<--end-session>\n<--restart>\n"},
    {"restart by force", kRestart | kForce,
     "<wineboot>\n<--end-session>\n<--force>\n<--restart>\n"},
    {"shut down", kShutDown, "<wineboot>\n<--end-session>\n<--shutdown>\n"},
    {"power off by force", kPowerOff | kForce,
     "<wineboot>\n<--end-session>\n<--force>\n<--shutdown>\n"},
};

TEST_F(PrefixShellTest, EndsTheSessionOfTheMachineThroughWine) {
  PutRecorder(host_, "bin/wine", "record");
  const auto machine = host_.path() / "machine";
  std::filesystem::create_directory(machine);
  const Wine wine = TheWine();
  for (const SessionCase& row : kSessionCases) {
    SCOPED_TRACE(row.what);
    hand_overs_ = 0;
    EXPECT_TRUE(PrefixShell(PathList(), wine).EndSession(row.action).ok());
    const std::string record = Record();
    EXPECT_THAT(record, HasSubstr("WINEPREFIX=" + machine.string() + "\n"));
    EXPECT_THAT(record, EndsWith("pwd=" + machine.string() + "\n" + row.arguments));
    EXPECT_EQ(hand_overs_, 1);
  }
}

TEST_F(PrefixShellTest, WithoutWineTheNextStartIsTheRestart) {
  const Wine wine = TheWine();
  EXPECT_TRUE(PrefixShell(PathList(), wine).EndSession(kRestart).ok());
  EXPECT_EQ(hand_overs_, 0);
}

TEST_F(PrefixShellTest, SaysWhenTheMachineCannotBeHandedOver) {
  PutRecorder(host_, "bin/wine", "record");
  hand_over_ = StandardError(kPermissionDenied);
  const Wine wine = TheWine();
  EXPECT_EQ(PrefixShell(PathList(), wine).EndSession(kRestart).number(), kPermissionDenied);
  EXPECT_FALSE(std::filesystem::exists(host_.path() / "record"));
}

TEST_F(PrefixShellTest, RefusesActionsThatAreNone) {
  const Wine wine = TheWine();
  for (const std::uint32_t action : {0U, 3U, 10U, 16U, 32U, kRestart | 64U}) {
    SCOPED_TRACE(action);
    EXPECT_EQ(PrefixShell(PathList(), wine).EndSession(action).number(), kInvalidProcedureCall);
  }
}

}  // namespace
}  // namespace zent
