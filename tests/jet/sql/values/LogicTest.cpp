#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/sql/values/Logic.h"

namespace zent::jet {
namespace {

const Value kYes = true;
const Value kNo = false;
const Value kNull = Null();

struct LogicCase {
  ExpressionKind kind;
  const char* what;
  // Yes-Yes, Yes-No, Yes-Null, No-Yes, No-No, No-Null, Null-Yes, Null-No, Null-Null
  const char* results;
};

constexpr LogicCase kTables[] = {
    {ExpressionKind::And, "AND", "YN?NNN?N?"}, {ExpressionKind::Or, "OR", "YYYYN?Y??"},
    {ExpressionKind::Xor, "XOR", "NY?YN????"}, {ExpressionKind::Eqv, "EQV", "YN?NY????"},
    {ExpressionKind::Imp, "IMP", "YN?YYYY??"},
};

char Show(const Value& value) {
  if (IsNull(value)) return '?';
  return std::get<bool>(value) ? 'Y' : 'N';
}

TEST(Combine, HasThreeValues) {
  for (const LogicCase& row : kTables) {
    SCOPED_TRACE(row.what);
    std::string results;
    for (const Value* a : {&kYes, &kNo, &kNull}) {
      for (const Value* b : {&kYes, &kNo, &kNull}) {
        results += Show(Combine(row.kind, *a, *b).value());
      }
    }
    EXPECT_EQ(results, row.results);
  }
}

TEST(Combine, TakesWholeNumbersBitByBit) {
  const Value five = std::int16_t{5};
  const Value six = std::int32_t{6};
  EXPECT_EQ(Combine(ExpressionKind::And, five, six).value(), Value(std::int32_t{4}));
  EXPECT_EQ(Combine(ExpressionKind::Or, five, six).value(), Value(std::int32_t{7}));
  EXPECT_EQ(Combine(ExpressionKind::Xor, five, six).value(), Value(std::int32_t{3}));
  EXPECT_EQ(Combine(ExpressionKind::And, true, five).value(), Value(std::int32_t{5}));
  EXPECT_EQ(Combine(ExpressionKind::And, 4.6, five).value(), Value(std::int32_t{5}));
}

TEST(Combine, RefusesTexts) {
  EXPECT_EQ(Combine(ExpressionKind::And, Text("a"), true).number(), kCriteriaTypeMismatch);
  EXPECT_EQ(Combine(ExpressionKind::Or, true, Text("a")).number(), kCriteriaTypeMismatch);
  EXPECT_EQ(Combine(ExpressionKind::Or, 1e10, true).number(), kOverflow);
}

TEST(LogicalNot, KeepsNull) {
  EXPECT_EQ(LogicalNot(true).value(), kNo);
  EXPECT_EQ(LogicalNot(false).value(), kYes);
  EXPECT_EQ(LogicalNot(Null()).value(), kNull);
  EXPECT_EQ(LogicalNot(std::int16_t{0}).value(), Value(std::int32_t{-1}));
  EXPECT_EQ(LogicalNot(Text("x")).number(), kCriteriaTypeMismatch);
}

TEST(IsTrue, TakesNullAsNo) {
  EXPECT_TRUE(IsTrue(true).value());
  EXPECT_FALSE(IsTrue(false).value());
  EXPECT_FALSE(IsTrue(Null()).value());
  EXPECT_TRUE(IsTrue(0.5).value());
  EXPECT_FALSE(IsTrue(Currency{0}).value());
  EXPECT_EQ(IsTrue(Text("1")).number(), kCriteriaTypeMismatch);
}

}  // namespace
}  // namespace zent::jet
