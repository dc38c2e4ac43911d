#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "xml/Document.h"

namespace zent::xml::testing {

/// The document of `bytes`; a failed test and an empty element where they do not load.
Document Loaded(std::string_view bytes);

/// The file of `document`; a failed test and nothing where it cannot be written.
std::string Saved(const Document& document);

/// `bytes`, loaded and saved.
std::string Resaved(std::string_view bytes);

/// The tree below `node` in a form that two equal trees share: kinds, names, attributes, texts.
std::string TreeOf(Node node);

/// The node that `xpath` selects; a failed test where the expression fails.
Node First(const Document& document, std::string_view xpath);

/// The bytes of a recorded text with one character for each byte.
std::string BytesOf(const std::string& utf8);

/// A file of tests/data/xml.
std::string TestFile(const std::string& name);
nlohmann::json TestJson(const std::string& name);

}  // namespace zent::xml::testing
