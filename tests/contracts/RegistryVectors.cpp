#include "contracts/RegistryVectors.h"

#include <iterator>

namespace zent::testing {
namespace {

using namespace std::string_literals;

const RegistryQuery kQueries[] = {
    {"", 0, 1, "default again\0"s},
    {"sz", 0, 1, "plain\0"s},
    {"sz empty", 0, 1, "\0"s},
    {"sz zero bytes", 0, 1, ""},
    {"sz no NUL", 0, 1, "abc\0"s},
    {"sz two NUL", 0, 1, "ab\0\0"s},
    {"sz inner NUL", 0, 1, "ab\0cd\0"s},
    {"sz quotes and backslash", 0, 1, "say \"hi\" C:\\dir\\\0"s},
    {"sz controls", 0, 1,
     "tab\tcr\rlf\nbell\aesc\x1b"
     "del\x7f"
     "1\x01\0"s},
    {"sz cp1252", 0, 1, "\u00e4\u00f6\u00fc\u20ac\u0081\u00ffa\0"s},
    {"expand", 0, 2, "%SystemRoot%\\x\0"s},
    {"expand none", 0, 2, "no variable\0"s},
    {"dword", 0, 4, "xV4\x12"},
    {"dword two bytes", 0, 4, "\x01\x02"},
    {"qword", 0, 11, "\b\a\x06\x05\x04\x03\x02\x01"},
    {"binary", 0, 3, "\0\x01\xff\x80"s},
    {"binary empty", 0, 3, ""},
    {"none", 0, 0, "\x01\x02\x03"},
    {"multi", 0, 7, "one\0two\0\0"s},
    {"multi empty", 0, 7, "\0"s},
    {"type 77", 0, 77, "ab"},
    {"SZ", 0, 1, "plain\0"s},
    {"sZ EMPTY", 0, 1, "\0"s},
    {"missing", kFileNotFound, 0, ""},
    {"CASE", 0, 1, "2\0"s},
    {"case", 0, 1, "2\0"s},
    {"@", 0, 1, "named at sign\0"s},
    {"n\u00c4me", 0, 1, "v\0"s},
};

const RegistryStep kSteps[] = {
    {true, KeyHandle::CurrentUser, R"(Software\K)", 0},
    {false, KeyHandle::CurrentUser, R"(SOFTWARE\k)", 0},
    {true, KeyHandle::CurrentUser, R"(Software\K\New\Deep)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\New\Deep\)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\New\\Deep)", 0},
    {false, KeyHandle::CurrentUser, R"(\Software\K)", kPathFileAccess},
    {true, KeyHandle::CurrentUser, R"(\Software\K\Lead)", kPathFileAccess},
    {true, KeyHandle::CurrentUser, R"(Software\K\Trail\)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\Trail)", 0},
    {true, KeyHandle::CurrentUser, R"(Software\K\\Double)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\Double)", 0},
    {true, KeyHandle::CurrentUser, R"(Software\K\Trail2\\)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\Trail2)", 0},
    {false, KeyHandle::CurrentUser, "", 0},
    {true, KeyHandle::CurrentUser, "", 0},
    {false, KeyHandle::CurrentUser, R"(\)", kPathFileAccess},
    {true, KeyHandle::CurrentUser, R"(\)", kPathFileAccess},
    {false, KeyHandle::CurrentUser, R"(Nope\Nope)", kFileNotFound},
    {false, KeyHandle::CurrentUser, R"(Software\K\Nope)", kFileNotFound},
    {true, KeyHandle::CurrentUser, "Software/K/Slash", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K )", kFileNotFound},
    {true, KeyHandle::CurrentUser, R"(Software\K\ blank )", 0},
    {false, KeyHandle::CurrentUser, R"(Software\K\blank)", kFileNotFound},
    {true, KeyHandle::LocalMachine, "Top", 0},
    {true, KeyHandle::ClassesRoot, "Top", 0},
    {false, KeyHandle::LocalMachine, R"(Software\Classes\Top)", 0},
    {false, KeyHandle::CurrentUser, R"(Software\Classes\Top)", kFileNotFound},
    {true, KeyHandle::CurrentUser, R"(Software\K\)" + std::string(256, 'k'), kPathFileAccess},
    {false, KeyHandle::CurrentUser, R"(software\k\new\deep)", 0},
};

}  // namespace

std::vector<RegistryQuery> RegistryQueries() { return {std::begin(kQueries), std::end(kQueries)}; }

std::vector<RegistryStep> RegistrySteps() { return {std::begin(kSteps), std::end(kSteps)}; }

}  // namespace zent::testing
