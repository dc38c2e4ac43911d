#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "app/RunRecorder.h"
#include "support/TempFolder.h"

namespace zent {
namespace {

using testing::TempFolder;

/// A recorder into files of a temporary folder, and what they hold after its work.
struct Recorded {
  Recorded() {
    Result<RecordFile> log = RecordFile::Create((folder.path() / "log").string());
    Result<RecordFile> events = RecordFile::Create((folder.path() / "events").string());
    recorder.emplace(std::move(log.value()), std::move(events.value()), &notes);
  }
  std::string Log() const { return folder.Get("log"); }
  nlohmann::json Event() const { return nlohmann::json::parse(folder.Get("events")); }

  TempFolder folder;
  std::ostringstream notes;
  std::optional<RunRecorder> recorder;
};

TEST(RunRecorder, TheLogIsTheTextOfTheMessageBox) {
  Recorded given;
  given.recorder->OnMessage("one");
  given.recorder->OnMessage("");
  EXPECT_EQ(given.Log(), "  one\r\n  \r\n");
}

TEST(RunRecorder, WritesEachThingAsItHappens) {
  Recorded given;
  given.recorder->OnMessage(
      "K\xC3\xBC"
      "che\r\n\"x\"");
  EXPECT_EQ(given.Event(), nlohmann::json({{"event", "message"},
                                           {"text",
                                            "K\xC3\xBC"
                                            "che\r\n\"x\""}}));
}

TEST(RunRecorder, ABoxIsAnEventAndANoteForTheTerminal) {
  Recorded given;
  given.recorder->OnBox({.title = "ZentUpdate",
                         .text = "Error\r\nNumber: 70",
                         .buttons = BoxButtons::RetryCancel,
                         .icon = BoxIcon::Information},
                        Answer::Cancel);
  EXPECT_EQ(given.Event(), nlohmann::json({{"event", "box"},
                                           {"title", "ZentUpdate"},
                                           {"text", "Error\r\nNumber: 70"},
                                           {"buttons", "RetryCancel"},
                                           {"icon", "information"},
                                           {"answer", "cancel"}}));
  EXPECT_EQ(given.notes.str(), "Error\nNumber: 70\n-> cancel\n");
}

TEST(RunRecorder, ABoxNamesItsIcon) {
  constexpr std::pair<BoxIcon, const char*> kIcons[] = {{BoxIcon::Information, "information"},
                                                        {BoxIcon::Question, "question"},
                                                        {BoxIcon::Critical, "critical"},
                                                        {BoxIcon::None, "none"}};
  for (const auto& [icon, name] : kIcons) {
    Recorded given;
    given.recorder->OnBox({.text = "Text", .icon = icon}, Answer::Ok);
    EXPECT_EQ(given.Event().at("icon"), name);
  }
}

TEST(RunRecorder, AnInputIsABoxToo) {
  Recorded given;
  given.recorder->OnInput({.title = "Enter Password", .prompt = "?", .hidden = true}, "***");
  EXPECT_EQ(given.Event().at("buttons"), "Input");
  EXPECT_EQ(given.Event().at("answer"), "***");
}

TEST(RunRecorder, ACommandHasItsRecord) {
  Recorded given;
  given.recorder->OnCommand({.line = 7,
                             .keyword = "msg",
                             .tokens = {"MSG", "a"},
                             .outcome = Outcome::Skipped,
                             .reason = "why"});
  EXPECT_EQ(given.Event(), nlohmann::json({{"event", "command"},
                                           {"line", 7},
                                           {"keyword", "msg"},
                                           {"tokens", {"MSG", "a"}},
                                           {"record", "skipped"},
                                           {"reason", "why"}}));
}

TEST(RunRecorder, AStepOfAnXmlChangeNamesFileElementAndPlace) {
  Recorded given;
  given.recorder->OnXml({.file = R"(D:\Data\Customize\Forms.xml)",
                         .action = XmlAction::Insert,
                         .node = "/Forms/Form[@ID='7']",
                         .place = "/Forms/Form[@ID='8']",
                         .outcome = XmlOutcome::InsertedBefore});
  EXPECT_EQ(given.Event(), nlohmann::json({{"event", "xml"},
                                           {"file", R"(D:\Data\Customize\Forms.xml)"},
                                           {"operation", "Insert"},
                                           {"node", "/Forms/Form[@ID='7']"},
                                           {"place", "/Forms/Form[@ID='8']"},
                                           {"outcome", "inserted-before"}}));
}

TEST(RunRecorder, AFailedStepOfAnXmlChangeHasItsReason) {
  Recorded given;
  given.recorder->OnXml({.file = "a.xml",
                         .action = XmlAction::Save,
                         .outcome = XmlOutcome::Failed,
                         .reason = "Disk full (61)"});
  const nlohmann::json event = given.Event();
  EXPECT_EQ(event.at("outcome"), "failed");
  EXPECT_EQ(event.at("reason"), "Disk full (61)");
}

TEST(RunRecorder, NamesEveryActionAndOutcomeOfAnXmlChange) {
  for (const auto& [action, name] :
       {std::pair{XmlAction::Load, "Load"}, std::pair{XmlAction::Skip, "Skip"},
        std::pair{XmlAction::Replace, "Replace"}, std::pair{XmlAction::Delete, "Delete"},
        std::pair{XmlAction::Tab, "Tab"}, std::pair{XmlAction::Field, "Field"},
        std::pair{XmlAction::Stamp, "Stamp"}, std::pair{XmlAction::Save, "Save"}}) {
    Recorded given;
    given.recorder->OnXml({.file = "a.xml", .action = action});
    EXPECT_EQ(given.Event().at("operation"), name);
  }
  for (const auto& [outcome, name] :
       {std::pair{XmlOutcome::Done, "done"}, std::pair{XmlOutcome::Appended, "appended"},
        std::pair{XmlOutcome::Replaced, "replaced"}, std::pair{XmlOutcome::NotFound, "not-found"},
        std::pair{XmlOutcome::Nothing, "nothing"}}) {
    Recorded given;
    given.recorder->OnXml({.file = "a.xml", .outcome = outcome});
    EXPECT_EQ(given.Event().at("outcome"), name);
  }
}

TEST(RunRecorder, TheEndNamesTheResult) {
  for (const auto& [result, name] :
       {std::pair{RunResult::Success, "success"}, std::pair{RunResult::Failed, "failed"},
        std::pair{RunResult::NotInstalled, "not-installed"},
        std::pair{RunResult::Refused, "refused"}}) {
    Recorded given;
    given.recorder->OnEnd(result, true);
    EXPECT_EQ(given.Event(),
              nlohmann::json({{"event", "end"}, {"result", name}, {"restart", true}}));
  }
}

TEST(RunRecorder, TextThatIsNoUtf8IsReplacedNotThrown) {
  Recorded given;
  given.recorder->OnMessage("\xE4");
  EXPECT_EQ(given.Event().at("text"), "\xEF\xBF\xBD");
}

TEST(RecordFile, AFileThatCannotBeMadeIsAnError) {
  EXPECT_EQ(RecordFile::Create("/nosuch/folder/log").number(), kPathFileAccess);
}

}  // namespace
}  // namespace zent
