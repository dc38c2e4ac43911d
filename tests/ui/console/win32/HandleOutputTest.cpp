#include <gtest/gtest.h>

#include "ui/console/win32/HandleOutput.h"
#include "ui/console/win32/TestPipe.h"

namespace zent {
namespace {

using testing::TestPipe;

TEST(HandleOutput, WritesUtf8AndTheLineEndsOfTheSystem) {
  TestPipe pipe;
  HandleOutput output(pipe.writing());
  output << "Copying M"
         << "\xC3\xBC"
         << "ller\n"
         << 7 << '\n'
         << std::flush;
  EXPECT_EQ(pipe.TakeAll(), "Copying M\xC3\xBCller\r\n7\r\n");
  EXPECT_TRUE(output.good());
}

TEST(HandleOutput, WritesAtTheFlush) {
  TestPipe pipe;
  HandleOutput output(pipe.writing());
  output << "first" << std::flush << "second";
  EXPECT_EQ(pipe.TakeAll(), "first");
}

TEST(HandleOutput, WritesLongTexts) {
  TestPipe pipe;
  const std::string text(200000, 'x');
  HandleOutput output(pipe.writing());
  output << text << std::flush;
  EXPECT_EQ(pipe.TakeAll(), text);
}

TEST(HandleOutput, GoesOnWithoutAPlaceToWriteTo) {
  for (const HANDLE handle : {HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
    HandleOutput output(handle);
    output << "lost" << std::endl;
    EXPECT_TRUE(output.good());
  }
}

}  // namespace
}  // namespace zent
