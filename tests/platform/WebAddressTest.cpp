#include <gtest/gtest.h>

#include <string>

#include "platform/WebAddress.h"

namespace zent {
namespace {

struct AddressCase {
  const char* what;
  std::string address;
  bool is_web;
};

const AddressCase kAddresses[] = {
    {"an address", "http://www.zentware.example/download/KorvoSP%203.6.0.exe", true},
    {"a secure one", "https://a.example/", true},
    {"signs that mean something to a shell", "HTTPS://A.example/?a=b&c=$(id);'\"`#x", true},
    {"letters beyond ASCII", "http://\xC3\xA4.example/", true},
    {"nothing", "", false},
    {"a script", "javascript:alert(1)", false},
    {"a file", "file:///etc/passwd", false},
    {"a path", R"(C:\windows\notepad.exe)", false},
    {"an option", "--help=http://a", false},
    {"another scheme", "ftp://a.example/", false},
    {"a scheme that begins like one", "httpx://a", false},
    {"a blank before it", " http://a", false},
    {"a blank within it", "http://a b", false},
    {"a line break", "http://a\nb", false},
    {"a NUL", std::string("http://a\0b", 10), false},
    {"a control of the upper range", "http://a\xC2\x9B", false},
    {"bytes that are no text", "http://a\xFF", false},
    {"a scheme alone", "http://", false},
    {"a scheme without slashes", "http:a.example", false},
};

TEST(IsWebAddress, TakesHttpAndHttpsAlone) {
  for (const AddressCase& row : kAddresses) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(IsWebAddress(row.address), row.is_web);
  }
}

}  // namespace
}  // namespace zent
