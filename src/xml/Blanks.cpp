#include "xml/Blanks.h"

#include <string_view>
#include <utility>

#include "xml/Tree.h"

namespace zent::xml {
namespace {

/// The indent of one level, when `blanks` stands before a node `level` levels deep.
std::optional<std::string> IndentOf(std::string_view blanks, std::size_t level) {
  const std::size_t line = blanks.rfind('\n');
  if (line == std::string_view::npos) return {};
  const std::string_view indent = blanks.substr(line + 1);
  const bool one_kind = indent.find_first_not_of(' ') == std::string_view::npos ||
                        indent.find_first_not_of('\t') == std::string_view::npos;
  if (!one_kind || indent.size() % level != 0) return {};
  return std::string(indent.substr(0, indent.size() / level));
}

bool IsTextOtherwise(const xmlNode* node) {
  return node != nullptr &&
         (node->type == XML_CDATA_SECTION_NODE || node->type == XML_ENTITY_REF_NODE);
}

class BlankDropper {
 public:
  BlanksDropped Run(xmlDoc* document) {
    result_.nodes_left = 1;
    DropBelow(xmlDocGetRootElement(document), false, 1);
    return std::move(result_);
  }

 private:
  // As deep as the elements are nested, which the parser limits.
  void DropBelow(xmlNode* element, bool preserve, std::size_t level) {
    const std::string_view space = SpaceAttribute(element);
    if (!space.empty()) preserve = space == "preserve";
    for (xmlNode* node = element->children; node != nullptr;) {
      xmlNode* const next = node->next;
      ++result_.nodes_left;
      if (node->type == XML_ELEMENT_NODE) {
        DropBelow(node, preserve, level + 1);
      } else if (!preserve && IsDroppable(node)) {
        if (!result_.indent && next != nullptr) {
          result_.indent = IndentOf(View(node->content), level);
        }
        --result_.nodes_left;
        xmlUnlinkNode(node);
        xmlFreeNode(node);
      }
      node = next;
    }
  }

  static bool IsDroppable(const xmlNode* node) {
    const bool marked = node->_private != nullptr;
    return node->type == XML_TEXT_NODE && !marked && IsBlank(View(node->content)) &&
           !IsBesideText(node);
  }

  BlanksDropped result_;
};

}  // namespace

bool IsBesideText(const xmlNode* blanks) {
  return IsTextOtherwise(blanks->prev) || IsTextOtherwise(blanks->next);
}

void MarkReferenced(xmlNode* text) { text->_private = text; }

BlanksDropped DropBlanks(xmlDoc* document) { return BlankDropper().Run(document); }

}  // namespace zent::xml
