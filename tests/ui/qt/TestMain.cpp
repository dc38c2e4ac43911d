#include <gtest/gtest.h>

#include <QApplication>

/// Qt is brought up for the tests themselves, not for a list of them: that is asked for without a
/// screen.
int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (::testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
