#include <gtest/gtest.h>

#include "database/FieldTypeNames.h"

namespace zent {
namespace {

struct TypeCase {
  const char* name;
  int number;
};

constexpr TypeCase kTypeCases[] = {
    {"Yes/No", 1}, {"Integer", 3}, {"Long", 4},  {"Currency", 5}, {"Single", 6},
    {"Double", 7}, {"Date", 8},    {"Text", 10}, {"Memo", 12},
};

TEST(FieldTypeFromName, KnowsEveryNameAndFieldTypeNameEveryNumber) {
  for (const TypeCase& row : kTypeCases) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(static_cast<int>(FieldTypeFromName(row.name)), row.number);
    EXPECT_EQ(FieldTypeName(row.number), row.name);
  }
}

TEST(FieldTypeFromName, TakesAnyCase) {
  EXPECT_EQ(FieldTypeFromName("yes/no"), FieldType::Boolean);
  EXPECT_EQ(FieldTypeFromName("MEMO"), FieldType::Memo);
}

TEST(FieldTypeFromName, DateIsEightAndNeverTwentyThree) {
  EXPECT_EQ(static_cast<int>(FieldTypeFromName("date")), 8);
  EXPECT_EQ(FieldTypeName(23), "Date");
}

TEST(FieldTypeFromName, AnUnknownNameIsTypeZero) {
  for (const char* name : {"", "Yes", "Guid", "Text ", "10"}) {
    EXPECT_EQ(static_cast<int>(FieldTypeFromName(name)), 0);
  }
  EXPECT_EQ(FieldTypeName(0), "");
  EXPECT_EQ(FieldTypeName(11), "");
}

}  // namespace
}  // namespace zent
