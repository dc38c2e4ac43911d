#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "ui/console/win32/HandleInput.h"
#include "ui/console/win32/TestPipe.h"

namespace zent {
namespace {

using State = ConsoleInput::State;
using std::chrono::milliseconds;
using testing::TestPipe;

TEST(HandleInput, ReadsTheLinesOfAPipeToItsEnd) {
  TestPipe pipe;
  pipe.Put("yes\r\nM\xC3\xBCller\n\nrest");
  pipe.CloseWriting();
  HandleInput input(pipe.reading());
  EXPECT_FALSE(input.IsConsole());
  for (const char* line : {"yes", "M\xC3\xBCller", "", "rest"}) {
    const ConsoleInput::Reading reading = input.Next(std::nullopt);
    EXPECT_EQ(reading.state, State::Line);
    EXPECT_EQ(reading.line, line);
  }
  EXPECT_EQ(input.Next(std::nullopt).state, State::End);
  EXPECT_EQ(input.Next(milliseconds(0)).state, State::End);
}

TEST(HandleInput, WaitsNoLongerThanAsked) {
  TestPipe pipe;
  HandleInput input(pipe.reading());
  EXPECT_EQ(input.Next(milliseconds(0)).state, State::Nothing);
  EXPECT_EQ(input.Next(milliseconds(-1)).state, State::Nothing);
  const DWORD before = GetTickCount();
  EXPECT_EQ(input.Next(milliseconds(60)).state, State::Nothing);
  EXPECT_GE(GetTickCount() - before, 40U) << "in steps of up to 16 milliseconds";
}

TEST(HandleInput, ALineThatIsThereComesAtOnce) {
  TestPipe pipe;
  HandleInput input(pipe.reading());
  pipe.Put("half");
  EXPECT_EQ(input.Next(milliseconds(0)).state, State::Nothing);
  pipe.Put(" a line\r\n");
  const ConsoleInput::Reading reading = input.Next(milliseconds(0));
  EXPECT_EQ(reading.state, State::Line);
  EXPECT_EQ(reading.line, "half a line");
}

TEST(HandleInput, WhatIsNoInputHasEnded) {
  for (const HANDLE handle : {HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
    HandleInput input(handle);
    EXPECT_FALSE(input.IsConsole());
    EXPECT_EQ(input.Next(std::nullopt).state, State::End);
    EXPECT_EQ(input.Next(milliseconds(5)).state, State::End);
  }
}

TEST(ReadToEnd, GivesTheBytesOfAPipeAsTheyAre) {
  TestPipe pipe;
  pipe.Put("a\r\n\xFC\n b");
  pipe.CloseWriting();
  EXPECT_EQ(ReadToEnd(pipe.reading(), 100).value_or("failed"), "a\r\n\xFC\n b");
  EXPECT_EQ(ReadToEnd(nullptr, 100).value_or("failed"), "");
}

TEST(ReadToEnd, RefusesTooMuch) {
  TestPipe pipe;
  pipe.Put("12345");
  pipe.CloseWriting();
  EXPECT_EQ(ReadToEnd(pipe.reading(), 4).number(), kOutOfStringSpace);
}

TEST(HandleInput, APipeShowsNothingThatCouldBeHidden) {
  TestPipe pipe;
  pipe.Put("typed before\n");
  HandleInput input(pipe.reading());
  input.HideTyping();
  EXPECT_EQ(input.Next(std::nullopt).line, "typed before");
  input.ShowTyping();
}

}  // namespace
}  // namespace zent
