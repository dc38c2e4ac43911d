#pragma once

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "jet/storage/Storage.h"

/// What every Storage keeps. A machine has `storage`, `Path(name)` in an empty folder, and says
/// whether a file opened ReadOnly takes exclusive locks.
namespace zent::jet::testing {

template <typename Machine>
class StorageContract : public ::testing::Test {
 protected:
  using File = std::unique_ptr<StoredFile>;

  Storage& storage() { return machine_.storage; }
  std::string Path(std::string_view name) const { return machine_.Path(name); }

  File Made(std::string_view name, Sharing sharing, std::string_view bytes) {
    Result<File> file = storage().Create(Path(name), sharing, {});
    EXPECT_TRUE(file.ok()) << file.status().error().description;
    EXPECT_TRUE(file.value()->WriteAt(0, AsBytes(bytes)).ok());
    return std::move(file.value());
  }
  File Again(std::string_view name, Sharing sharing) {
    Result<File> file = storage().Open(Path(name), sharing);
    EXPECT_TRUE(file.ok()) << (file.ok() ? "" : file.error().description);
    return file.ok() ? std::move(file.value()) : nullptr;
  }
  static std::string All(StoredFile& file) {
    std::string bytes(100, '?');
    const Result<std::size_t> got =
        file.ReadAt(0, {reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()});
    EXPECT_TRUE(got.ok());
    return bytes.substr(0, got.value_or(0));
  }

  Machine machine_;
};

TYPED_TEST_SUITE_P(StorageContract);

TYPED_TEST_P(StorageContract, ReadsWhatWasWritten) {
  const auto file = this->Made("a", Sharing::Exclusive, "hello");
  EXPECT_EQ(this->All(*file), "hello");
  EXPECT_TRUE(file->WriteAt(1, AsBytes("EL")).ok());
  EXPECT_EQ(this->All(*file), "hELlo");
  EXPECT_TRUE(file->WriteAt(7, AsBytes("x")).ok());
  EXPECT_EQ(this->All(*file), std::string("hELlo\0\0x", 8));
  EXPECT_EQ(file->Size().value_or(99), 8U);
  EXPECT_TRUE(file->Flush().ok());
}

TYPED_TEST_P(StorageContract, ReadsNothingBehindTheEnd) {
  const auto file = this->Made("a", Sharing::Exclusive, "hello");
  std::array<std::uint8_t, 4> buffer = {};
  EXPECT_EQ(file->ReadAt(3, buffer).value_or(99), 2U);
  EXPECT_EQ(file->ReadAt(5, buffer).value_or(99), 0U);
  EXPECT_EQ(file->ReadAt(0x90000000, buffer).value_or(99), 0U);
}

TYPED_TEST_P(StorageContract, CutsAndLengthens) {
  const auto file = this->Made("a", Sharing::Exclusive, "hello");
  EXPECT_TRUE(file->Resize(2).ok());
  EXPECT_EQ(this->All(*file), "he");
  EXPECT_TRUE(file->Resize(4).ok());
  EXPECT_EQ(this->All(*file), std::string("he\0\0", 4));
}

TYPED_TEST_P(StorageContract, SharesAsTheOpenersAllow) {
  struct Row {
    const char* what;
    Sharing first;
    Sharing second;
    bool opens;
  };
  const Row rows[] = {
      {"exclusive, then shared", Sharing::Exclusive, Sharing::Shared, false},
      {"exclusive, then to read", Sharing::Exclusive, Sharing::ReadOnly, false},
      {"exclusive twice", Sharing::Exclusive, Sharing::Exclusive, false},
      {"shared, then exclusive", Sharing::Shared, Sharing::Exclusive, false},
      {"to read, then exclusive", Sharing::ReadOnly, Sharing::Exclusive, false},
      {"shared twice", Sharing::Shared, Sharing::Shared, true},
      {"shared, then to read", Sharing::Shared, Sharing::ReadOnly, true},
      {"to read, then shared", Sharing::ReadOnly, Sharing::Shared, true},
  };
  this->Made("a", Sharing::Shared, "x");
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    auto first = this->Again("a", row.first);
    ASSERT_NE(first, nullptr);
    const auto second = this->storage().Open(this->Path("a"), row.second);
    EXPECT_EQ(second.number(), row.opens ? 0 : kPermissionDenied);
    first.reset();
    if (!row.opens) {
      EXPECT_TRUE(this->storage().Open(this->Path("a"), row.second).ok());
    }
  }
}

TYPED_TEST_P(StorageContract, ShowsAtOnceWhatOthersWrote) {
  const auto writer = this->Made("a", Sharing::Shared, "old");
  const auto reader = this->Again("a", Sharing::ReadOnly);
  ASSERT_NE(reader, nullptr);
  EXPECT_TRUE(writer->WriteAt(0, AsBytes("newer")).ok());
  EXPECT_EQ(this->All(*reader), "newer");
  EXPECT_EQ(reader->Size().value_or(0), 5U);
}

TYPED_TEST_P(StorageContract, RefusesToWriteWhatIsOpenToBeRead) {
  this->Made("a", Sharing::Shared, "old");
  const auto reader = this->Again("a", Sharing::ReadOnly);
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(reader->WriteAt(0, AsBytes("x")).number(), kPathFileAccess);
  EXPECT_EQ(reader->Resize(0).number(), kPathFileAccess);
  EXPECT_EQ(this->All(*reader), "old");
}

TYPED_TEST_P(StorageContract, LocksRangesFarBeyondTheEnd) {
  struct Row {
    const char* what;
    std::uint64_t first_at, first_length;
    bool first_exclusive;
    std::uint64_t at, length;
    bool exclusive;
    bool locks;
  };
  constexpr std::uint64_t kFar = 0x80000000;
  const Row rows[] = {
      {"same byte, both exclusive", kFar, 1, true, kFar, 1, true, false},
      {"same byte, exclusive then shared", kFar, 1, true, kFar, 1, false, false},
      {"same byte, shared then exclusive", kFar, 1, false, kFar, 1, true, false},
      {"same byte, both shared", kFar, 1, false, kFar, 1, false, true},
      {"neighbours", kFar, 1, true, kFar + 1, 1, true, true},
      {"overlap at the end", 0x10000001, 10, true, 0x1000000A, 5, true, false},
      {"behind the range", 0x10000001, 10, true, 0x1000000B, 5, true, true},
      {"within the range", 0x10000001, 255, true, 0x10000050, 1, false, false},
  };
  const auto one = this->Made("a", Sharing::Shared, "x");
  const auto two = this->Again("a", Sharing::Shared);
  ASSERT_NE(two, nullptr);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    ASSERT_TRUE(one->TryLock(row.first_at, row.first_length, row.first_exclusive).value_or(false));
    const Result<bool> locked = two->TryLock(row.at, row.length, row.exclusive);
    ASSERT_TRUE(locked.ok());
    EXPECT_EQ(locked.value(), row.locks);
    if (locked.value()) {
      EXPECT_TRUE(two->Unlock(row.at, row.length).ok());
    }
    EXPECT_TRUE(one->Unlock(row.first_at, row.first_length).ok());
    EXPECT_TRUE(two->TryLock(row.at, row.length, row.exclusive).value_or(false));
    EXPECT_TRUE(two->Unlock(row.at, row.length).ok());
  }
}

TYPED_TEST_P(StorageContract, GivesLocksBackWhenClosed) {
  auto one = this->Made("a", Sharing::Shared, "x");
  const auto two = this->Again("a", Sharing::Shared);
  ASSERT_NE(two, nullptr);
  ASSERT_TRUE(one->TryLock(0x80000000, 1, true).value_or(false));
  one.reset();
  EXPECT_TRUE(two->TryLock(0x80000000, 1, true).value_or(false));
}

TYPED_TEST_P(StorageContract, TakesSharedLocksOnWhatIsOpenToBeRead) {
  const auto writer = this->Made("a", Sharing::Shared, "x");
  const auto reader = this->Again("a", Sharing::ReadOnly);
  ASSERT_NE(reader, nullptr);
  EXPECT_TRUE(reader->TryLock(0x80000000, 1, false).value_or(false));
  EXPECT_FALSE(writer->TryLock(0x80000000, 1, true).value_or(true));
  if (!this->machine_.ReadOnlyTakesExclusiveLocks()) {
    EXPECT_EQ(reader->TryLock(0x80000010, 1, true).number(), kPathFileAccess);
  }
}

TYPED_TEST_P(StorageContract, NamesWhatIsMissingOrThere) {
  EXPECT_EQ(this->storage().Open(this->Path("none"), Sharing::Shared).number(), kFileNotFound);
  EXPECT_EQ(this->storage().Open(this->Path("none"), Sharing::ReadOnly).number(), kFileNotFound);
  EXPECT_EQ(this->storage().Delete(this->Path("none")).number(), kFileNotFound);
  EXPECT_FALSE(this->storage().Exists(this->Path("none")).value_or(true));
  this->Made("a", Sharing::Shared, "x");
  EXPECT_TRUE(this->storage().Exists(this->Path("a")).value_or(false));
  EXPECT_EQ(this->storage().Create(this->Path("a"), Sharing::Shared, {}).number(),
            kFileAlreadyExists);
  EXPECT_TRUE(this->storage().Delete(this->Path("a")).ok());
  EXPECT_FALSE(this->storage().Exists(this->Path("a")).value_or(true));
}

// What the system takes for a name ends there: it would be another file.
TYPED_TEST_P(StorageContract, RefusesANameWithANul) {
  const std::string path = this->Path("a") + std::string("\0b", 2);
  EXPECT_EQ(this->storage().Create(path, Sharing::Shared, {}).number(), kBadFileName);
  EXPECT_FALSE(this->storage().Exists(this->Path("a")).value_or(true));
  this->Made("a", Sharing::Shared, "x");
  for (const Sharing sharing : {Sharing::Exclusive, Sharing::Shared, Sharing::ReadOnly}) {
    EXPECT_EQ(this->storage().Open(path, sharing).number(), kBadFileName);
  }
  EXPECT_EQ(this->storage().Exists(path).number(), kBadFileName);
  EXPECT_EQ(this->storage().Delete(path).number(), kBadFileName);
  EXPECT_EQ(this->storage().Rename(path, this->Path("c")).number(), kBadFileName);
  EXPECT_EQ(this->storage().Rename(this->Path("a"), path).number(), kBadFileName);
  EXPECT_TRUE(this->storage().Exists(this->Path("a")).value_or(false));
}

TYPED_TEST_P(StorageContract, RenamesOverAnotherFile) {
  this->Made("a", Sharing::Shared, "new");
  this->Made("b", Sharing::Shared, "old");
  EXPECT_TRUE(this->storage().Rename(this->Path("a"), this->Path("b")).ok());
  EXPECT_TRUE(this->storage().FlushFolder(this->Path("b")).ok());
  EXPECT_FALSE(this->storage().Exists(this->Path("a")).value_or(true));
  const auto file = this->Again("b", Sharing::ReadOnly);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(this->All(*file), "new");
}

REGISTER_TYPED_TEST_SUITE_P(StorageContract, ReadsWhatWasWritten, ReadsNothingBehindTheEnd,
                            CutsAndLengthens, SharesAsTheOpenersAllow, ShowsAtOnceWhatOthersWrote,
                            RefusesToWriteWhatIsOpenToBeRead, LocksRangesFarBeyondTheEnd,
                            GivesLocksBackWhenClosed, TakesSharedLocksOnWhatIsOpenToBeRead,
                            NamesWhatIsMissingOrThere, RefusesANameWithANul,
                            RenamesOverAnotherFile);

}  // namespace zent::jet::testing
