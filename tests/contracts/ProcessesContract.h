#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>

#include "platform/ErrorOutput.h"
#include "platform/Processes.h"

/// What every adapter of Processes must keep of programs that are waited for. An adapter's test
/// includes this file once, makes a ProcessesSubject and instantiates the suite ProcessesContract.
namespace zent::testing {

/// What a program of the tests does.
struct ProgramBehaviour {
  std::uint32_t exit_code = 0;
  std::string error_text = {};  ///< ASCII
  bool waits = false;           ///< for its release, before all that
};

/// An adapter, and a machine that programs can be put on.
class ProcessesSubject {
 public:
  virtual ~ProcessesSubject() = default;
  virtual Processes& processes() = 0;
  /// Puts a program there; its full path on the machine. Names are given with their extension.
  virtual std::string Put(const std::string& name, const ProgramBehaviour& behaviour) = 0;
  /// The path of a program that is not there, in a folder that is.
  virtual std::string Missing() = 0;
  virtual void Release(const std::string& program) = 0;
};

using ProcessesFactory = std::unique_ptr<ProcessesSubject> (*)();

class ProcessesContract : public ::testing::TestWithParam<ProcessesFactory> {
 protected:
  void SetUp() override { subject_ = GetParam()(); }

  Result<std::unique_ptr<RunningProgram>> Start(const std::string& program) {
    return subject_->processes().StartWaited({program, "", program});
  }
  /// The end of a program that comes to one; a failed expectation when it takes half a minute.
  static ProgramEnd EndOf(RunningProgram& program) {
    for (int round = 0; round < 300; ++round) {
      const auto ended = program.Wait(std::chrono::milliseconds(100));
      if (!ended.ok()) {
        ADD_FAILURE() << ended.error().description;
        return {};
      }
      if (ended.value()) return *ended.value();
    }
    ADD_FAILURE() << "the program has not ended";
    return {};
  }
  ProcessesSubject& subject() { return *subject_; }

 private:
  std::unique_ptr<ProcessesSubject> subject_;
};

TEST_P(ProcessesContract, TellsHowAProgramHasEnded) {
  struct Row {
    const char* what;
    const char* name;
    ProgramBehaviour behaviour;
  };
  const Row rows[] = {
      {"well", "done.exe", {}},
      {"with a code", "two.exe", {.exit_code = 2}},
      {"with the highest code that every system has", "high.exe", {.exit_code = 255}},
      {"with a complaint", "errors.exe", {.exit_code = 1, .error_text = "No such table\nX\n"}},
      {"well, and with a complaint", "warns.exe", {.error_text = "Slow disk"}},
      {"in a folder with blanks", R"(Korvo Files\the program.exe)", {.exit_code = 3}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const auto started = Start(subject().Put(row.name, row.behaviour));
    ASSERT_TRUE(started.ok()) << started.error().description;
    const ProgramEnd end = EndOf(*started.value());
    EXPECT_EQ(end.exit_code, row.behaviour.exit_code);
    EXPECT_EQ(end.error_text, row.behaviour.error_text);
  }
}

TEST_P(ProcessesContract, KeepsTheBeginningOfALongComplaint) {
  // More than any pipe holds: a program that nobody reads would wait for ever.
  const std::string text(300000, 'x');
  const auto started = Start(subject().Put("long.exe", {.exit_code = 1, .error_text = text}));
  ASSERT_TRUE(started.ok());
  const ProgramEnd end = EndOf(*started.value());
  EXPECT_EQ(end.exit_code, 1U);
  EXPECT_EQ(end.error_text, text.substr(0, ErrorOutput::kLimit));
}

TEST_P(ProcessesContract, ComesBackWhileTheProgramRuns) {
  const std::string program = subject().Put("slow.exe", {.exit_code = 4, .waits = true});
  const auto started = Start(program);
  ASSERT_TRUE(started.ok());
  for (const int time : {0, 1, 30}) {
    const auto ended = started.value()->Wait(std::chrono::milliseconds(time));
    ASSERT_TRUE(ended.ok());
    EXPECT_FALSE(ended.value().has_value());
  }
  subject().Release(program);
  EXPECT_EQ(EndOf(*started.value()).exit_code, 4U);
}

TEST_P(ProcessesContract, TellsTheEndAsOftenAsItIsAsked) {
  const auto started = Start(subject().Put("end.exe", {.exit_code = 5, .error_text = "Why"}));
  ASSERT_TRUE(started.ok());
  EXPECT_EQ(EndOf(*started.value()).exit_code, 5U);
  const auto again = started.value()->Wait(std::chrono::milliseconds(0));
  ASSERT_TRUE(again.ok());
  ASSERT_TRUE(again.value().has_value());
  EXPECT_EQ(again.value()->exit_code, 5U);
  EXPECT_EQ(again.value()->error_text, "Why");
}

TEST_P(ProcessesContract, WaitsForSeveralProgramsInAnyOrder) {
  const std::string first = subject().Put("first.exe", {.exit_code = 6, .waits = true});
  const auto slow = Start(first);
  const auto quick = Start(subject().Put("second.exe", {.exit_code = 7}));
  ASSERT_TRUE(slow.ok());
  ASSERT_TRUE(quick.ok());
  EXPECT_EQ(EndOf(*quick.value()).exit_code, 7U);
  subject().Release(first);
  EXPECT_EQ(EndOf(*slow.value()).exit_code, 6U);
}

TEST_P(ProcessesContract, DoesNotStartWhatIsNotThere) {
  EXPECT_EQ(Start(subject().Missing()).number(), kFileNotFound);
}

}  // namespace zent::testing
