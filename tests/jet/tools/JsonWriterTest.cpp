#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "jet/tools/EntryDigest.h"
#include "jet/tools/FaultLog.h"
#include "jet/tools/JsonWriter.h"
#include "jet/tools/Sha256.h"
#include "jet/tools/ValueJson.h"

namespace zent::jet {
namespace {

std::string JsonOf(const std::function<void(JsonWriter&)>& write) {
  std::string text;
  JsonWriter json([&](std::string_view piece) { text += piece; });
  write(json);
  json.Flush();
  return text;
}

struct TextCase {
  const char* what;
  std::string text;
  const char* json;
};

TEST(JsonWriter, EscapesWhatTextMayNotHold) {
  const TextCase rows[] = {
      {"plain", "abc", R"("abc")"},
      {"quotes", R"(a"b\c)", R"("a\"b\\c")"},
      {"line ends and tabs", "a\r\n\tb", R"("a\r\n\tb")"},
      {"a control character", std::string("a\x01z", 3), R"("a\u0001z")"},
      {"letters of other languages", "M\xC3\xBCller \xE6\x97\xA5",
       "\"M\xC3\xBCller \xE6\x97\xA5\""},
      {"half a surrogate pair", "\xED\xA0\x80", R"("\ud800")"},
      {"what is no UTF-8", "a\xFF", R"("a\ufffd")"},
  };
  for (const TextCase& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(JsonOf([&](JsonWriter& json) { json.Add(row.text); }), row.json);
  }
}

TEST(JsonWriter, NestsAndSeparates) {
  const std::string text = JsonOf([](JsonWriter& json) {
    json.BeginObject();
    json.Member("a", std::int64_t{1});
    json.Key("b");
    json.BeginArray();
    json.AddNull();
    json.Add(true);
    json.BeginObject();
    json.EndObject();
    json.BeginArray(JsonWriter::Line::New);
    json.EndArray();
    json.EndArray();
    json.Member("c", "d");
    json.EndObject();
  });
  EXPECT_EQ(text, "{\"a\":1,\"b\":[null,true,{},\n[]],\"c\":\"d\"}");
}

struct ValueCase {
  const char* what;
  Value value;
  const char* json;
};

TEST(ValueJson, LosesNothingOfAValue) {
  const ValueCase rows[] = {
      {"null", Null(), "null"},
      {"bool", true, "true"},
      {"byte", std::uint8_t{200}, "200"},
      {"long", std::int32_t{-5}, "-5"},
      {"single", 0.1F, "0.1"},
      {"double", 0.1, "0.1"},
      {"a whole double", 3.0, "3.0"},
      {"minus zero", -0.0, "-0.0"},
      {"no number", std::numeric_limits<double>::quiet_NaN(), R"("NaN")"},
      {"endless", -std::numeric_limits<float>::infinity(), R"("-Infinity")"},
      {"currency", Currency{-123400}, R"("-12.3400")"},
      {"date", Date{37803.5}, R"({"iso":"2003-07-01T12:00:00","bits":"40e2757000000000"})"},
      {"text", "a\"b", R"("a\"b")"},
      {"bytes", Binary{std::string("\x00\xFF", 2)}, R"("00ff")"},
      {"decimal", Decimal{.negative = true, .scale = 2, .magnitude = {0, 0, 0, 150}}, R"("-1.50")"},
  };
  for (const ValueCase& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(JsonOf([&](JsonWriter& json) { ValueJson(json, false).Add(row.value); }), row.json);
  }
}

TEST(ValueJson, PutsHashesForLongValuesUnlessTheyAreWanted) {
  const Value text(std::string(4097, 'a'));
  const Value bytes(Binary{std::string(4097, '\0')});
  const auto json = [](const Value& value, bool whole) {
    return JsonOf([&](JsonWriter& writer) { ValueJson(writer, whole).Add(value); });
  };
  EXPECT_EQ(json(text, false).substr(0, 11), R"({"sha256":")");
  EXPECT_NE(json(text, false).find(R"("chars":4097})"), std::string::npos);
  EXPECT_NE(json(bytes, false).find(R"("bytes":4097})"), std::string::npos);
  EXPECT_EQ(json(text, true).size(), 4099U);
  EXPECT_EQ(json(bytes, true).size(), 8196U);
  EXPECT_EQ(json(Value(std::string(4096, 'a')), false).size(), 4098U);
}

TEST(Sha256, GivesThePublishedHashes) {
  const TextCase rows[] = {
      {"nothing", "", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {"two blocks", "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {"a million", std::string(1000000, 'a'),
       "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
  };
  for (const TextCase& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Sha256Of(AsBytes(row.text)), row.json);
  }
}

TEST(EntryDigest, TellsSetsApartWhateverTheirOrder) {
  EntryDigest a;
  EntryDigest b;
  EntryDigest c;
  a.Add("one", {.page = 1, .row = 1});
  a.Add("two", {.page = 1, .row = 2});
  b.Add("two", {.page = 1, .row = 2});
  b.Add("one", {.page = 1, .row = 1});
  c.Add("one", {.page = 1, .row = 2});
  c.Add("two", {.page = 1, .row = 1});
  EXPECT_EQ(a, b);
  EXPECT_NE(a, c);
  EXPECT_EQ(c.count(), 2U);
}

TEST(FaultLog, TellsOneLineAFaultAndAFewOfASubject) {
  std::vector<std::string> lines;
  FaultLog log([&](const std::string& line) { lines.push_back(line); });
  for (int i = 0; i < 25; ++i) log.Add("table A", "it is\nwrong");
  log.Add("table B", "as well");
  log.Finish();
  EXPECT_EQ(log.count(), 26U);
  ASSERT_EQ(lines.size(), 22U);
  EXPECT_EQ(lines.front(), "table A: it is\\nwrong");
  EXPECT_EQ(lines[20], "table B: as well");
  EXPECT_EQ(lines.back(), "table A: 5 more faults");
}

}  // namespace
}  // namespace zent::jet
