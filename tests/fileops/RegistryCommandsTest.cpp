#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/run/RunBuilder.h"
#include "fileops/RegistryCommands.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RunBuilder;

struct WriteCase {
  const char* what;
  const char* address;
  KeyHandle root;  ///< where the text is found afterwards
  const char* key;
  const char* name;
};

constexpr WriteCase kWriteCases[] = {
    {"HKCU is the current user", R"(HKCU|Software\Zent\Korvo|Theme)", KeyHandle::CurrentUser,
     R"(Software\Zent\Korvo)", "Theme"},
    {"HKLM is the machine", R"(HKLM|SOFTWARE\Zent|Path)", KeyHandle::LocalMachine,
     R"(SOFTWARE\Zent)", "Path"},
    {"every missing level is created", R"(HKCU|New\A\B\C\D|Name)", KeyHandle::CurrentUser,
     R"(New\A\B\C\D)", "Name"},
    {"a backslash before the key does not count", R"(HKCU|\Software\Zent|Name)",
     KeyHandle::CurrentUser, R"(Software\Zent)", "Name"},
    {"an empty name is the default value", R"(HKCU|Software\Zent||)", KeyHandle::CurrentUser,
     R"(Software\Zent)", ""},
    {"what stands behind a fourth bar does not count", R"(HKCU|Software\Zent|Name|More)",
     KeyHandle::CurrentUser, R"(Software\Zent)", "Name"},
    {"small letters name an application", R"(hkcu|Software|Name)", KeyHandle::CurrentUser,
     R"(Software\VB and VBA Program Settings\hkcu\Software)", "Name"},
    {"any other root is an application", "Korvo|Settings|Theme", KeyHandle::CurrentUser,
     R"(Software\VB and VBA Program Settings\Korvo\Settings)", "Theme"},
    {"blanks belong to the root", " HKCU|Software|Name", KeyHandle::CurrentUser,
     R"(Software\VB and VBA Program Settings\ HKCU\Software)", "Name"},
    {"a long root name is an application, too", "HKEY_LOCAL_MACHINE|SOFTWARE|Name",
     KeyHandle::CurrentUser, R"(Software\VB and VBA Program Settings\HKEY_LOCAL_MACHINE\SOFTWARE)",
     "Name"},
};

TEST(WriteRegistryText, WritesAStringValue) {
  for (const WriteCase& row : kWriteCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    const CommandRecord record =
        given.Call(WriteRegistryCommand, {"regw", row.address, "some text"});
    const auto value = given.machine.registry.Value(row.root, row.key, row.name);
    ASSERT_TRUE(value.has_value());
    EXPECT_EQ(value->type, kRegSz);
    EXPECT_EQ(value->data, "some text");
    EXPECT_THAT(given.messages(),
                ElementsAre(std::string("Writing into Registry ") + row.address + " "));
    EXPECT_THAT(given.window.boxes, IsEmpty());
    EXPECT_EQ(given.machine.registry.OpenKeyCount(), 0U);
    EXPECT_EQ(record.outcome, Outcome::Done);
  }
}

TEST(WriteRegistryText, TheTextIsWrittenAsItStands) {
  RunBuilder given;
  given.Call(WriteRegistryCommand, {"regw", "HKCU|Software|Path", R"($(apppath)\a|b)"});
  EXPECT_EQ(given.machine.registry.Value(KeyHandle::CurrentUser, "Software", "Path")->data,
            R"($(apppath)\a|b)");
}

TEST(WriteRegistryText, AFailedWriteShowsAnEmptyErrorAndTheListGoesOn) {
  for (const char* call : {"CreateKey", "SetText", "CloseKey"}) {
    SCOPED_TRACE(call);
    RunBuilder given;
    given.machine.registry.log().FailWhere(call, StandardError(kPathFileAccess));
    const CommandRecord record =
        given.Call(WriteRegistryCommand, {"regw", R"(HKLM|SOFTWARE\Zent|Path)", "x"});
    EXPECT_THAT(given.messages(), ElementsAre(R"(Writing into Registry HKLM|SOFTWARE\Zent|Path )"));
    EXPECT_THAT(given.window.boxes,
                ElementsAre("Error Writing into Registry HKLM|SOFTWARE\\Zent|Path \r\n"
                            "Description: \r\nNumber: 0"));
    EXPECT_EQ(given.window.questions[0].buttons, BoxButtons::Ok);
    EXPECT_EQ(given.window.questions[0].icon, BoxIcon::Information);
    EXPECT_FALSE(given.run.state.ErrorOccurred);
    EXPECT_EQ(record.outcome, Outcome::Failed);
    EXPECT_EQ(record.reason, "Path/File access error");
  }
}

TEST(WriteRegistryText, AFailedSettingIsAReportedError) {
  RunBuilder given;
  given.machine.registry.log().FailWhere("SetText", StandardError(kPathFileAccess));
  const CommandRecord record =
      given.Call(WriteRegistryCommand, {"regw", "Korvo|Settings|Theme", "x"});
  EXPECT_THAT(given.window.boxes, ElementsAre("Error Writing into Registry Korvo|Settings|Theme\r\n"
                                              "Description: Path/File access error\r\nNumber: 75"));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
}

TEST(WriteRegistryText, ASettingWithoutASectionIsAReportedError) {
  RunBuilder given;
  given.Call(WriteRegistryCommand, {"regw", "Korvo||Theme", "x"});
  EXPECT_THAT(given.window.boxes, ElementsAre(::testing::EndsWith("Number: 5")));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

struct AddressCase {
  const char* what;
  TokenList tokens;
  const char* headline;
};

TEST(WriteRegistryText, AnAddressThatIsTooShortIsAReportedError9) {
  const std::vector<AddressCase> rows = {
      {"no address", {"regw"}, "Error Writing into Registry "},
      {"no text", {"regw", "HKCU|A|B"}, "Error Writing into Registry HKCU|A|B"},
      {"no bar", {"regw", "HKCU", "x"}, "Error Writing into Registry HKCU"},
      {"no name", {"regw", "HKCU|A", "x"}, "Error Writing into Registry HKCU|A"},
      {"one bar at the end adds no name",
       {"regw", "HKCU|A|", "x"},
       "Error Writing into Registry HKCU|A|"},
      {"an empty address", {"regw", "", "x"}, "Error Writing into Registry "},
  };
  for (const AddressCase& row : rows) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    const CommandRecord record = given.Call(WriteRegistryCommand, row.tokens);
    EXPECT_THAT(given.window.boxes,
                ElementsAre(row.headline +
                            std::string("\r\nDescription: Subscript out of range\r\nNumber: 9")));
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_THAT(given.messages(), IsEmpty());
    EXPECT_THAT(given.machine.registry.log().changes(), IsEmpty());
    EXPECT_EQ(record.outcome, Outcome::Failed);
  }
}

}  // namespace
}  // namespace zent
