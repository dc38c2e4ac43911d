#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xml/PlainPath.h"

namespace zent::xml {

/// Which children of one node have which text in the attribute or element that a test compares.
class ChildIndex {
 public:
  /// Indexes the children of `parent` called `child_name` for tests like `test`, which has a value.
  ChildIndex(const xmlNode* parent, std::string_view child_name, const PlainTest& test);

  /// Notes that `child` is new or changed. What stands here of it stays: Find looks at each child
  /// that it is led to.
  void Changed(xmlNode* child);

  /// The children that pass `test`, in no order, or some of them when they are more than one.
  std::vector<xmlNode*> Find(const PlainTest& test);

  /// True when so much has changed that a new index would be smaller.
  bool IsWorn() const;

 private:
  using Entry = std::pair<std::uint64_t, xmlNode*>;  ///< hash of a text, and who has it

  void Collect(xmlNode* child, std::vector<Entry>& into) const;
  void TakeInChanges();

  const xmlNode* parent_;
  std::string child_name_;
  PlainTest like_;
  std::vector<Entry> entries_;     ///< sorted
  std::vector<Entry> recent_;      ///< what came later, not sorted; mostly few
  std::vector<xmlNode*> changed_;  ///< to be entered before the next question
  std::size_t worn_above_;
};

}  // namespace zent::xml
