#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>
#include <nlohmann/json.hpp>

#include "contracts/FileVectors.h"
#include "platform/prefix/files/TestMachine.h"
#include "support/posix/ChildProcess.h"

/// Calls on files and their outcome, recorded from the Windows calls.
namespace zent {
namespace {

using nlohmann::json;
using testing::Hold;
using testing::HoldingProcess;
using testing::TestMachine;

json Vectors(const std::string& list) { return testing::FileVectors("operations.json", list); }

/// Calls and cases in which we do not do as recorded, and why.
const std::map<std::string, std::string> kLeftOutCalls = {
    {"copy new", "no call of the port fails when the target exists"},
    {"remove folder", "no call of the port removes folders"},
};
struct OtherOutcome {
  int error;
  const char* reason;
};
const std::map<std::string, OtherOutcome> kOtherOutcomes = {
    {"copy onto a hidden target", {kPathFileAccess, "documented for Windows: fails with 5"}},
    {"copy to a missing drive", {kPathNotFound, "recorded 2; Windows: 3"}},
    {"create on a missing drive", {kPathNotFound, "recorded 2; Windows: 3"}},
    {"create-always over a hidden file with normal attributes",
     {0, "a write keeps the attributes, which is what Windows asks for"}},
    {"set attributes 39", {0, "recorded 33 for want of rights; Windows keeps all bits"}},
};
/// Recorded attributes that we do not report.
const std::map<std::string, std::uint32_t> kOtherAttributes = {{"set attributes 39", 39}};
/// Names that we leave otherwise than recorded.
const std::map<std::string, std::string> kOtherNames = {
    {"rename changing only the case", "S.TXT"},  // Windows changes the spelling
};

class Operation {
 public:
  explicit Operation(const json& row) : row_(row) {
    machine_.MakeFolder("top/w/Dir/Sub");
    machine_.MakeFolder("top/w/Ren");
    machine_.MakeFolder("top/w/Empty");
    machine_.Put("top/w/a.txt", "a");
    machine_.Put("top/w/s.txt", "source");
    machine_.Put("top/w/t.txt", "target");
    ::utimensat(AT_FDCWD, Host("s.txt").c_str(), kOldTimes, 0);
    std::filesystem::create_directory(machine_.path() / "other");
    std::filesystem::create_symlink("../other", machine_.path() / "dosdevices/z:");
    files_ = &machine_.Open(R"(C:\top\w)");
    const json given = row.value("given", json::object());
    for (const auto& [name, attributes] : given.items()) {
      EXPECT_TRUE(files_->SetAttributes(name, attributes.get<std::uint32_t>()).ok());
    }
  }

  void Check() {
    const std::string what = row_["what"];
    const std::string call = row_["call"];
    const std::string path = row_["path"];
    const std::string to = row_["to"];
    const auto other = kOtherOutcomes.find(what);
    const int number = Call(call, path, to).number();
    if (other != kOtherOutcomes.end()) {
      EXPECT_EQ(number, other->second.error) << other->second.reason;
    } else {
      EXPECT_EQ(number, testing::RunTimeNumberOf(call, row_["error"]));
    }
    if (number == 0 || other == kOtherOutcomes.end()) CheckAfter(to);
  }

 private:
  static constexpr struct timespec kOldTimes[2] = {{1'000'000, 0}, {1'000'000, 0}};

  std::filesystem::path Host(const std::string& name) const { return machine_.C("top/w/" + name); }

  Status Call(const std::string& call, const std::string& path, const std::string& to) {
    if (call == "copy") return files_->Copy(path, to);
    if (call == "move") return files_->Move(path, to);
    if (call == "delete") return files_->Delete(path);
    if (call == "folder") return files_->CreateFolder(path);
    if (call == "write") return files_->Write(path, to);
    if (call == "open") return files_->OpenForReading(path).status();
    if (call == "attributes") {
      return files_->SetAttributes(path, static_cast<std::uint32_t>(std::stoul(to)));
    }
    ADD_FAILURE() << "no such call: " << call;
    return {};
  }

  void CheckAfter(const std::string& to) {
    const std::string what = row_["what"];
    const std::string call = row_["call"];
    const std::string path = row_["path"];
    const std::string changed = call == "copy" || call == "move" ? to : path;
    if (row_.contains("contents_after")) {
      EXPECT_EQ(ReadWholeFile(*files_, changed).value_or("none"),
                row_["contents_after"].get<std::string>());
    }
    if (row_.contains("attributes_after")) {
      const auto other = kOtherAttributes.find(what);
      EXPECT_EQ(files_->Attributes(changed).value_or(0),
                other != kOtherAttributes.end() ? other->second
                                                : row_["attributes_after"].get<std::uint32_t>());
    }
    if (row_.contains("name_after")) {
      const auto other = kOtherNames.find(what);
      const std::string recorded = row_["name_after"];
      EXPECT_TRUE(
          std::filesystem::exists(Host(other != kOtherNames.end() ? other->second : recorded)));
    }
    if (row_.contains("same_time")) {
      EXPECT_EQ(std::filesystem::last_write_time(Host(changed)),
                std::filesystem::last_write_time(Host("s.txt")));
    }
    if (call == "delete") {
      const bool gone = row_["error"] == 0;
      EXPECT_EQ(std::filesystem::exists(Host("t.txt")), !gone);
    }
  }

  json row_;
  TestMachine machine_;
  FileSystem* files_ = nullptr;
};

TEST(OperationVectors, EndAsRecorded) {
  for (const json& row : Vectors("operations")) {
    SCOPED_TRACE(row["what"].get<std::string>());
    if (kLeftOutCalls.contains(row["call"])) continue;
    Operation(row).Check();
  }
}

/// How a process of this system holds the file, for each way of the recording. One whose holder
/// shares more than "reading" has no counterpart: there is only open and not open.
const std::map<std::string, Hold> kHolds = {
    {"open for reading, shares nothing", Hold::Reading},
    {"open for reading, shares reading", Hold::Reading},
    {"open for reading, shares reading and writing", Hold::Reading},
    {"open for reading, shares all", Hold::Reading},
    {"open for writing, shares reading and writing", Hold::Writing},
    {"mapped", Hold::Mapped},
    {"loaded library", Hold::Mapped},
    {"running program", Hold::Program},
};

/// Why an outcome is not as recorded; empty when it is.
std::string ReasonForOther(const std::string& held, const std::string& call) {
  const bool read = call == "copy" || call.starts_with("read");
  const bool replace = call == "copy onto" || call == "write" || call == "delete";
  if (held == "open for reading, shares nothing" && read) {
    return "an open file of this system can always be read";
  }
  if (held == "open for writing, shares reading and writing" && call == "read") return "as above";
  if (held.ends_with("shares reading and writing") && (call == "copy onto" || call == "write")) {
    return "no holder says that it shares writing: whoever holds it counts as in use";
  }
  if (held.ends_with("shares all") && (replace || call == "rename")) {
    return "no holder says that it shares writing and deleting";
  }
  if (held == "mapped" && (call == "delete" || call == "write")) {
    return "a mapped file cannot be told from a loaded library, which may not be replaced";
  }
  if ((held == "loaded library" || held == "running program") && call == "delete") {
    return "recorded 5, write-protected; that it is in use is said by 70";
  }
  return "";
}

class HeldFile {
 public:
  explicit HeldFile(Hold hold) : holder_(Prepare(machine_, hold), hold) {
    EXPECT_TRUE(holder_.ok());
  }

  int Call(const std::string& call) {
    FileSystem& files = machine_.Open();
    if (call == "copy onto") return files.Copy("other", "held.exe").number();
    if (call == "copy") return files.Copy("held.exe", "copy").number();
    if (call == "delete") return files.Delete("held.exe").number();
    if (call == "rename") return files.Move("held.exe", "new").number();
    if (call == "rename onto") return files.Move("other", "held.exe").number();
    if (call == "set attributes") return files.SetAttributes("held.exe", 128).number();
    if (call.starts_with("read")) return files.OpenForReading("held.exe").number();
    if (call == "write") return files.Write("held.exe", "x").number();
    if (call == "attributes") return files.Attributes("held.exe").number();
    ADD_FAILURE() << "no such call: " << call;
    return -1;
  }

 private:
  static std::filesystem::path Prepare(const TestMachine& machine, Hold hold) {
    machine.Put("other", "other");
    if (hold != Hold::Program) return machine.Put("held.exe", "held");
    std::filesystem::copy_file("/bin/sleep", machine.C("held.exe"));
    return machine.C("held.exe");
  }

  TestMachine machine_;
  HoldingProcess holder_;
};

TEST(OperationVectors, OnFilesInUseEndAsRecorded) {
  for (const json& row : Vectors("in_use")) {
    const std::string held = row[0];
    const std::string call = row[1];
    SCOPED_TRACE(row.dump());
    // No call of the port removes folders, and a folder's users are not known.
    if (held == "current folder") continue;
    const int number = HeldFile(kHolds.at(held)).Call(call);
    const std::string reason = ReasonForOther(held, call);
    const bool read = call == "copy" || call.starts_with("read");
    if (reason.empty()) {
      EXPECT_EQ(number, testing::RunTimeNumberOf(call, row[2]));
    } else {
      EXPECT_EQ(number, read ? 0 : kPermissionDenied) << reason;
    }
  }
}

}  // namespace
}  // namespace zent
