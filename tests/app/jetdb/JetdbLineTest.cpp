#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "app/jetdb/JetdbLine.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::variant<JetdbLine, JetdbLineEnd> Parse(const std::vector<std::string>& arguments) {
  std::vector<const char*> argv = {"jetdb"};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  return ParseJetdbLine(static_cast<int>(argv.size()), argv.data());
}

JetdbLine LineOf(const std::vector<std::string>& arguments) {
  const auto parsed = Parse(arguments);
  const auto* const end = std::get_if<JetdbLineEnd>(&parsed);
  EXPECT_EQ(end, nullptr) << end->text;
  return end == nullptr ? std::get<JetdbLine>(parsed) : JetdbLine{};
}

TEST(JetdbLine, TakesWhatEachVerbHas) {
  const JetdbLine sql = LineOf({"sql", "a.mdb", "select 1", "select 2", "--format", "CSV",
                                "--single-transaction", "--read-only", "--password", "p"});
  EXPECT_EQ(sql.verb, JetdbVerb::Sql);
  EXPECT_EQ(sql.file, "a.mdb");
  EXPECT_THAT(sql.statements, ElementsAre("select 1", "select 2"));
  EXPECT_EQ(sql.format, RowFormat::Csv);
  EXPECT_TRUE(sql.single_transaction);
  EXPECT_TRUE(sql.read_only);
  EXPECT_EQ(sql.password.text, "p");

  const JetdbLine dump =
      LineOf({"dump", "/d/a.mdb", "--table", "People", "--no-rows", "--whole-values"});
  EXPECT_EQ(dump.verb, JetdbVerb::Dump);
  EXPECT_EQ(dump.file, "/d/a.mdb");
  EXPECT_EQ(dump.table, "People");
  EXPECT_TRUE(dump.no_rows);
  EXPECT_TRUE(dump.whole_values);

  const JetdbLine compact =
      LineOf({"compact", "a.mdb", "b.mdb", "--password-file", "old", "--new-password-env", "NEW"});
  EXPECT_EQ(compact.verb, JetdbVerb::Compact);
  EXPECT_EQ(compact.target, "b.mdb");
  EXPECT_EQ(compact.password.file, "old");
  EXPECT_EQ(compact.new_password.environment, "NEW");

  EXPECT_TRUE(LineOf({"tables", "a.mdb", "--all", "--exclusive"}).all);
  EXPECT_TRUE(LineOf({"verify", "a.mdb", "--quiet"}).quiet);
  EXPECT_EQ(LineOf({"create", "a.mdb"}).verb, JetdbVerb::Create);
  EXPECT_EQ(LineOf({"info", "a.mdb"}).verb, JetdbVerb::Info);
}

struct WrongCase {
  const char* what;
  std::vector<std::string> arguments;
};

TEST(JetdbLine, RefusesWhatMeansNothing) {
  const WrongCase rows[] = {
      {"no verb", {}},
      {"an unknown verb", {"repair", "a.mdb"}},
      {"no file", {"info"}},
      {"an unknown option", {"info", "a.mdb", "--fast"}},
      {"an option of another verb", {"info", "a.mdb", "--single-transaction"}},
      {"an unknown format", {"sql", "a.mdb", "--format", "xml"}},
      {"two passwords", {"info", "a.mdb", "--password", "a", "--password-env", "B"}},
      {"to read and alone", {"sql", "a.mdb", "--read-only", "--exclusive"}},
      {"statements from two places", {"sql", "a.mdb", "select 1", "--file", "s.sql"}},
      {"no new file", {"compact", "a.mdb"}},
      {"a new password and none",
       {"compact", "a.mdb", "b.mdb", "--no-password", "--new-password", "x"}},
  };
  for (const WrongCase& row : rows) {
    SCOPED_TRACE(row.what);
    const auto parsed = Parse(row.arguments);
    const auto* const end = std::get_if<JetdbLineEnd>(&parsed);
    ASSERT_NE(end, nullptr);
    EXPECT_TRUE(end->wrong);
    EXPECT_THAT(end->text, HasSubstr("Try 'jetdb --help'."));
  }
}

const std::map<std::string, std::vector<std::string>>& OptionsOfVerbs() {
  static const std::map<std::string, std::vector<std::string>> options = {
      {"info", {"--exclusive"}},
      {"tables", {"--all", "--format", "--exclusive"}},
      {"dump", {"--table", "--no-rows", "--whole-values", "--exclusive"}},
      {"verify", {"--quiet", "--exclusive"}},
      {"sql", {"--file", "--single-transaction", "--format", "--exclusive", "--read-only"}},
      {"create", {}},
      {"compact", {"--new-password", "--new-password-file", "--new-password-env", "--no-password"}},
  };
  return options;
}

std::string HelpOf(const std::vector<std::string>& arguments) {
  const auto parsed = Parse(arguments);
  const auto* const end = std::get_if<JetdbLineEnd>(&parsed);
  EXPECT_NE(end, nullptr);
  EXPECT_FALSE(end->wrong);
  return end->text;
}

TEST(JetdbLine, HelpNamesEveryVerbAndOption) {
  const std::string all = HelpOf({"--help"});
  EXPECT_THAT(all, HasSubstr("Exit codes: 0 done; 1 faults found"));
  for (const auto& [verb, options] : OptionsOfVerbs()) {
    SCOPED_TRACE(verb);
    EXPECT_THAT(all, HasSubstr(verb));
    const std::string help = HelpOf({verb, "--help"});
    for (const char* const option : {"--password", "--password-file", "--password-env"}) {
      EXPECT_THAT(help, HasSubstr(option));
    }
    for (const std::string& option : options) EXPECT_THAT(help, HasSubstr(option));
  }
  EXPECT_THAT(HelpOf({"--version"}), HasSubstr("jetdb "));
}

/// The words that begin with two dashes.
std::set<std::string> OptionsIn(const std::string& text) {
  const std::regex option("--[a-z][a-z-]*[a-z]");
  std::set<std::string> found;
  for (std::sregex_iterator at(text.begin(), text.end(), option); at != std::sregex_iterator();
       ++at) {
    found.insert(at->str());
  }
  return found;
}

TEST(JetdbLine, DocumentationNamesEveryVerbAndOption) {
  const std::string document = ReadHostFile(ZENT_JETDB_DOCUMENT);
  std::set<std::string> expected = OptionsIn(HelpOf({"--help"}));
  for (const auto& [verb, options] : OptionsOfVerbs()) {
    EXPECT_THAT(document, HasSubstr("jetdb " + verb));
    expected.merge(OptionsIn(HelpOf({verb, "--help"})));
  }
  EXPECT_EQ(OptionsIn(document), expected);
}

}  // namespace
}  // namespace zent::testing
