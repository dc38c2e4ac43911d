#include <gtest/gtest.h>

#include <random>
#include <string>

#include "xml/ChildIndexes.h"
#include "xml/LibrarySelect.h"
#include "xml/TestDocument.h"
#include "xml/Tree.h"

// Indexes answer what is asked again about many children. The library, which knows none, is the
// judge of what they answer.

namespace zent::xml::testing {
namespace {

constexpr int kItems = 200;

std::string ManyItems() {
  std::string text = "<!DOCTYPE r [<!ENTITY e \"ab\"><!ENTITY f \"x\">]><r xmlns:p='u'>";
  for (int i = 0; i < kItems; ++i) {
    const std::string id = " id='" + std::to_string(i) + "'";
    text.append("<i").append(id).append("><n>").append(std::to_string(i)).append("</n><n>");
    text.append(std::to_string(i % 7)).append("</n></i>");
    if (i % 10 == 0) text.append("<p:i").append(id).append("/><k").append(id).append("/>");
  }
  return text + "<i id='ab&f;'><n>&e;</n></i></r>";
}

void ExpectSameAsLibrary(const Document& document, const std::string& xpath) {
  SCOPED_TRACE(xpath);
  const Result<std::vector<Node>> expected = LibrarySelectAll(xpath, document.node());
  ASSERT_TRUE(expected.ok());
  EXPECT_EQ(document.SelectAll(xpath).value(), expected.value());
  EXPECT_EQ(document.SelectFirst(xpath).value(),
            expected.value().empty() ? Node() : expected.value().front());
}

TEST(ChildIndexes, AnswerWhatIsAskedAgain) {
  const Document document = Loaded(ManyItems());
  xmlNode* const root = NodeAccess::Raw(document.root());
  const PlainTest test{true, "id", "150"};
  ChildIndexes indexes;
  EXPECT_FALSE(indexes.Find(root, "i", test)) << "never asked before";
  indexes.Scanned(root, "i", test, 10);
  EXPECT_FALSE(indexes.Find(root, "i", test)) << "few children need no index";
  indexes.Scanned(root, "i", test, 1000);
  EXPECT_FALSE(indexes.Find(root, "i", test)) << "asked once";
  indexes.Scanned(root, "i", test, 1000);

  const std::vector<xmlNode*> found = indexes.Find(root, "i", test).value();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(NodeAccess::Handle(found.front()), First(document, "//i[@id='150']"));
  EXPECT_EQ(indexes.Find(root, "i", {true, "id", "999"}).value().size(), 0U);
  EXPECT_FALSE(indexes.Find(root, "i", {false, "id", "150"})) << "another question";
  EXPECT_FALSE(indexes.Find(root, "k", test)) << "other children";
}

TEST(ChildIndexes, LeaveSeveralToTheWalk) {
  const Document document = Loaded(ManyItems());
  xmlNode* const root = NodeAccess::Raw(document.root());
  ChildIndexes indexes;
  indexes.Scanned(root, "i", {false, "n", "5"}, 5000);
  EXPECT_FALSE(indexes.Find(root, "i", {false, "n", "5"}));
  EXPECT_EQ(indexes.Find(root, "i", {false, "n", "17"}).value().size(), 1U);
}

TEST(ChildIndexes, ForgetTheQuestionAskedLongestAgo) {
  const Document document = Loaded(ManyItems());
  xmlNode* const root = NodeAccess::Raw(document.root());
  ChildIndexes indexes;
  for (int i = 0; i < 17; ++i) {
    indexes.Scanned(root, "i", {true, "id" + std::to_string(i), "1"}, 5000);
  }
  EXPECT_FALSE(indexes.Find(root, "i", {true, "id0", "1"}));
  EXPECT_TRUE(indexes.Find(root, "i", {true, "id1", "1"}));
}

TEST(ChildIndexes, AnswerInEveryFormOfQuestion) {
  const Document document = Loaded(ManyItems());
  for (int round = 0; round < 20; ++round) {
    for (const char* xpath :
         {"/r/i[@id='150']", "/r/i[@id='150']/n[2]", "/r/i[@id='150'][2]", "/r/i[@id='150'][1]",
          "/r/i[@id='150'][last()]", "/r/i[@id='150' and n='3']", "/r/i[n and @id='150']/@id",
          "/r/i[n='17']", "/r/i[n='5']", "/r/i[n='5'][3]", "/r/i[n='3' and @id='150']",
          "/r/i[@id='none']", "/r/i[@id='abx']", "/r/i[n='ab']", "/r/k[@id='20']", "r/i[@id='0']",
          "/r/*[@id='20']"}) {
      ExpectSameAsLibrary(document, xpath);
    }
  }
}

/// One change of the kinds that a document knows, at a place that `random` gives.
Status ChangeSomething(Document& document, std::mt19937& random) {
  const std::string value = std::to_string(random() % (kItems + 20));
  const std::vector<Node> items = document.root().Children();
  const Node item = items[random() % items.size()];
  const Node other = items[random() % items.size()];
  switch (random() % 9) {
    case 0:
      return document.Remove(item);
    case 1:
      return document.InsertBefore(document.Copy(other).value(), item);
    case 2:
      return document.Replace(item, document.Copy(other).value());
    case 3:
      return document.Append(document.root(), item);
    case 4: {
      const Node id = item.SelectFirst("@id").value();
      return id ? document.SetText(id, value) : Status();
    }
    case 5: {
      const Node id = item.SelectFirst("@id").value();
      return id ? document.Remove(id) : Status();
    }
    case 6:
      return item.FirstChild() ? document.SetText(item.FirstChild(), value) : Status();
    case 7: {
      const Node text = item.SelectFirst("n/text()").value();
      return text ? document.SetText(text, value) : Status();
    }
    default: {
      const Node name = document.CreateElement("n").value();
      const Status set = document.SetText(name, value);
      return set.ok() && item.IsElement() ? document.Append(item, name) : set;
    }
  }
}

TEST(ChildIndexes, StayRightWhileTheDocumentChanges) {
  Document document = Loaded(ManyItems());
  std::mt19937 random(4711);
  for (int i = 0; i < 1500 && !HasFailure(); ++i) {
    SCOPED_TRACE(i);
    ASSERT_TRUE(ChangeSomething(document, random).ok());
    const std::string value = std::to_string(random() % (kItems + 20));
    ExpectSameAsLibrary(document, "/r/i[@id='" + value + "']");
    ExpectSameAsLibrary(document, "/r/i[n='" + value + "']");
  }
  EXPECT_GT(document.root().Children().size(), 20U);
}

TEST(ChildIndexes, SeeWhatIsLeftOfATextOfWhichAPartIsTaken) {
  Document document = Loaded(ManyItems());
  const Node name = First(document, "/r/i[@id='150']/n[1]");
  const Document parts = Loaded("<a>x<!--c-->y<!--c-->z</a>");
  const Node copy = document.Copy(parts.root()).value();
  ASSERT_TRUE(document.SetText(name, "").ok());
  for (const Node part : copy.Children()) ASSERT_TRUE(document.Append(name, part).ok());
  for (int i = 0; i < 20; ++i) ExpectSameAsLibrary(document, "/r/i[n='xyz']");
  EXPECT_TRUE(First(document, "/r/i[n='xyz']"));

  ASSERT_TRUE(document.Remove(name.FirstChild()).ok());
  EXPECT_EQ(First(document, "/r/i[n='yz']"), name.Parent());
  ASSERT_TRUE(document.Append(document.root(), name.LastChild()).ok());
  EXPECT_EQ(First(document, "/r/i[n='y']"), name.Parent());
  EXPECT_FALSE(First(document, "/r/i[n='yz']"));
}

TEST(ChildIndexes, StayRightWhenMuchChangesBetweenQuestions) {
  Document document = Loaded(ManyItems());
  std::mt19937 random(4712);
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 20; ++i) ExpectSameAsLibrary(document, "/r/i[@id='150']");
    for (int i = 0; i < 5000; ++i) {
      const Node item = document.root().FirstChild();
      ASSERT_TRUE(document.Append(document.root(), item).ok());
      const Node id = item.SelectFirst("@id").value();
      ASSERT_TRUE(document.SetText(id, std::to_string(random() % kItems)).ok());
    }
    ExpectSameAsLibrary(document, "/r/i[@id='150']");
  }
}

}  // namespace
}  // namespace zent::xml::testing
