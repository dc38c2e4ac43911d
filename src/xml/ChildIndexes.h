#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xml/ChildIndex.h"

namespace zent::xml {

/// The indexes of one document: of nodes with many children, made when the same kind of question
/// about them is asked again, and kept right while the document is changed. At most a few at a
/// time, each smaller than the children it is about.
class ChildIndexes {
 public:
  /// The children of `parent` called `name` that pass `test`, when an index knows of no more than
  /// one; nothing when the children are to be looked at one by one. In that case Scanned is to be
  /// called with what it took.
  std::optional<std::vector<xmlNode*>> Find(xmlNode* parent, std::string_view name,
                                            const PlainTest& test);
  void Scanned(xmlNode* parent, std::string_view name, const PlainTest& test, std::size_t children);

  /// To be called behind each change: `node` now stands elsewhere, or what is in it has changed.
  void Changed(xmlNode* node);

 private:
  /// A kind of question.
  struct Asked {
    const xmlNode* parent;
    std::string name;  ///< of the children
    bool of_attribute;
    std::string compared;     ///< name of what the test compares
    std::size_t scanned = 0;  ///< children that were looked at to answer it
    std::optional<ChildIndex> index;
  };

  /// What is known of a question, put in front; null when it is not.
  Asked* Known(const xmlNode* parent, std::string_view name, const PlainTest& test);

  std::vector<Asked> asked_;  ///< the latest first
};

}  // namespace zent::xml
