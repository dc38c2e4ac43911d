#include <gtest/gtest.h>

#include "base/CaseFold.h"

namespace zent {
namespace {

TEST(SameName, LettersMatchInAnyCase) {
  EXPECT_TRUE(SameName("Korvo.EXE", "korvo.exe"));
  EXPECT_TRUE(SameName("UML\xC3\x84UT.txt", "uml\xC3\xA4ut.TXT"));
  EXPECT_FALSE(SameName("a", "b"));
}

TEST(SameName, TheSharpSIsNotTwoLetters) { EXPECT_FALSE(SameName("\xC3\x9F", "SS")); }

TEST(SameName, BytesThatAreNoTextStayApart) {
  EXPECT_FALSE(SameName("latin\xE4", "latin\xE5"));
  EXPECT_TRUE(SameName("latin\xE4", "LATIN\xE4"));
}

}  // namespace
}  // namespace zent
