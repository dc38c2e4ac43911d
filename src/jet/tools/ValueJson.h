#pragma once

#include "jet/format/PropertyBlob.h"
#include "jet/format/Value.h"
#include "jet/tools/JsonWriter.h"

namespace zent::jet {

/// Values as JSON, such that nothing of them is lost: numbers as numbers; currency and decimals as
/// text with all their decimals; dates as an object of their text and their 64 bits; GUIDs as text
/// with braces; bytes as hexadecimal digits.
class ValueJson {
 public:
  /// Texts of more UTF-16 units, and bytes beyond that number, become their SHA-256 (of the
  /// UTF-16LE bytes) and their length.
  static constexpr std::size_t kLongest = 4096;

  /// `whole`: long values are written out as well.
  ValueJson(JsonWriter& json, bool whole) : json_(json), whole_(whole) {}

  void Add(const Value& value);
  /// An object of the properties by name; `set` may be null: none.
  void AddProperties(JetVersion version, const PropertySet* set);

 private:
  void AddText(const std::string& text);
  void AddBytes(const std::string& bytes);
  void AddDate(Date date);

  JsonWriter& json_;
  bool whole_;
};

}  // namespace zent::jet
