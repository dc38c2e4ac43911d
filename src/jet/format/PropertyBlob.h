#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"
#include "jet/format/Value.h"

/// Properties of a table, query, document or database and of its columns, as one value of bytes.
namespace zent::jet {

struct Property {
  std::string name = {};
  ColumnType type = ColumnType::Text;
  std::uint8_t flags = 0;  ///< bit 0: set by data definition
  std::string data = {};   ///< bytes as stored; PropertyValue reads them

  bool IsDdl() const { return (flags & 1U) != 0; }
  bool operator==(const Property&) const = default;
};

inline constexpr std::uint16_t kObjectProperties = 0;
inline constexpr std::uint16_t kColumnProperties = 1;

/// The properties of one owner.
struct PropertySet {
  std::string owner = {};                  ///< name of the column; empty for the object itself
  std::uint16_t kind = kObjectProperties;  ///< other kinds are kept
  std::vector<Property> properties = {};

  /// The property of that name, whatever its case, or null.
  const Property* Find(std::string_view name) const;
  /// Adds the property or gives it another value, type and flags in its place.
  void Set(Property property);
  /// False when there was none.
  bool Remove(std::string_view name);
  bool operator==(const PropertySet&) const = default;
};

/// All properties of an object.
struct PropertyBlob {
  std::vector<std::string> names =
      {};  ///< as the file lists them; may hold names that no value uses
  std::vector<PropertySet> sets = {};

  /// The set of the object itself (`column` empty) or of a column, or null.
  const PropertySet* Find(std::string_view column) const;
  /// As Find; an absent one is added.
  PropertySet& SetOf(std::string_view column);
  /// False when the column has no set.
  bool RenameColumn(std::string_view from, std::string_view to);
  bool DropColumn(std::string_view column);
  bool operator==(const PropertyBlob&) const = default;
};

/// Reads a blob; no bytes are no properties. `page` is for errors.
Result<PropertyBlob> ParsePropertyBlob(JetVersion version, ByteView bytes, PageNumber page);

/// The bytes of `blob`: what was parsed gives the same bytes again. Names that values need and the
/// list lacks are added at its end.
Result<std::string> SerialisePropertyBlob(JetVersion version, const PropertyBlob& blob);

/// The value of a property; null when its bytes are too few for its type.
Value PropertyValue(JetVersion version, const Property& property);

/// The bytes of a property of a Jet 4 file: text of any kind, numbers, bool, GUID, bytes.
Result<Property> MakeProperty(std::string_view name, ColumnType type, bool ddl, const Value& value);

}  // namespace zent::jet
