#include "xml/Document.h"

#include <utility>

#include "xml/DocumentState.h"
#include "xml/Tree.h"

namespace zent::xml {

Document::State::~State() {
  for (xmlNode* top : loose) xmlFreeNode(top);
}

Document::Document(std::unique_ptr<State> state) : state_(std::move(state)) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

Node Document::node() const {
  return NodeAccess::Handle(reinterpret_cast<xmlNode*>(state_->document.get()));
}

Node Document::root() const {
  return NodeAccess::Handle(xmlDocGetRootElement(state_->document.get()));
}

}  // namespace zent::xml
