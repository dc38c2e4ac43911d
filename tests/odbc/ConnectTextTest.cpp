#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "odbc/ConnectText.h"

namespace zent::odbc {
namespace {

struct ValueCase {
  const char* what;
  const char* text;
  const char* name;
  const char* value;
};

constexpr ValueCase kValueCases[] = {
    {"plain", "DSN=Korvo;UID=sa;PWD=secret;", "UID", "sa"},
    {"any case", "dsn=Korvo;pwd=secret", "PWD", "secret"},
    {"the first of two", "PWD=one;PWD=two;", "PWD", "one"},
    {"without an end", "DSN=Korvo", "DSN", "Korvo"},
    {"blanks around", " DSN = Korvo ;", "DSN", "Korvo"},
    {"empty", "DSN=;UID=sa", "DSN", ""},
    {"missing", "DSN=Korvo;", "PWD", ""},
    {"no text", "", "PWD", ""},
    {"a piece without a value", "Trusted;PWD=x", "PWD", "x"},
    {"braces", "PWD={a;b=c};UID=sa", "PWD", "a;b=c"},
    {"a brace in braces", "PWD={a}}b};UID=sa", "PWD", "a}b"},
    {"behind braces", "PWD={a;b};UID=sa", "UID", "sa"},
    {"braces without an end", "PWD={a;b", "PWD", "a;b"},
    {"an equals sign", "PWD=a=b;", "PWD", "a=b"},
};

TEST(ConnectText, GivesTheValueOfAName) {
  for (const ValueCase& row : kValueCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ConnectValue(row.text, row.name), row.value);
  }
}

struct HideCase {
  const char* what;
  const char* message;
  const char* connect_text;
  const char* hidden;
};

constexpr HideCase kHideCases[] = {
    {"no password", "Access denied for user 'sa'", "DSN=Korvo;UID=sa;",
     "Access denied for user 'sa'"},
    {"the password itself", "cannot log in with secret", "PWD=secret;", "cannot log in with ***"},
    {"in braces", "bad: a;bcd", "PWD={a;bcd};", "bad: ***"},
    {"a connect text", "failed: DSN=x;PWD=other;UID=sa", "DSN=x;", "failed: DSN=x;PWD=***;UID=sa"},
    {"a connect text that ends there", "failed: pwd=other", "", "failed: pwd=***"},
    {"two of them", "PWD=a;PWD={b;c};end", "", "PWD=***;PWD=***;end"},
    {"a short one hides no words", "a database", "PWD=a;", "a database"},
    {"a short one behind its name", "PWD=a;x", "PWD=a;", "PWD=***;x"},
};

TEST(HidePassword, PutsStarsInItsPlace) {
  for (const HideCase& row : kHideCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(HidePassword(row.message, row.connect_text), row.hidden);
  }
}

}  // namespace
}  // namespace zent::odbc
