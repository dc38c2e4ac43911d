#include <gtest/gtest.h>

#include <string_view>

#include "ui/win32/OtherProgram.h"

/// With the name of a part to play, the program is the other one that the tests start.
int main(int argc, char** argv) {
  if (argc > 1 && std::string_view(argv[1]).substr(0, 2) != "--") {
    return zent::testing::PlayPart(argv[1]);
  }
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
