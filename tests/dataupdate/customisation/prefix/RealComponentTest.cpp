#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "dataupdate/customisation/Customize.h"
#include "fakes/run/RunBuilder.h"
#include "platform/prefix/session/PrefixProcesses.h"
#include "support/TempFolder.h"

/// The commands with a real program of the host as the component.
namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::MemoryMachine;
using testing::ReadHostFile;
using testing::RecordingObserver;
using testing::RecordingWindow;
using testing::TempFolder;

/// A C: drive in a folder, names matched as they are.
class DriveLocator : public ProgramLocator {
 public:
  explicit DriveLocator(std::filesystem::path drive) : drive_(std::move(drive)) {}
  Result<std::filesystem::path> HostPath(std::string_view windows_path) override {
    std::string name(windows_path.substr(3));
    std::replace(name.begin(), name.end(), '\\', '/');
    if (!std::filesystem::exists(drive_ / name)) return StandardError(kFileNotFound);
    return drive_ / name;
  }

 private:
  std::filesystem::path drive_;
};

/// A machine in memory whose programs are those of a folder.
class RealComponent : public ::testing::Test {
 protected:
  RealComponent() {
    run_.state.AppPath = R"(C:\Korvo Files\)";
    run_.state.DataPath = R"(D:\My Data\)";
    machine_.files.PutFolder(R"(D:\My Data)");
  }

  void PutComponent(const std::string& commands) {
    const auto file = host_.Put("Korvo Files/ZentCustomize.exe", "#!/bin/sh\n" + commands + "\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  }
  void Rcw(const std::string& database) {
    EXPECT_TRUE(RunCustomisation(run_, TokenList({"rcw", database})).ok());
  }
  std::string Record() const { return ReadHostFile(host_.path() / "Korvo Files/record"); }

  TempFolder host_;
  DriveLocator programs_{host_.path()};
  Wine wine_{"", host_.path(), {}, "/no/wine"};
  PrefixProcesses processes_{programs_, wine_};
  MemoryMachine machine_;
  RecordingWindow window_;
  RecordingObserver observer_;
  Platform platform_{machine_.files,  machine_.registry, machine_.settings,
                     machine_.system, processes_,        machine_.shell,
                     machine_.clock,  machine_.versions, machine_.links};
  UpdateRun run_{platform_, window_, observer_, {}};
};

struct HostileCase {
  const char* what;
  const char* database;
  const char* argument;  ///< as the program reads it
};

constexpr HostileCase kHostileCases[] = {
    {"a plain name", "Korvo.mdb", R"(D:\My Data\Korvo.mdb)"},
    {"blanks", "My  Korvo .mdb", R"(D:\My Data\My  Korvo .mdb)"},
    {"quotes", R"(a" "b.mdb)", R"(D:\My Data\a" "b.mdb)"},
    {"a backslash at the end", R"(Old\)", R"(D:\My Data\Old\)"},
    {"a quote behind backslashes", R"(a\\".mdb)", R"(D:\My Data\a\\".mdb)"},
    {"what a shell would run", "$HOME `id` $(id); exit 9.mdb",
     R"(D:\My Data\$HOME `id` $(id); exit 9.mdb)"},
    {"an option", "--help", R"(D:\My Data\--help)"},
};

TEST_F(RealComponent, ReadsEveryNameAsOneArgument) {
  PutComponent("printf '<%s>\\n' \"$#\" \"$@\" >record");
  for (const HostileCase& row : kHostileCases) {
    SCOPED_TRACE(row.what);
    Rcw(row.database);
    EXPECT_EQ(Record(), std::string("<3>\n<") + row.argument +
                            ">\n<D:\\My Data\\Customize>\n<C:\\Korvo Files\\Temp>\n");
    EXPECT_FALSE(run_.state.ErrorOccurred);
  }
  EXPECT_THAT(observer_.messages, IsEmpty());
}

TEST_F(RealComponent, SaysWhatWentWrong) {
  PutComponent("echo 'Table Contacts is missing' >&2; exit 78");
  Rcw("Korvo.mdb");
  EXPECT_THAT(observer_.messages, ElementsAre("Error customizing Korvo \r\n"
                                              "Description: Table Contacts is missing\r\n"
                                              "Number: 78"));
  EXPECT_TRUE(run_.state.ErrorOccurred);
}

TEST_F(RealComponent, SaysThatTheDatabaseCannotBeOpened) {
  PutComponent("exit 2");
  Rcw("Korvo.mdb");
  EXPECT_THAT(observer_.messages, ElementsAre("Error Customizing Korvo - could not open database "
                                              "D:\\My Data\\Korvo.mdb"));
  EXPECT_TRUE(run_.state.ErrorOccurred);
}

TEST_F(RealComponent, ThatIsMissingIsAnError) {
  Rcw("Korvo.mdb");
  EXPECT_THAT(observer_.messages,
              ElementsAre("Error customizing Korvo \r\nDescription: ActiveX component can't create "
                          "object: C:\\Korvo Files\\ZentCustomize.exe\r\nNumber: 429"));
  EXPECT_TRUE(run_.state.ErrorOccurred);
}

}  // namespace
}  // namespace zent
