#include <gtest/gtest.h>

#include "xmlupdate/ExtraFieldsVersion.h"
#include "xmlupdate/XmlMachine.h"

namespace zent {
namespace {

using testing::Compact;

struct NameCase {
  const char* what;
  const char* version;
  const char* element;
};

constexpr NameCase kNameCases[] = {
    {"a plain version", "3.06.0000", "Version"},
    {"a prefixed version", "ABC-1.00.0000", "ABCVersion"},
    {"a prefix alone", "ABC-", "ABCVersion"},
    {"a \"-\" one too early", "AB-1.00", "Version"},
    {"a \"-\" one too late", "ABCD-1.00", "Version"},
    {"only the fourth character counts", "A-C-1.00", "A-CVersion"},
    {"characters count, not bytes", "\xC3\x84\xC3\x96\xC3\x9C-1",
     "\xC3\x84\xC3\x96\xC3\x9CVersion"},
    {"too short for a prefix", "ABC", "Version"},
    {"empty", "", "Version"},
};

TEST(XFieldsVersionElement, IsNamedByThePrefix) {
  for (const NameCase& row : kNameCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(XFieldsVersionElement(row.version), row.element);
  }
}

struct VersionCase {
  const char* what;
  const char* layout;
  const char* version;
  bool has;
  const char* stamped;  ///< nullptr: cannot be
};

constexpr VersionCase kVersionCases[] = {
    {"the same", "<C><Version>2</Version></C>", "2", true, "<C><Version>2</Version></C>"},
    {"blanks in the layout do not count", "<C><Version> 2 </Version></C>", "2", true,
     "<C><Version>2</Version></C>"},
    {"another", "<C><Version>1</Version></C>", "2", false, "<C><Version>2</Version></C>"},
    {"case counts", "<C><Version>2A</Version></C>", "2a", false, "<C><Version>2a</Version></C>"},
    {"a prefixed one goes before the plain one", "<C><X/><Version>1</Version></C>", "ABC-1.00.0000",
     false, "<C><X/><ABCVersion>ABC-1.00.0000</ABCVersion><Version>1</Version></C>"},
    {"a prefixed one is stored with its prefix",
     "<C><ABCVersion>ABC-1</ABCVersion><Version>1</Version></C>", "ABC-1", true,
     "<C><ABCVersion>ABC-1</ABCVersion><Version>1</Version></C>"},
    {"a plain one does not disturb a prefixed one",
     "<C><ABCVersion>ABC-1</ABCVersion><Version>1</Version></C>", "2", false,
     "<C><ABCVersion>ABC-1</ABCVersion><Version>2</Version></C>"},
    {"the prefixed one of another maker", "<C><ABCVersion>ABC-1</ABCVersion><Version/></C>",
     "XYZ-1", false,
     "<C><ABCVersion>ABC-1</ABCVersion><XYZVersion>XYZ-1</XYZVersion><Version/></C>"},
    {"a prefixed one without a plain one", "<C/>", "ABC-1", false, nullptr},
    {"a plain one without a plain one", "<C/>", "2", false, nullptr},
    {"a prefix that is no name", "<C><Version/></C>", "1 <-2", false, nullptr},
    {"one that is no child of the document element", "<C><D><Version>2</Version></D></C>", "2",
     false, nullptr},
};

TEST(XFieldsVersion, IsComparedAndStamped) {
  for (const VersionCase& row : kVersionCases) {
    SCOPED_TRACE(row.what);
    xml::LoadResult layout = xml::Document::Load(row.layout, "a.xml");
    ASSERT_TRUE(layout.ok());
    EXPECT_EQ(HasXFieldsVersion(layout.value(), row.version), row.has);

    const Status stamped = StampXFieldsVersion(layout.value(), row.version);

    EXPECT_EQ(stamped.ok(), row.stamped != nullptr);
    EXPECT_EQ(Compact(layout.value().Serialize().value_or("")),
              row.stamped == nullptr ? row.layout : row.stamped);
    EXPECT_EQ(HasXFieldsVersion(layout.value(), row.version), row.has || stamped.ok());
  }
}

}  // namespace
}  // namespace zent
