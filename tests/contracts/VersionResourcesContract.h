#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/Text.h"
#include "contracts/VersionCases.h"
#include "platform/VersionResources.h"

/// What every adapter of VersionResources must keep. An adapter's test includes this file once,
/// makes a VersionResourcesSubject and instantiates the suite VersionResourcesContract.
namespace zent::testing {

/// An adapter with a folder of the machine for its files.
class VersionResourcesSubject {
 public:
  virtual ~VersionResourcesSubject() = default;
  virtual const VersionResources& resources() = 0;
  /// Full path of an existing folder, without a trailing backslash.
  virtual std::string folder() = 0;
  /// Makes a file of that folder.
  virtual void PutFile(std::string_view name, std::string_view bytes) = 0;
  /// Whether the cases that are settled for our own reader are expected of this one too.
  virtual bool KeepsOwnCases() { return true; }
};

using VersionResourcesFactory = std::unique_ptr<VersionResourcesSubject> (*)();

class VersionResourcesContract : public ::testing::TestWithParam<VersionResourcesFactory> {
 protected:
  void SetUp() override { subject_ = GetParam()(); }

  const VersionResources& resources() { return subject_->resources(); }

  /// The version information of a case, whose file is made; nothing when there is none.
  std::unique_ptr<VersionInfo> Open(const VersionCase& row) {
    if (row.file) subject_->PutFile(row.name, *row.file);
    Result<std::unique_ptr<VersionInfo>> info =
        resources().Open(subject_->folder() + '\\' + row.name);
    if (info.ok()) return std::move(info.value());
    EXPECT_NE(info.number(), 0);
    return nullptr;
  }

  /// Calls `check` with each case and its version information.
  template <typename Check>
  void ForEachCase(Check check) {
    for (const VersionCase& row : AllVersionCases()) {
      if (row.own && !subject_->KeepsOwnCases()) continue;
      SCOPED_TRACE(row.name + ": " + row.what);
      check(row, Open(row).get());
    }
  }

 private:
  std::unique_ptr<VersionResourcesSubject> subject_;
};

/// The path of a text in the table that the first translation of `row` names.
inline std::string PathOfText(const VersionCase& row, std::string_view key) {
  return R"(\StringFileInfo\)" + TableOfTranslation(*row.translation) + '\\' + std::string(key);
}

/// The text that `row` expects for `key`.
inline std::optional<std::string> ExpectedText(const VersionCase& row, std::string_view key) {
  for (const auto& [known, text] : row.texts) {
    if (known == key) return text;
  }
  return std::nullopt;
}

inline bool NamesATable(const VersionCase& row) {
  return row.translation && row.translation->size() >= 4;
}

TEST_P(VersionResourcesContract, OpensFilesWithVersionInformationAlone) {
  ForEachCase([](const VersionCase& row, const VersionInfo* info) {
    EXPECT_EQ(info != nullptr, row.opens);
  });
}

TEST_P(VersionResourcesContract, GivesTheFixedPart) {
  ForEachCase([](const VersionCase& row, const VersionInfo* info) {
    if (info == nullptr) return;
    EXPECT_EQ(info->QueryBytes("\\"), row.fixed);
  });
}

TEST_P(VersionResourcesContract, GivesTheTranslations) {
  ForEachCase([](const VersionCase& row, const VersionInfo* info) {
    if (info == nullptr) return;
    EXPECT_EQ(info->QueryBytes(R"(\VarFileInfo\Translation)"), row.translation);
  });
}

TEST_P(VersionResourcesContract, GivesTheTextsOfTheTable) {
  ForEachCase([](const VersionCase& row, const VersionInfo* info) {
    if (info == nullptr || !NamesATable(row)) return;
    for (const char* key : kRecordKeys) {
      SCOPED_TRACE(key);
      EXPECT_EQ(info->QueryText(PathOfText(row, key)), ExpectedText(row, key));
    }
  });
}

TEST_P(VersionResourcesContract, FindsNamesInAnyCaseAndWithoutTheFirstBackslash) {
  ForEachCase([](const VersionCase& row, const VersionInfo* info) {
    if (info == nullptr || !NamesATable(row)) return;
    const std::string path = PathOfText(row, "FileVersion");
    const std::optional<std::string> text = ExpectedText(row, "FileVersion");
    EXPECT_EQ(info->QueryText(ToLower(path)), text);
    EXPECT_EQ(info->QueryText(path.substr(1)), text);
  });
}

TEST_P(VersionResourcesContract, FindsNoOtherNames) {
  ForEachCase([](const VersionCase&, const VersionInfo* info) {
    if (info == nullptr) return;
    for (const char* path : {R"(\Other)", R"(\StringFileInfo\Other)", R"(\VarFileInfo\Other)",
                             R"(\VarFileInfo\Translation\Other)", R"(\VarFileInfoTranslation)"}) {
      SCOPED_TRACE(path);
      EXPECT_EQ(info->QueryText(path), std::nullopt);
      EXPECT_EQ(info->QueryBytes(path), std::nullopt);
    }
  });
}

TEST_P(VersionResourcesContract, RefusesAnEmptyPath) { EXPECT_FALSE(resources().Open("").ok()); }

}  // namespace zent::testing
