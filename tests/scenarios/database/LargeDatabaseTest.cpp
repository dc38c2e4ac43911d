#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <charconv>
#include <cstdlib>

#include "jet/dao/Workspace.h"
#include "jet/host/posix/PosixStorage.h"
#include "scenarios/database/KorvoMachine.h"
#include "support/posix/ChildProcess.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::StartsWith;

constexpr std::uintmax_t kMegabyte = std::uintmax_t{1} << 20U;
constexpr std::size_t kBodySize = 7'500;  // characters of two bytes: four pages

std::string TitleOf(int number) { return "Letter " + std::to_string(number); }

std::string BodyOf(int number) {
  return std::string(kBodySize, static_cast<char>('a' + number % 26));
}

/// Fills the table `Letters`; the error's number. In a process of its own, whose memory goes with
/// it.
std::string FillLetters(const std::string& file, int letters) {
  jet::PosixStorage storage;
  jet::Workspace workspace(storage);
  const auto database = workspace.OpenDatabase(file, true);
  if (!database.ok()) return std::to_string(database.number());
  Status done = database.value()->BeginTrans();
  const auto opened = database.value()->OpenRecordset("Letters");
  if (!opened.ok()) return std::to_string(opened.number());
  jet::Recordset& rows = *opened.value();
  for (int number = 0; number < letters && done.ok(); ++number) {
    done = rows.AddNew();
    if (done.ok()) done = rows.Put("Title", TitleOf(number));
    if (done.ok()) done = rows.Put("Body", BodyOf(number));
    if (done.ok()) done = rows.Update();
  }
  if (done.ok()) done = database.value()->CommitTrans();
  return std::to_string(done.number());
}

/// A run, and the most memory that its process had.
struct MeasuredRun {
  std::string end;
  std::uintmax_t peak = 0;  ///< bytes
};

MeasuredRun RunMeasured(const KorvoMachine& given) {
  const std::string text = RunInChild([&] {
    // Freed memory that the sanitizer keeps back would count.
    ::setenv("ASAN_OPTIONS", "quarantine_size_mb=1", 1);
    const std::string end = given.Run();
    rusage usage = {};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return std::to_string(usage.ru_maxrss) + " " + end;
  });
  MeasuredRun run;
  const char* const last = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), last, run.peak);
  if (error != std::errc()) return {.end = text};
  return {.end = std::string(behind + 1, last), .peak = run.peak * 1024};
}

/// A database of so many letters, and the template that has a longer title for them.
class LettersMachine : public KorvoMachine {
 public:
  explicit LettersMachine(int letters) : KorvoMachine({kSynchronise}) {
    MakeDatabase("machine/drive_c/users/anna/Documents/Korvo/Korvo.mdb",
                 OldDatabase() +
                     ";CREATE TABLE Letters (Title TEXT(20), Body MEMO);"
                     "CREATE UNIQUE INDEX PrimaryKey ON Letters (Title) WITH PRIMARY");
    MakeDatabase(kTemplate, NewTemplate() + ";CREATE TABLE Letters (Title TEXT(60), Body MEMO)");
    EXPECT_EQ(RunInChild([&] { return FillLetters(Korvo().string(), letters); }), "0");
  }
};

// The pages of both files are held up to a bound, and the sanitizer adds to it: what tells is that
// it is no more for a database of twice the size.
TEST(LargeDatabase, IsBroughtUpInNoMoreMemoryThanOneOfHalfTheSize) {
  constexpr int kLetters = 13'000;
  const MeasuredRun half = RunMeasured(LettersMachine(kLetters / 2));
  EXPECT_THAT(half.end, StartsWith("0\n"));
  const LettersMachine given(kLetters);
  ASSERT_GT(fs::file_size(given.Korvo()), 200 * kMegabyte);

  const MeasuredRun whole = RunMeasured(given);

  EXPECT_THAT(whole.end, StartsWith("0\n"));
  EXPECT_GT(half.peak, 0U);
  EXPECT_LT(whole.peak, half.peak + 16 * kMegabyte);
  EXPECT_EQ(given.Rows("SELECT COUNT(*) FROM Letters"), std::to_string(kLetters) + "\n");
  EXPECT_EQ(given.Rows("SELECT Body FROM Letters WHERE Title = 'Letter 777'"), BodyOf(777) + "\n");
  EXPECT_EQ(given.Rows("SELECT Name, Staff FROM Companies ORDER BY Name"), kOldCompanies);
  EXPECT_EQ(given.Faults(given.Korvo()), "");
}

}  // namespace
}  // namespace zent::testing
